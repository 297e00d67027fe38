// Figures of the page media sizes: naming and offering 50, 500 and 5,000 forms, and finding one of them by its size,
// which must be linear, as multiples of a yardstick of the same run: parsing and serialising a real ticket.
#include <objbase.h>

#include <string>
#include <vector>

#include "bench/ratioreporter.h"
#include "complugins/papercache.h"
#include "tests/common/oemdevmodebytes.h"
#include "tests/common/testdevmode.h"
#include "tests/common/testdocuments.h"
#include "tests/common/testprinter.h"
#include "tests/ptpcprovider/provideraccess.h"

namespace
{

using Access = TavlenPtProviderTestAccess;

void Yardstick(benchmark::State& state)
{
    const std::string text = TextOf(LoadTestDocument("tickets/platform-00.xml").Get());
    for (auto _ : state)
        benchmark::DoNotOptimize(TextOf(LoadDocument(text).Get()));
}

// Of every kind that is named in its own way; each has its size, and a later one its paper id in common with it.
std::vector<FormsInfoRecord> MakeForms(int count)
{
    std::vector<FormsInfoRecord> forms;
    for (int at = 0; at < count; ++at)
    {
        const int type = at % 3 == 0 ? 25005 : 25003;
        forms.push_back(OemDevmodeBytes::MakeForm(300 + at, W("Paper of some size"), 1000 + 10 * at, 3000, type));
        if (at % 10 == 0)
            forms.push_back(OemDevmodeBytes::MakeForm(300 + at, W("The driver's"), 1000 + 10 * at, 3000, 25004));
    }
    return forms;
}

// A provider whose printer has these forms.
struct Bound
{
    explicit Bound(const std::vector<FormsInfoRecord>& forms)
    {
        MSDeviceCapabilities capabilities;
        capabilities.Initialize(printer.Handle());
        capabilities.SetCache(MSDeviceCapabilities::Cache::Papers,
                              PaperCache::Write(0, capabilities.GetCustomFormsCRC(), forms, {}));
        capabilities.Save(DataCache::Lock(capabilities.GetHive()));
        binding.BindTo(printer.Handle());
    }

    const TestPrinter printer{TestPrinter::SetUp{
        .capabilityWord = 0xE02, .model = "tavlen-c9070-ps.json", .dependentFiles = {"tvwftu_b.dll"}}};
    ProviderBinding binding;
};

void OfferSizes(benchmark::State& state)
{
    const Bound bound(MakeForms(static_cast<int>(state.range(0))));
    for (auto _ : state)
    {
        const ComPtr<IXMLDOMDocument2> document = LoadDocument(CapabilitiesAround(""));
        Access::Replace(*bound.binding.object, document.Get(), nullptr, Access::kMediaSizes);
    }
    state.SetComplexityN(state.range(0));
}

// The whole conversion, in which the last form of the list is found.
void FindSize(benchmark::State& state)
{
    const std::vector<FormsInfoRecord> forms = MakeForms(static_cast<int>(state.range(0)));
    const Bound bound(forms);
    const std::string width = std::to_string(forms.back().width) + "00";
    const ComPtr<IXMLDOMDocument2> ticket = LoadDocument(
        TicketAround("<psf:Feature name='psk:PageMediaSize'><psf:Option name='psk:Own'><psf:ScoredProperty "
                     "name='psk:MediaSizeWidth'><psf:Value>" +
                     width +
                     "</psf:Value></psf:ScoredProperty><psf:ScoredProperty name='psk:MediaSizeHeight'><psf:Value>300000"
                     "</psf:Value></psf:ScoredProperty></psf:Option></psf:Feature>"));
    const TestDevmode devmode;
    for (auto _ : state)
        if (bound.binding.provider->ConvertPrintTicketToDevMode(ticket.Get(), devmode.Size(), devmode.Get(), 0,
                                                                nullptr) != S_OK)
            state.SkipWithError("the operation failed");
    if (static_cast<WORD>(devmode.Get()->dmPaperWidth) != forms.back().width)
        state.SkipWithError("another form was found");
    state.SetComplexityN(state.range(0));
}

} // namespace

int main(int argc, char** argv)
{
    CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
    benchmark::RegisterBenchmark("yardstick", Yardstick);
    for (benchmark::internal::Benchmark* const each : {benchmark::RegisterBenchmark("offer forms", OfferSizes),
                                                       benchmark::RegisterBenchmark("find a size", FindSize)})
        each->Arg(50)->Arg(500)->Arg(5'000)->Unit(benchmark::kMicrosecond)->Complexity(benchmark::oN);
    benchmark::Initialize(&argc, argv);
    RatioReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    CoUninitialize();
    return 0;
}
