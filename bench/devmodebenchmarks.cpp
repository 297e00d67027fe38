// Figures of the devmode layer, as multiples of a yardstick of the same run: copying a devmode, bare.
#include <tvutil/bytewriter.h>
#include <tvutil/crc32.h>
#include <tvutil/globalcaches.h>

#include "bench/ratioreporter.h"
#include "complugins/renjtifforxps.h"
#include "complugins/xdevmode.h"
#include "tests/common/oemdevmodebytes.h"
#include "tests/common/testdevmode.h"

namespace
{

namespace Format = OemDevmodeFormat;
using namespace OemDevmodeBytes;

// As a conversion finds it: settings, a paper list of its usual size, the program's name.
TestDevmode MakeDevmode()
{
    std::vector<FormsInfoRecord> forms;
    for (int number = 0; number < 60; ++number)
        forms.push_back(MakeForm(300 + number, W("Paper of some size"), 2000 + number, 3000, 25004));
    return TestDevmode{
        Make(CoreDriverLayout::PostScript, {{1, MakeState(true, forms)}, {2, ByteBuffer("e\0x\0e\0\0", 8)}})};
}

void Yardstick(benchmark::State& state)
{
    const auto bytes = MakeDevmode().Bytes();
    for (auto _ : state)
        benchmark::DoNotOptimize(ByteBuffer(std::span(bytes)));
}

enum class Cache
{
    Knows,
    KnowsNothing,
};

// The settings need no CRC where the devmode is known; the bag's entries always do.
void ReadSettings(benchmark::State& state, Cache cache)
{
    const TestDevmode devmode = MakeDevmode();
    for (auto _ : state)
    {
        if (cache == Cache::KnowsNothing)
            GlobalCaches::Clear();
        XDevmode wrapper(devmode.Get());
        benchmark::DoNotOptimize(wrapper.GetDefaultAttributeBytesIndexedList());
    }
}

void ReadEntry(benchmark::State& state, Cache cache)
{
    const TestDevmode devmode = MakeDevmode();
    for (auto _ : state)
    {
        if (cache == Cache::KnowsNothing)
            GlobalCaches::Clear();
        XDevmode wrapper(devmode.Get());
        benchmark::DoNotOptimize(wrapper.GetPropertyBagEntry(Format::kApplicationNameKey));
    }
}

void WriteJobTicket(benchmark::State& state, Cache cache)
{
    const TestDevmode devmode = MakeDevmode();
    ProductData product(PrinterModel{});
    for (auto _ : state)
    {
        if (cache == Cache::KnowsNothing)
            GlobalCaches::Clear();
        XDevmode wrapper(devmode.Get());
        ByteBuffer text;
        RenJtifForXps(nullptr, wrapper, product).GenerateJtif(text);
        benchmark::DoNotOptimize(text.data());
    }
}

void Commit(benchmark::State& state)
{
    const TestDevmode devmode = MakeDevmode();
    XDevmode wrapper(devmode.Get());
    const ByteBuffer value(8);
    for (auto _ : state)
    {
        wrapper.SetPropertyBagEntry(Format::kApplicationNameKey, value);
        if (!wrapper.CommitToDevmode())
            state.SkipWithError("not committed");
    }
}

void Crc(benchmark::State& state)
{
    const ByteBuffer bytes(Format::kCheckedSize);
    for (auto _ : state)
        benchmark::DoNotOptimize(Crc32::GetCrc(bytes.data(), bytes.size()));
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations()) *
                            static_cast<std::int64_t>(Format::kCheckedSize));
}

} // namespace

int main(int argc, char** argv)
{
    benchmark::RegisterBenchmark("yardstick", Yardstick);
    benchmark::RegisterBenchmark("settings of a known devmode", ReadSettings, Cache::Knows);
    benchmark::RegisterBenchmark("settings of an unknown devmode", ReadSettings, Cache::KnowsNothing);
    benchmark::RegisterBenchmark("entry of a known devmode", ReadEntry, Cache::Knows);
    benchmark::RegisterBenchmark("entry of an unknown devmode", ReadEntry, Cache::KnowsNothing);
    benchmark::RegisterBenchmark("job ticket of a known devmode", WriteJobTicket, Cache::Knows);
    benchmark::RegisterBenchmark("job ticket of an unknown devmode", WriteJobTicket, Cache::KnowsNothing);
    benchmark::RegisterBenchmark("set an entry and commit", Commit);
    benchmark::RegisterBenchmark("CRC of a private part", Crc);
    benchmark::Initialize(&argc, argv);
    RatioReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
}
