// Every allocation and every platform call of an operation fails in turn: it fails cleanly, then works again. Linux.

#include <functional>
#include <new>
#include <optional>
#include <string>

#include "complugins/ptpcprovider/domhelpers.h"
#include "complugins/ptpcprovider/failureguard.h"
#include "complugins/workflowobject.h"
#include "printerhandle.h"
#include "tests/common/documentcomparer.h"
#include "tests/common/failurecode.h"
#include "tests/common/oemdevmodebytes.h"
#include "tests/common/testdevmode.h"
#include "tests/common/testdocuments.h"
#include "tests/common/testprinter.h"
#include "tests/platform/eachfault.h"
#include "tests/ptpcprovider/provideraccess.h"
#include "tests/tvui/installedprinter.h"
#include "utilitiesstaticlib/findfunction.h"
#include "winport/faultinjection.h"

namespace
{

using winport::FaultKind;

class Faults : public testing::Test
{
protected:
    void SetUp() override
    {
        if (TVPT_ALLOCATION_FAULTS == 0)
            GTEST_SKIP() << "allocations cannot fail here: the sanitizer keeps its own operator new";
    }
};

// Without parameters that nothing refers to: those go with a former size, unless that was half done already.
ComPtr<IXMLDOMDocument2> LoadTicket()
{
    ComPtr<IXMLDOMDocument2> ticket = LoadTestDocument("tickets/private-prefix-ns1.xml");
    Remove(ticket.Get(), "//psf:ParameterInit");
    return ticket;
}

ULONG References(IXMLDOMDocument2* document)
{
    document->AddRef();
    return document->Release();
}

struct ConversionCase
{
    const char* name;
    std::function<HRESULT(IPrintOemPrintTicketProvider&, IXMLDOMDocument2*, const TestDevmode&)> convert;
};

const ConversionCase kConversions[] = {
    {"devmode to ticket",
     [](auto& provider, auto* ticket, const auto& devmode)
     {
         return provider.ConvertDevModeToPrintTicket(devmode.Size(), devmode.Get(), 0, nullptr, ticket);
     }},
    {"ticket to devmode",
     [](auto& provider, auto* ticket, const auto& devmode)
     {
         return provider.ConvertPrintTicketToDevMode(ticket, devmode.Size(), devmode.Get(), 0, nullptr);
     }},
    {"validation",
     [](auto& provider, auto* ticket, const auto&)
     {
         return provider.ValidatePrintTicket(ticket);
     }},
};

TEST_F(Faults, LeaveConversionsCleanAndRepeatable)
{
    const TestPrinter printer(0x888);
    ProviderBinding binding;
    ASSERT_EQ(S_OK, binding.BindTo(printer.Handle()));
    const ComPtr<IPrintOemPrintTicketProvider>& provider = binding.provider;
    for (const ConversionCase& conversion : kConversions)
        for (const FaultKind kind : {FaultKind::Allocation, FaultKind::PlatformCall})
        {
            SCOPED_TRACE(conversion.name);
            const ComPtr<IXMLDOMDocument2> expected = LoadTicket();
            const TestDevmode expectedDevmode;
            EXPECT_EQ(S_OK, conversion.convert(*provider.Get(), expected.Get(), expectedDevmode));
            unsigned faults = 0;
            for (bool again = true; again; ++faults)
            {
                const TestDevmode devmode;
                const ComPtr<IXMLDOMDocument2> ticket = LoadTicket();
                const ULONG references = References(ticket.Get());
                winport::ArmFault(kind, faults + 1);
                const HRESULT result = conversion.convert(*provider.Get(), ticket.Get(), devmode);
                again = winport::DisarmFault(kind);
                // A dump that fails is skipped, and a form list that cannot be had is as good as this printer's, which
                // has none: what does not stop the conversion does not change it.
                EXPECT_TRUE(result == S_OK || (again && result == E_FAIL)) << faults + 1 << ": " << result;
                EXPECT_EQ("", result == S_OK ? CompareDocuments(expected.Get(), ticket.Get()) : "") << faults + 1;
                EXPECT_EQ(references, References(ticket.Get()));
                EXPECT_EQ(S_OK, conversion.convert(*provider.Get(), ticket.Get(), devmode)); // then works again
                EXPECT_EQ("", CompareDocuments(expected.Get(), ticket.Get()));
                EXPECT_EQ(expectedDevmode.Bytes(), devmode.Bytes());
            }
            EXPECT_GT(faults, 10u);
        }
}

class InstalledFaults : public InstalledPrinter
{
};

std::vector<std::byte> PrivatePart(const TestDevmode& devmode)
{
    const std::vector<std::byte> bytes = devmode.Bytes();
    return {bytes.begin() + devmode.Get()->dmSize, bytes.end()};
}

// The paper and the copies are written as they are translated, the private settings all at the end.
TEST_F(InstalledFaults, InTheMiddleLeaveWhatWasWrittenAndCommitNothing)
{
    Install(kPostScriptModel);
    const std::string name = m_name.ToUtf8();
    WriteBytes(File("set.dm"), NewDevmode(name, {"feature.175=6801", "dmPaperSize=11", "dmCopies=9"}));
    OutputOf({"devmode", "reconcile", "--printer", name, File("set.dm")});
    const std::string made = OutputOf({"ticket", "from-devmode", "--printer", name, File("set.dm")});
    const std::string bytes = NewDevmode(name);
    const TestDevmode before(std::as_bytes(std::span(bytes)));
    const PrinterHandle handle = PrinterHandle::Open(name, PrinterHandle::Access::Use);
    ProviderBinding binding;
    ASSERT_EQ(S_OK, binding.BindTo(handle.Get()));
    const ComPtr<IXMLDOMDocument2> ticket = LoadDocument(made);
    Remove(ticket.Get(), "//psf:ParameterInit[starts-with(@name,'tk:')]"); // the whole part, written first of all
    const auto convert = [&](const TestDevmode& devmode)
    {
        return binding.provider->ConvertPrintTicketToDevMode(ticket.Get(), devmode.Size(), devmode.Get(), 0, nullptr);
    };
    const TestDevmode converted(before.Bytes());
    EXPECT_EQ(S_OK, convert(converted));
    EXPECT_NE(PrivatePart(before), PrivatePart(converted));
    unsigned halfWritten = 0;
    bool again = true;
    for (unsigned nth = 1; again; ++nth)
    {
        const TestDevmode devmode(before.Bytes());
        winport::ArmFault(FaultKind::PlatformCall, nth);
        const HRESULT result = convert(devmode);
        again = winport::DisarmFault(FaultKind::PlatformCall);
        if (result == S_OK)
            continue;
        EXPECT_EQ(E_FAIL, result);
        EXPECT_EQ(PrivatePart(before), PrivatePart(devmode)) << nth;
        halfWritten += before.Bytes() != devmode.Bytes() ? 1u : 0u;
    }
    EXPECT_GT(halfWritten, 0u);
}

TEST_F(Faults, OfBindingHaveTheirCodes)
{
    // With the driver's workflow module, which reads the whole model.
    const TestPrinter printer(
        {.capabilityWord = 0xE02, .model = "tavlen-c9070-ps.json", .dependentFiles = {"tvwftu_b.dll"}});
    // What the process keeps of a first binding is not asked for again: every round below asks for the same.
    ProviderBinding first;
    ASSERT_EQ(S_OK, first.BindTo(printer.Handle()));
    unsigned published = 0;
    for (const FaultKind kind : {FaultKind::Allocation, FaultKind::PlatformCall})
    {
        bool again = true;
        for (unsigned nth = 1; again; ++nth)
        {
            SCOPED_TRACE(nth);
            ProviderBinding binding;
            TavlenPtProviderTestAccess::UseDataModel(*binding.object);
            winport::ArmFault(kind, nth);
            const HRESULT result = binding.BindTo(printer.Handle());
            again = winport::DisarmFault(kind);
            // A fault while the workflow module is looked for does not keep the printer from being bound.
            EXPECT_TRUE(result == S_OK || (again && (result == E_FAIL || result == E_OUTOFMEMORY))) << result;
            EXPECT_FALSE(TavlenPtProviderTestAccess::DataModelIsInUse(*binding.object));
            // Without memory for the namespace the count stays at 1, for the array and for its string alike.
            if (result == E_OUTOFMEMORY && binding.namespaceCount == 1)
            {
                ++published;
                EXPECT_TRUE(binding.uri.IsEmpty());
            }
        }
    }
    EXPECT_EQ(2u, published);
}

// A data model's build that fails leaves none, and the next call builds it.
TEST_F(Faults, OfAFullBuildLeaveItForTheNextCall)
{
    const TestPrinter printer(
        {.capabilityWord = 0xE02, .model = "tavlen-c9070-ps.json", .dependentFiles = {"tvwftu_b.dll"}});
    const TestDevmode devmode(OemDevmodeBytes::Make(CoreDriverLayout::PostScript, {}));
    std::optional<ProviderBinding> binding;
    const auto build = [&]
    {
        const auto body = [&]
        {
            return HRESULT{!binding->object->InitializeOrReInitializeDataModel(devmode.Get())};
        };
        return RunGuarded({W("Test::Method"), W("tests"), 1}, body) == S_OK;
    };
    const auto isWhole = [&](bool isBuilt)
    {
        const bool has = binding && binding->object->GetFeatureServicesPtr() != nullptr;
        const bool isBound = !isBuilt || binding.emplace().BindTo(printer.Handle()) == S_OK; // for the next one
        TavlenPtProviderTestAccess::UseDataModel(*binding->object);
        return isBound && has == isBuilt;
    };
    isWhole(true);
    ExpectEachFaultHarmless(build, isWhole);
}

// The search asks the spooler for every file of the driver. Whatever call of it fails, the printer has no workflow
// module for now; that is no failure. None is stored for this printer, so that each round searches.
TEST_F(Faults, OfTheSearchForAWorkflowModuleFindNone)
{
    static std::string traced;
    traced.clear();
    TavlenException::SetDebugHook(
        [](const WCHAR* line, const ThrowSite&, const ExecutionContextStack&)
        {
            traced += Utf8(line) + "\n";
            return false;
        });
    const TestPrinter printer({.capabilityWord = 0xE02, .model = "tavlen-c9070-ps.json", .dependentFiles = {}});
    bool again = true;
    for (unsigned nth = 1; again; ++nth)
    {
        WorkflowObject workflow;
        winport::ArmFault(FaultKind::PlatformCall, nth);
        EXPECT_NO_THROW(EXPECT_FALSE(workflow.Load(printer.Handle()))) << nth;
        again = winport::DisarmFault(FaultKind::PlatformCall);
    }
    TavlenException::SetDebugHook(nullptr);
    EXPECT_NE(std::string::npos, traced.find("GetPrinterDriverW failed for level 6, environment \"\"")) << traced;
}

// A module that has no memory for its object is not one that has none to give.
TEST_F(Faults, OfTheWorkflowModulesObjectAreThrown)
{
    const std::unique_ptr<std::remove_pointer_t<HMODULE>, WorkflowModuleRelease> module(
        LoadLibraryExW(W("tvwftu_B.dll"), nullptr, 0));
    ASSERT_NE(nullptr, module);
    const auto getObject = FindFunction<GetWorkflowObjectFunction>(module.get(), kGetWorkflowObjectName);
    winport::ArmFault(FaultKind::Allocation, 1);
    EXPECT_THROW(static_cast<void>(getObject(0)), std::bad_alloc);
    EXPECT_TRUE(winport::DisarmFault(FaultKind::Allocation));
}

TEST_F(Faults, OfTheSmallOperationsHaveTheirCodes)
{
    winport::ArmFault(FaultKind::Allocation, 1);
    IPrintOemPrintTicketProvider* none = nullptr;
    EXPECT_EQ(E_OUTOFMEMORY, CreateTavlenPtProvider(&none));
    EXPECT_TRUE(winport::DisarmFault(FaultKind::Allocation));
    EXPECT_EQ(nullptr, none);

    ComPtr<IPrintOemPrintTicketProvider> provider;
    ASSERT_EQ(S_OK, CreateTavlenPtProvider(provider.Put()));
    winport::ArmFault(FaultKind::Allocation, 1);
    INT* versions = nullptr;
    INT count = 77;
    EXPECT_EQ(E_OUTOFMEMORY, provider->GetSupportedVersions(nullptr, &versions, &count));
    EXPECT_EQ(0, count);
    EXPECT_TRUE(winport::DisarmFault(FaultKind::Allocation));
}

// As every other failure of the document layer's own steps.
TEST_F(Faults, OfTheDocumentLayerHaveTheirCode)
{
    const CXString name(WideString(100, W('n')));
    PrintTicketQueryBuilder builder(W("psf:"));
    const std::function<void()> operations[] = {
        [&] {
            static_cast<void>(MakeBstr(name, {W("Test::Method"), W("tests")}));
        },
        [&] { builder.AddFeature(W("psk:"), name); },
        [&] { builder.AddValue(); },
        [&] { builder.AddOption(W("psk:")); },
        [&] { QueryOf(builder); },
    };
    for (const std::function<void()>& operation : operations)
    {
        const auto fail = [&]
        {
            winport::ArmFault(FaultKind::Allocation, 1);
            operation();
        };
        EXPECT_EQ(E_OUTOFMEMORY, CodeOf(fail)) << &operation - operations;
        EXPECT_TRUE(winport::DisarmFault(FaultKind::Allocation));
        operation(); // then works again
    }
}

} // namespace
