// Figures of the capability caches: reading form lists of 10, 1,000 and 10,000 forms, which must be linear, as
// multiples of a yardstick of the same run, copying a form's bytes.
#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

#include <tvutil/datacache.h>

#include "bench/ratioreporter.h"
#include "complugins/papercache.h"
#include "tests/common/oemdevmodebytes.h"
#include "tests/common/scratchstore.h"

namespace
{

constexpr DWORD kStamp = 1397442489;
constexpr const WCHAR* kCache = W("XPaperCaps");

ByteBuffer MakeContent(std::int64_t count)
{
    std::vector<FormsInfoRecord> forms;
    std::vector<PaperCache::Paper> papers;
    for (int number = 0; number < static_cast<int>(count); ++number)
    {
        forms.push_back(OemDevmodeBytes::MakeForm(number, W("Paper of some size"), 2000 + number, 3000, 25004));
        papers.push_back({forms.back().paperId, 2000, 3000, W("Paper of some size")});
    }
    return PaperCache::Write(0, kStamp, forms, papers);
}

void Yardstick(benchmark::State& state)
{
    const std::vector<std::byte> form(PaperCache::kFormSize);
    for (auto _ : state)
        benchmark::DoNotOptimize(std::vector<std::byte>(form));
}

void ReadForms(benchmark::State& state)
{
    const ByteBuffer content = MakeContent(state.range(0));
    for (auto _ : state)
        benchmark::DoNotOptimize(PaperCache::ReadForms(content.bytes()));
    state.SetComplexityN(state.range(0));
}

// Out of the registry, with the check of its CRC.
void LoadForms(benchmark::State& state)
{
    const ScratchStore store;
    const DataCache cache({W("Printer"), W("FILE:")}, HKEY_CURRENT_USER, kStamp, false);
    cache.Write(kCache, MakeContent(state.range(0)).bytes());
    for (auto _ : state)
    {
        const auto content = cache.Read(kCache);
        if (!content)
            state.SkipWithError("no cache");
        else
            benchmark::DoNotOptimize(PaperCache::ReadForms(content->bytes()));
    }
    state.SetComplexityN(state.range(0));
}

} // namespace

int main(int argc, char** argv)
{
    benchmark::RegisterBenchmark("yardstick", Yardstick);
    for (benchmark::internal::Benchmark* const each :
         {benchmark::RegisterBenchmark("read forms", ReadForms), benchmark::RegisterBenchmark("load forms", LoadForms)})
        each->Arg(10)->Arg(1'000)->Arg(10'000)->Complexity(benchmark::oN);
    benchmark::Initialize(&argc, argv);
    RatioReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
}
