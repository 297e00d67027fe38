// The document wrappers and whole conversions, against parsing and serialising the same ticket with the bare DOM.
#include <benchmark/benchmark.h>

#include <objbase.h>

#include <optional>
#include <string>
#include <utility>

#include "bench/ratioreporter.h"
#include "complugins/ptpcprovider/printticketxmldocument.h"
#include "tests/common/testdevmode.h"
#include "tests/common/testdocuments.h"
#include "tests/common/testprinter.h"
#include "tests/ptpcprovider/provideraccess.h"

namespace
{

constexpr const char* kTicket = "tickets/platform-00.xml";

// A figure of something that failed is none.
void RequireOk(benchmark::State& state, HRESULT result)
{
    if (result != S_OK)
        state.SkipWithError("the operation failed");
}

void Yardstick(benchmark::State& state)
{
    const std::string text = TextOf(LoadTestDocument(kTicket).Get());
    for (auto _ : state)
        benchmark::DoNotOptimize(TextOf(LoadDocument(text).Get()));
}

void WrapDocument(benchmark::State& state, const char* name)
{
    const ComPtr<IXMLDOMDocument2> document = LoadTestDocument(name);
    for (auto _ : state)
        benchmark::DoNotOptimize(PrintTicketXmlDocument(document.Get()).GetDocument());
}

void FindFeature(benchmark::State& state, const char* name, const WCHAR* feature)
{
    const ComPtr<IXMLDOMDocument2> document = LoadTestDocument(name);
    const PrintTicketXmlDocument ticket(document.Get());
    for (auto _ : state)
    {
        ComPtr<IXMLDOMNode> node;
        RequireOk(state, ticket.GetFeatureNodeIfExists(W("psk:"), feature, node.Put()));
    }
}

void ReplaceFeature(benchmark::State& state)
{
    const ComPtr<IXMLDOMDocument2> document = LoadTestDocument(kTicket);
    const PrintTicketXmlDocument ticket(document.Get());
    for (auto _ : state)
    {
        ticket.DeleteFeatureAndOrphanParameterInitsIfExists(W("psk:"), W("PageMediaType"));
        ComPtr<IXMLDOMElement> feature;
        ComPtr<IXMLDOMElement> option;
        ticket.CreateFeatureOptionPair(1, W("PageMediaType"), true, W("Plain"), feature.Put(), option.Put());
        ticket.AppendChildToRootNode(feature.Get());
    }
}

void ToTicket(benchmark::State& state)
{
    const TestPrinter printer(0x888);
    ProviderBinding binding;
    binding.BindTo(printer.Handle());
    const ComPtr<IXMLDOMDocument2> document = LoadTestDocument(kTicket);
    const TestDevmode devmode;
    for (auto _ : state)
        RequireOk(state, binding.provider->ConvertDevModeToPrintTicket(devmode.Size(), devmode.Get(), 0, nullptr,
                                                                       document.Get()));
}

void ToDevmode(benchmark::State& state)
{
    const TestPrinter printer(0x888);
    ProviderBinding binding;
    binding.BindTo(printer.Handle());
    const ComPtr<IXMLDOMDocument2> document = LoadTestDocument(kTicket);
    const TestDevmode devmode;
    for (auto _ : state)
        RequireOk(state, binding.provider->ConvertPrintTicketToDevMode(document.Get(), devmode.Size(), devmode.Get(), 0,
                                                                       nullptr));
}

// What a document of the given size is made of.
enum class Content
{
    Features,   // each with an option and a property of its own
    Parameters, // initialisers, each with a feature that refers to it
};

std::string LargeTicket(Content content, std::int64_t count)
{
    std::string text;
    for (std::int64_t index = 0; index < count; ++index)
    {
        const std::string number = std::to_string(index);
        text += "<psf:Feature name=\"psk:F" + number + "\"><psf:Option><psf:ScoredProperty name=\"psk:S\">" +
                (content == Content::Features ? "<psf:Value>1</psf:Value>"
                                              : "<psf:ParameterRef name=\"psk:P" + number + "\"/>") +
                "</psf:ScoredProperty></psf:Option></psf:Feature>";
        if (content == Content::Parameters)
            text += "<psf:ParameterInit name=\"psk:P" + number + "\"><psf:Value>1</psf:Value></psf:ParameterInit>";
    }
    return TicketAround(text);
}

// The bare DOM looks at every element once and finds none: what a node costs at that size of document.
void PassOver(benchmark::State& state, Content content)
{
    const std::string text = LargeTicket(content, state.range(0));
    const CComBSTR query(W("//psf:Nothing"));
    ComPtr<IXMLDOMDocument2> document;
    for (auto _ : state)
    {
        state.PauseTiming();
        document = LoadDocument(text);
        const PrintTicketXmlDocument ticket(document.Get()); // declares the prefix of the query
        ComPtr<IXMLDOMNodeList> none;
        state.ResumeTiming();
        RequireOk(state, document->selectNodes(query.Get(), none.Put()));
    }
    state.SetComplexityN(state.range(0));
}

// One deletion with its orphans in a document of the given size; the fit must be linear.
//
// Its instructions are linear to a percent (callgrind: 5,660 for each feature and 15,500 for each parameter, among
// 5,000 as among 40,000). Its time leans upwards, as that of the bare pass beside it does: the nodes of a large
// document come from slower memory.
void DeleteWithOrphans(benchmark::State& state, Content content)
{
    const std::string text = LargeTicket(content, state.range(0));
    std::optional<PrintTicketXmlDocument> ticket; // outlives its round: freeing a document is not the deletion's work
    for (auto _ : state)
    {
        state.PauseTiming();
        ticket.emplace(LoadDocument(text).Get());
        state.ResumeTiming();
        RequireOk(state, ticket->DeleteFeatureAndOrphanParameterInitsIfExists(W("psk:"), W("F0")));
    }
    state.SetComplexityN(state.range(0));
}

} // namespace

int main(int argc, char** argv)
{
    CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
    benchmark::RegisterBenchmark("yardstick", Yardstick);
    benchmark::RegisterBenchmark("wrap a ticket", WrapDocument, kTicket);
    benchmark::RegisterBenchmark("find a feature", FindFeature, kTicket, W("JobInputBin"));
    benchmark::RegisterBenchmark("find a feature among 300", FindFeature, "tickets/large-300.xml", W("JobThing299"));
    benchmark::RegisterBenchmark("delete and add a feature/option pair", ReplaceFeature);
    benchmark::RegisterBenchmark("devmode to ticket", ToTicket);
    benchmark::RegisterBenchmark("ticket to devmode", ToDevmode);
    const auto grow = [](benchmark::internal::Benchmark* large)
    {
        large->RangeMultiplier(2)->Range(5000, 40000)->Unit(benchmark::kMicrosecond)->Complexity(benchmark::oN);
    };
    for (const auto& [what, content] :
         {std::pair{"N features", Content::Features}, std::pair{"N parameters", Content::Parameters}})
    {
        benchmark::RegisterBenchmark((std::string("pass over ") + what).c_str(), PassOver, content)->Apply(grow);
        benchmark::RegisterBenchmark((std::string("delete a feature among ") + what).c_str(), DeleteWithOrphans,
                                     content)
            ->Apply(grow);
    }
    benchmark::Initialize(&argc, argv);
    RatioReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    CoUninitialize();
    return 0;
}
