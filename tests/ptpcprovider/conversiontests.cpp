// The document operations: arguments, the failure guard and its reports, copies both ways, real tickets.
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
#include "complugins/ptpcprovider/printticketxmldocument.h"
#include "complugins/ptpcprovider/tavlenptprovider.h"
#include "tests/common/documentcomparer.h"
#include "tests/common/testdevmode.h"
#include "tests/common/testdocuments.h"

namespace
{

constexpr const char* kCopiesValue = "//psf:ParameterInit[@name='psk:JobCopiesAllDocuments']/psf:Value";

// What DisplayExceptionMessage was given.
struct SeenReport
{
    std::string what;
    std::string method;
    std::string file;
    int line;
    std::size_t contextDepth;
};

class Conversions : public testing::Test
{
protected:
    Conversions()
    {
        EXPECT_EQ(S_OK, CreateTavlenPtProvider(provider.Put()));
        m_previous = TavlenException::SetReportSink({&Conversions::OnReport, this});
    }

    ~Conversions() override
    {
        TavlenException::SetReportSink(m_previous);
    }

    HRESULT ToTicket(const TestDevmode& devmode, IXMLDOMDocument2* ticket)
    {
        return provider->ConvertDevModeToPrintTicket(devmode.Size(), devmode.Get(), 0, nullptr, ticket);
    }

    HRESULT ToDevmode(IXMLDOMDocument2* ticket, const TestDevmode& devmode)
    {
        return provider->ConvertPrintTicketToDevMode(ticket, devmode.Size(), devmode.Get(), 0, nullptr);
    }

    ComPtr<IPrintOemPrintTicketProvider> provider;
    std::vector<SeenReport> reports;

private:
    static void OnReport(const TavlenException::Report& report, void* self)
    {
        static_cast<Conversions*>(self)->reports.push_back(
            {report.exception != nullptr ? report.exception->what() : "(none)", Utf8(report.site.method),
             Utf8(report.site.file), report.site.line, report.contexts->Depth()});
    }

    TavlenException::Sink m_previous = {};
};

TEST_F(Conversions, CarryCopiesBothWays)
{
    struct Case
    {
        short copies;
        const char* text;
        short back;
    };
    // Written as unsigned 32-bit. A negative count, which no print dialog makes, wraps; it is read back as the largest
    // number that the runtime's conversion gives, cut to 16 bits.
    constexpr Case kCases[] = {{1, "1", 1}, {999, "999", 999},      {32767, "32767", 32767},
                               {0, "0", 0}, {-1, "4294967295", -1}, {-2, "4294967294", -1}};
    for (const Case& test : kCases)
    {
        SCOPED_TRACE(test.text);
        const ComPtr<IXMLDOMDocument2> ticket = LoadTestDocument("tickets/platform-00.xml");
        const TestDevmode devmode;
        devmode.Get()->dmCopies = test.copies;
        EXPECT_EQ(S_OK, ToTicket(devmode, ticket.Get()));
        EXPECT_EQ(S_OK, ToTicket(devmode, ticket.Get())); // twice is once
        EXPECT_EQ((std::vector<std::string>{test.text}), Select(ticket.Get(), kCopiesValue));

        const TestDevmode back;
        back.Get()->dmCopies = 5;
        EXPECT_EQ(S_OK, ToDevmode(ticket.Get(), back));
        EXPECT_EQ(test.back, back.Get()->dmCopies);
        EXPECT_EQ(0u, back.Get()->dmFields); // not touched, on purpose
    }
}

TEST_F(Conversions, ReadCopiesAsTheRuntimeReadsNumbers)
{
    struct Case
    {
        const char* init;
        short copies;
    };
    constexpr Case kCases[] = {
        {"<psf:Value xsi:type=\"xsd:integer\">12</psf:Value>", 12},
        {"<psf:Value><![CDATA[12]]></psf:Value>", 12},
        {"<psf:Value>abc</psf:Value>", 0},
        {"<psf:Value>7up</psf:Value>", 7},
        {"<psf:Value>65537</psf:Value>", 1}, // cut to 16 bits
        {"<psf:Value/>", 5},                 // an empty text changes nothing
        {"", 5},                             // and so does a missing one, also where a second initialiser has a value
    };
    for (const Case& test : kCases)
    {
        SCOPED_TRACE(test.init);
        const ComPtr<IXMLDOMDocument2> ticket = LoadDocument(
            TicketAround("<psf:ParameterInit name=\"psk:JobCopiesAllDocuments\">" + std::string(test.init) +
                         "</psf:ParameterInit><psf:ParameterInit name=\"psk:JobCopiesAllDocuments\">"
                         "<psf:Value>9</psf:Value></psf:ParameterInit>"));
        const TestDevmode devmode;
        devmode.Get()->dmCopies = 5;
        EXPECT_EQ(S_OK, ToDevmode(ticket.Get(), devmode));
        EXPECT_EQ(test.copies, devmode.Get()->dmCopies);
    }
}

TEST_F(Conversions, LeaveOneCopiesParameterOfSeveral)
{
    const std::string one = "<psf:ParameterInit name=\"psk:JobCopiesAllDocuments\"><psf:Value>8</psf:Value>"
                            "</psf:ParameterInit>";
    const ComPtr<IXMLDOMDocument2> ticket = LoadDocument(TicketAround(one + one + one));
    const TestDevmode devmode;
    devmode.Get()->dmCopies = 3;
    EXPECT_EQ(S_OK, ToTicket(devmode, ticket.Get()));
    EXPECT_EQ((std::vector<std::string>{"3"}), Select(ticket.Get(), kCopiesValue));
}

TEST_F(Conversions, TakeEveryTicketOrRefuseItWhole)
{
    const std::vector<std::string> refused = {"tickets/odd-default-namespace.xml", "tickets/odd-https-namespaces.xml"};
    for (const std::string& name : TestDocumentsIn("tickets"))
    {
        SCOPED_TRACE(name);
        const ComPtr<IXMLDOMDocument2> base = LoadTestDocument(name);
        const ComPtr<IXMLDOMDocument2> ticket = LoadTestDocument(name);
        ASSERT_TRUE(ticket);
        const TestDevmode devmode;
        devmode.Get()->dmCopies = 4;
        const bool isRefused = std::find(refused.begin(), refused.end(), name) != refused.end();
        EXPECT_EQ(isRefused ? E_FAIL : S_OK, ToTicket(devmode, ticket.Get()));
        EXPECT_EQ(isRefused ? E_FAIL : S_OK, ToDevmode(ticket.Get(), devmode));
        EXPECT_EQ(isRefused ? 2u : 0u, reports.size());
        reports.clear();
        if (isRefused)
        {
            EXPECT_EQ(TextOf(base.Get()), TextOf(ticket.Get()));
            EXPECT_EQ(4, devmode.Get()->dmCopies);
            continue;
        }
        // Everything but the copies is what wrapping alone makes of the base, also after a trip through text.
        EXPECT_EQ(S_OK, provider->ValidatePrintTicket(base.Get()));
        const ComPtr<IXMLDOMDocument2> again = Reparse(ticket.Get());
        ASSERT_TRUE(again);
        const TestDevmode back;
        EXPECT_EQ(S_OK, ToDevmode(again.Get(), back));
        EXPECT_EQ(4, back.Get()->dmCopies);
        for (const ComPtr<IXMLDOMDocument2>& document : {base, again})
        {
            PrintTicketXmlDocument wrapper(document.Get());
            while (wrapper.DeleteParameterInitNodeIfExists(wrapper.GetNsPrefix(PrintSchema::Keywords),
                                                           W("JobCopiesAllDocuments")) == S_OK)
            {
            }
        }
        EXPECT_EQ("", CompareDocuments(base.Get(), again.Get()));
    }
}

TEST_F(Conversions, OfIntentsAndValidationLeaveTheTicketAsItIs)
{
    for (const auto operation :
         {&IPrintOemPrintTicketProvider::ExpandIntentOptions, &IPrintOemPrintTicketProvider::ValidatePrintTicket})
    {
        const ComPtr<IXMLDOMDocument2> ticket = LoadTestDocument("tickets/platform-04.xml");
        const std::string before = TextOf(ticket.Get());
        EXPECT_EQ(S_OK, (provider.Get()->*operation)(ticket.Get()));
        EXPECT_EQ(before, TextOf(ticket.Get()));
        EXPECT_EQ(E_INVALIDARG, (provider.Get()->*operation)(nullptr));
        EXPECT_TRUE(reports.empty());
        const ComPtr<IXMLDOMDocument2> other = LoadDocument(std::string("<x/>"));
        EXPECT_EQ(E_FAIL, (provider.Get()->*operation)(other.Get()));
        ASSERT_EQ(1u, reports.size());
        reports.clear();
    }
}

// Dump points are compiled in by the build option only; a folder that is not there fails no conversion.
TEST_F(Conversions, DumpTheirDocumentsWhereThatIsCompiledIn)
{
    const std::filesystem::path folder =
        std::filesystem::temp_directory_path() / ("tavlen-dumps-" + std::to_string(GetCurrentProcessId()));
    std::filesystem::create_directories(folder);
    const TestDevmode devmode;
    for (const std::filesystem::path& target : {folder / "missing", folder})
    {
        SetEnvironmentVariableW(W("TVPT_DUMP_FOLDER"), CXString::FromUtf8(target.string()).c_str());
        const ComPtr<IXMLDOMDocument2> ticket = LoadDocument(TicketAround(""));
        EXPECT_EQ(S_OK, ToTicket(devmode, ticket.Get()));
        EXPECT_EQ(S_OK, ToDevmode(ticket.Get(), devmode));
    }
    SetEnvironmentVariableW(W("TVPT_DUMP_FOLDER"), nullptr);

    std::vector<std::string> labels;
    for (const auto& entry : std::filesystem::directory_iterator(folder))
    {
        const std::string name = entry.path().filename().string();
        labels.push_back(name.substr(0, name.find('_', name.find('_') + 1)));
    }
    std::sort(labels.begin(), labels.end());
    std::filesystem::remove_all(folder);
    const std::vector<std::string> every = {"PrintTicket_AfterConvertDevModeToPrintTicket",
                                            "PrintTicket_BeforeConvertDevModeToPrintTicket",
                                            "PrintTicket_InputToConvertPrintTicketToDevMode"};
    EXPECT_EQ(TVPT_DOCUMENT_DUMPS != 0 ? every : std::vector<std::string>(), labels);
}

TEST_F(Conversions, RefuseADevmodeThatIsNotWhole)
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
        {"an older, short public part", 188, 0, 220, E_INVALIDARG},
        {"no size", 0, 0, 220, E_INVALIDARG},
        {"a public part beyond the end", 220, 0, 219, E_INVALIDARG},
        {"driver data that ends with the block", 220, 100, 320, S_OK},
        {"driver data beyond the end", 220, 101, 320, E_INVALIDARG},
        {"the largest claims", 65535, 65535, 220, E_INVALIDARG},
        {"a block that ends before the sizes", 220, 0, 71, E_INVALIDARG},
        {"one byte", 220, 0, 1, E_INVALIDARG},
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
    EXPECT_EQ(E_INVALIDARG, provider->ConvertDevModeToPrintTicket(0, devmode.Get(), 0, nullptr, ticket.Get()));
    EXPECT_EQ(E_INVALIDARG, provider->ConvertDevModeToPrintTicket(220, nullptr, 0, nullptr, ticket.Get()));
    EXPECT_EQ(E_INVALIDARG, ToTicket(devmode, nullptr));
    EXPECT_EQ(E_INVALIDARG, provider->ConvertPrintTicketToDevMode(ticket.Get(), 0, devmode.Get(), 0, nullptr));
    EXPECT_EQ(E_INVALIDARG, provider->ConvertPrintTicketToDevMode(ticket.Get(), 220, nullptr, 0, nullptr));
    EXPECT_EQ(E_INVALIDARG, ToDevmode(nullptr, devmode));
    EXPECT_EQ(E_INVALIDARG, provider->CompletePrintCapabilities(ticket.Get(), nullptr));
    EXPECT_TRUE(reports.empty()); // bad arguments are no failures to report
}

TEST_F(Conversions, ReportFailuresWithTheirPlace)
{
    struct Case
    {
        std::function<HRESULT(IXMLDOMDocument2*)> operation;
        const char* method;
        int line;
    };
    const TestDevmode devmode;
    const Case cases[] = {
        {[&](auto* ticket) { return ToDevmode(ticket, devmode); }, "TavlenPtProvider::ConvertPrintTicketToDevMode",
         867},
        {[&](auto* ticket) { return ToTicket(devmode, ticket); }, "TavlenPtProvider::ConvertDevModeToPrintTicket",
         1033},
        {[&](auto* ticket) { return provider->ExpandIntentOptions(ticket); }, "TavlenPtProvider::ExpandIntentOptions",
         1289},
        {[&](auto* ticket) { return provider->ValidatePrintTicket(ticket); }, "TavlenPtProvider::ValidatePrintTicket",
         1392},
    };
    const ComPtr<IXMLDOMDocument2> noTicket = LoadDocument(std::string("<x/>"));
    for (const Case& test : cases)
    {
        SCOPED_TRACE(test.method);
        reports.clear();
        EXPECT_EQ(E_FAIL, test.operation(noTicket.Get()));
        ASSERT_EQ(1u, reports.size());
        EXPECT_EQ(test.method, reports[0].method);
        EXPECT_EQ("complugins\\ptpcprovider\\tavlenptprovider", reports[0].file);
        EXPECT_EQ(test.line, reports[0].line);
    }
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
        ASSERT_EQ(1u, reports.size());
        EXPECT_EQ(what, reports[0].what);
        EXPECT_EQ("Test::Method", reports[0].method);
        EXPECT_EQ(12, reports[0].line);
        EXPECT_EQ(1u, reports[0].contextDepth); // the failed call's own
        EXPECT_EQ(0u, UtilitiesDllPerThreadStorage::GetExecutionContextStack().Depth());
    }
    reports.clear();
    EXPECT_EQ(S_FALSE, RunGuarded(kSite, [] { return S_FALSE; }));
    EXPECT_TRUE(reports.empty());
}

} // namespace
