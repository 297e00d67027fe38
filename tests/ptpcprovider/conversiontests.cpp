// The document operations: arguments, copies both ways, real tickets; the failure guard and all operations' reports.
#include <gtest/gtest.h>

#include <tvutil/executioncontext.h>
#include <tvutil/tavlencomexception.h>

#include <algorithm>
#include <filesystem>
#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

#include "complugins/ptpcprovider/failureguard.h"
#include "tests/common/documentcomparer.h"
#include "tests/common/testdevmode.h"
#include "tests/common/testdocuments.h"
#include "tests/common/testprinter.h"
#include "tests/ptpcprovider/provideraccess.h"

namespace
{

constexpr const char* kFormerOrientation =
    "//psf:Feature[@name='psk:PageOrientation'][following::psf:Feature[@name='psk:PageOrientation']]";
constexpr const char* kCopies = "//psf:ParameterInit[@name='psk:JobCopiesAllDocuments']";
constexpr const char* kSize = "//psf:Feature[@name='psk:PageMediaSize']";
constexpr const char* kSizeParameters = "//psf:ParameterInit[starts-with(@name,'psk:PageMediaSize')]";
constexpr const char* kOrphans = "//psf:ParameterInit[not(@name=//psf:ParameterRef/@name)]";

std::string Parameter(const std::string& content)
{
    return "<psf:ParameterInit name=\"psk:JobCopiesAllDocuments\">" + content + "</psf:ParameterInit>";
}

class Conversions : public testing::Test, protected ProviderBinding
{
protected:
    Conversions() : m_previous(TavlenException::SetReportSink({&Conversions::OnReport, this}))
    {
    }

    ~Conversions() override
    {
        TavlenException::SetReportSink(m_previous);
    }

    // What DisplayExceptionMessage was given: "file method:line, depth of contexts, what".
    std::vector<std::string> reports;

private:
    static void OnReport(const TavlenException::Report& report, void* self)
    {
        static_cast<Conversions*>(self)->reports.push_back(
            Utf8(report.site.file) + " " + Utf8(report.site.method) + ":" + std::to_string(report.site.line) + ", " +
            std::to_string(report.contexts->Depth()) + ", " +
            (report.exception != nullptr ? report.exception->what() : "(none)"));
    }

    TavlenException::Sink m_previous;
};

// Of a printer without a form list and media types: every size is a custom one.
class BoundConversions : public Conversions
{
protected:
    BoundConversions()
    {
        EXPECT_EQ(S_OK, BindTo(m_printer.Handle()));
    }

private:
    const TestPrinter m_printer{0x888};
};

TEST_F(BoundConversions, CarryCopiesBothWays)
{
    struct Case
    {
        short copies;
        const char* text;
        short back;
    };
    // Written as unsigned 32-bit. A negative count, which no print dialog makes, wraps; it is read back as the largest
    // number that the runtime's conversion gives, cut to 16 bits.
    constexpr Case kCases[] = {{1, "1", 1}, {32767, "32767", 32767}, {0, "0", 0}, {-2, "4294967294", -1}};
    // Several parameters of the name become one.
    const std::string parameter = Parameter("<psf:Value>8</psf:Value>");
    for (const Case& test : kCases)
    {
        SCOPED_TRACE(test.text);
        const ComPtr<IXMLDOMDocument2> ticket = LoadDocument(TicketAround(parameter + parameter + parameter));
        const TestDevmode devmode;
        devmode.Get()->dmCopies = test.copies;
        EXPECT_EQ(S_OK, ToTicket(devmode, ticket.Get()));
        EXPECT_EQ(S_OK, ToTicket(devmode, ticket.Get())); // twice is once
        EXPECT_EQ((std::vector<std::string>{test.text}), Select(ticket.Get(), kCopies));

        const TestDevmode back;
        back.Get()->dmCopies = 5;
        EXPECT_EQ(S_OK, ToDevmode(ticket.Get(), back));
        EXPECT_EQ(test.back, back.Get()->dmCopies);
        EXPECT_EQ(0u, back.Get()->dmFields & DM_COPIES); // not touched, on purpose
    }
}

TEST_F(BoundConversions, ReadCopiesAsTheRuntimeReadsNumbers)
{
    struct Case
    {
        const char* content;
        short copies;
    };
    constexpr Case kCases[] = {
        {"<psf:Value><![CDATA[12]]></psf:Value>", 12},
        {"<psf:Value>7up</psf:Value>", 7},
        {"<psf:Value>70000</psf:Value>", 4464}, // cut to 16 bits
        {"<psf:Value>-70001</psf:Value>", -4465},
        {"<psf:Value>abc</psf:Value>", 0},
        {"<psf:Value/>", 5}, // an empty text changes nothing
        {"", 5},             // and so does a missing one, also where a second initialiser has a value
    };
    for (const Case& test : kCases)
    {
        SCOPED_TRACE(test.content);
        const ComPtr<IXMLDOMDocument2> ticket =
            LoadDocument(TicketAround(Parameter(test.content) + Parameter("<psf:Value>9</psf:Value>")));
        const TestDevmode devmode;
        devmode.Get()->dmCopies = 5;
        EXPECT_EQ(S_OK, ToDevmode(ticket.Get(), devmode));
        EXPECT_EQ(test.copies, devmode.Get()->dmCopies);
    }
}

TEST_F(BoundConversions, TakeEveryTicketOrRefuseItWhole)
{
    const std::vector<std::string> refused = {"tickets/odd-default-namespace.xml", "tickets/odd-https-namespaces.xml"};
    for (const std::string& name : TestDocumentsIn("tickets"))
    {
        SCOPED_TRACE(name);
        const ComPtr<IXMLDOMDocument2> ticket = LoadTestDocument(name);
        CXString before = CXString::FromUtf8(TextOf(ticket.Get()));
        const TestDevmode devmode;
        devmode.Get()->dmCopies = 4;
        const bool isRefused = std::find(refused.begin(), refused.end(), name) != refused.end();
        EXPECT_EQ(isRefused ? E_FAIL : S_OK, ToTicket(devmode, ticket.Get()));
        const ComPtr<IXMLDOMDocument2> again = Reparse(ticket.Get());
        devmode.Get()->dmCopies = 5;
        EXPECT_EQ(isRefused ? E_FAIL : S_OK, ToDevmode(again.Get(), devmode));
        EXPECT_EQ(isRefused ? 5 : 4, devmode.Get()->dmCopies);
        EXPECT_EQ(isRefused ? 2u : 0u, reports.size());
        reports.clear();
        if (isRefused)
        {
            EXPECT_EQ(before.ToUtf8(), TextOf(ticket.Get()));
            continue;
        }
        // Everything but copies, size and the first of two orientations stays, with private names spelled by the
        // prefix "tk". A former size takes all parameters with it that nothing refers to.
        before.ReplaceAll(W("ns1:"), W("tk:"));
        const ComPtr<IXMLDOMDocument2> expected = LoadDocument(before.View());
        const bool hadSize = !Select(expected.Get(), kSize).empty();
        for (const ComPtr<IXMLDOMDocument2>& document : {expected, again})
            for (const char* const replaced :
                 {kCopies, kSize, kFormerOrientation, hadSize ? kOrphans : kSizeParameters})
                Remove(document.Get(), replaced);
        EXPECT_EQ("", CompareDocuments(expected.Get(), again.Get()));
    }
}

// Dump points are compiled in by the build option only.
TEST_F(BoundConversions, DumpTheirDocumentsWhereThatIsCompiledIn)
{
    const std::filesystem::path folder =
        std::filesystem::temp_directory_path() / ("tavlen-dumps-" + std::to_string(GetCurrentProcessId()));
    std::filesystem::create_directories(folder);
    SetEnvironmentVariableW(W("TVPT_DUMP_FOLDER"), CXString::FromUtf8(folder.string()).c_str());
    const TestDevmode devmode;
    const ComPtr<IXMLDOMDocument2> ticket = LoadDocument(TicketAround(""));
    EXPECT_EQ(S_OK, ToTicket(devmode, ticket.Get()));
    EXPECT_EQ(S_OK, ToDevmode(ticket.Get(), devmode));
    SetEnvironmentVariableW(W("TVPT_DUMP_FOLDER"), nullptr);
    const std::uintmax_t dumps = std::filesystem::remove_all(folder) - 1; // before, after, and what came back
    EXPECT_EQ(TVPT_DOCUMENT_DUMPS != 0 ? 3u : 0u, dumps);
}

TEST_F(BoundConversions, RefuseADevmodeThatIsNotWhole)
{
    struct Case
    {
        const char* name;
        WORD publicSize;
        WORD driverExtra;
        std::size_t blockSize;
        HRESULT result;
    };
    constexpr Case kCases[] = {
        {"a whole public part", 220, 0, 220, S_OK},
        {"the smallest", 204, 0, 204, S_OK},
        {"one byte less", 203, 0, 220, E_INVALIDARG},
        {"a public part beyond the end", 220, 0, 219, E_INVALIDARG},
        {"driver data that ends with the block", 220, 100, 320, S_OK},
        {"driver data beyond the end", 220, 101, 320, E_INVALIDARG},
        {"a block that ends before the sizes", 220, 0, 71, E_INVALIDARG},
    };
    for (const Case& test : kCases)
    {
        SCOPED_TRACE(test.name);
        // A private prefix that wrapping would change: nothing is touched before the devmode is seen to be whole.
        const ComPtr<IXMLDOMDocument2> ticket = LoadTestDocument("tickets/private-prefix-ns1.xml");
        const std::string before = TextOf(ticket.Get());
        const TestDevmode devmode(test.publicSize, test.driverExtra, test.blockSize);
        const std::vector<std::byte> bytes = devmode.Bytes();
        EXPECT_EQ(test.result, ToDevmode(ticket.Get(), devmode));
        EXPECT_EQ(test.result == S_OK, bytes != devmode.Bytes());
        EXPECT_EQ(test.result, ToTicket(devmode, ticket.Get()));
        EXPECT_EQ(test.result == S_OK, before != TextOf(ticket.Get()));
    }
    const ComPtr<IXMLDOMDocument2> ticket = LoadDocument(TicketAround(""));
    const TestDevmode devmode;
    EXPECT_EQ(E_INVALIDARG, provider->ConvertDevModeToPrintTicket(220, nullptr, 0, nullptr, ticket.Get()));
    EXPECT_EQ(E_INVALIDARG, ToTicket(devmode, nullptr));
    EXPECT_EQ(E_INVALIDARG, provider->ConvertPrintTicketToDevMode(ticket.Get(), 220, nullptr, 0, nullptr));
    EXPECT_EQ(E_INVALIDARG, ToDevmode(nullptr, devmode));
    EXPECT_EQ(E_INVALIDARG, provider->CompletePrintCapabilities(ticket.Get(), nullptr));
    EXPECT_EQ(E_INVALIDARG, provider->ExpandIntentOptions(nullptr));
    EXPECT_EQ(E_INVALIDARG, provider->ValidatePrintTicket(nullptr));
    EXPECT_TRUE(reports.empty()); // bad arguments are no failures to report
}

// The report has the operation's context; the hook sees all the work under way, from the innermost outwards.
TEST_F(Conversions, ReportAPrinterWhoseProductCannotBeRead)
{
    static std::string seen;
    seen.clear();
    TavlenException::SetDebugHook(
        [](const WCHAR*, const ThrowSite&, const ExecutionContextStack& contexts)
        {
            for (const BasicExecutionContext* context = contexts.Top(); context != nullptr; context = context->outer)
                seen += Utf8(context->site.method) + " ";
            return false;
        });
    const TestPrinter printer({0xE02, "", {"tvwftu_b.dll"}}); // its data file is no model
    EXPECT_EQ(E_FAIL, BindTo(printer.Handle()));
    TavlenException::SetDebugHook(nullptr);
    EXPECT_EQ("ProductData::ProductData WorkflowObject::Load TavlenPtProvider::BindPrinter ", seen);
    ASSERT_EQ(1u, reports.size());
    EXPECT_NE(std::string::npos, reports[0].find("TavlenPtProvider::BindPrinter:")) << reports[0];
    EXPECT_NE(std::string::npos, reports[0].find(", 1, ")) << reports[0];
    EXPECT_NE(std::string::npos, reports[0].find("tvtestdata")) << reports[0];
}

// A helper that does not keep to COM's rule against exceptions.
template <class Thrown>
class ThrowingHelper final : public IUnknown
{
public:
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID, void**) override
    {
        throw Thrown();
    }
    ULONG STDMETHODCALLTYPE AddRef() override
    {
        return 1;
    }
    ULONG STDMETHODCALLTYPE Release() override
    {
        return 1;
    }
};

TEST_F(Conversions, LetNoExceptionOfAHelperOut)
{
    ThrowingHelper<std::bad_alloc> outOfMemory;
    ThrowingHelper<int> odd;
    EXPECT_EQ(E_OUTOFMEMORY, provider->PublishPrintTicketHelperInterface(&outOfMemory));
    EXPECT_EQ(E_FAIL, provider->PublishPrintTicketHelperInterface(&odd));
    ASSERT_EQ(2u, reports.size());
    EXPECT_TRUE(reports[0].ends_with("bad allocation") && reports[1].ends_with("(none)"));
}

TEST_F(Conversions, GuardTurnsEveryExceptionIntoOneCode)
{
    static constexpr ThrowSite kSite{W("Test::Method"), W("tests"), 12};
    const std::pair<std::function<HRESULT()>, std::string> cases[] = {
        {[]() -> HRESULT { throw std::bad_alloc(); }, "bad allocation"},
        {[]() -> HRESULT { throw std::runtime_error("told"); }, "told"},
        {[]() -> HRESULT { ThrowComException(E_ACCESSDENIED, kSite); }, ""},
        {[]() -> HRESULT { throw 7; }, "(none)"},
    };
    for (const auto& [body, what] : cases)
    {
        reports.clear();
        EXPECT_EQ(E_FAIL, RunGuarded(kSite, body));
        EXPECT_EQ((std::vector<std::string>{"tests Test::Method:12, 1, " + what}), reports); // the call's own context
        EXPECT_EQ(0u, UtilitiesDllPerThreadStorage::GetExecutionContextStack().Depth());
    }
    reports.clear();
    EXPECT_EQ(S_FALSE, RunGuarded(kSite, [] { return S_FALSE; }));
    EXPECT_TRUE(reports.empty());
}

} // namespace
