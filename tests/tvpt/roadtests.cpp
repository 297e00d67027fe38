// The road of a conversion: devmode to ticket and back, through files, with the module of the installed driver.
#include <algorithm>
#include <map>
#include <regex>
#include <tuple>

#include "coredriverticket.h"
#include "devmode.h"
#include "documenttree.h"
#include "filebytes.h"
#include "hostrun.h"
#include "modelfiles.h"
#include "printschemadocument.h"
#include "tests/common/documentcomparer.h"
#include "tests/common/testfolders.h"
#include "tests/platform/wine.h"
#include "utilitiesstaticlib/documentlimits.h"

namespace
{

namespace fs = std::filesystem;
using nlohmann::json;

// What conversions keep of a ticket: all but the copies, their own features, the first of two orientations and the
// maker's parameters, with private names spelled by the prefix "tk".
std::string KeptOf(const std::string& bytes)
{
    const ComPtr<IXMLDOMDocument2> document = LoadDocument(bytes, "test");
    const CComBSTR own(
        W("//*[contains(@name, ':PageMedia') or contains(@name, ':PageOutputQuality') or "
          "contains(@name, ':PageColorManagement') or contains(@name, ':PageICMRenderingIntent') or "
          "contains(@name, ':JobCopiesAllDocuments') or contains(@name, ':JobTavlen') or "
          "(contains(@name, ':PageOrientation') and following::*[contains(@name, ':PageOrientation')])]"));
    for (ComPtr<IXMLDOMNode> node, parent; document->selectSingleNode(own.Get(), node.Put()) == S_OK;)
        if (node->get_parentNode(parent.Put()) != S_OK || parent->removeChild(node.Get(), nullptr) != S_OK)
            break;
    std::string kept = Meaning(document.Get());
    std::erase_if(kept, [](char character)
                  { return character == ' ' || character == '\t' || character == '\n' || character == '\r'; });
    return std::regex_replace(kept, std::regex("ns1:"), "tk:");
}

std::string CopiesOf(const SchemaElement& ticket)
{
    std::string copies;
    for (const SchemaElement* const parameter : ticket.Children("ParameterInit"))
        if (parameter->nameAttribute.Is(kKeywords.uri, "JobCopiesAllDocuments"))
            copies += parameter->Child("Value")->text + ";";
    return copies;
}

class Roads : public HostTest
{
protected:
    Roads() : m_printer(InstallTestPrinter())
    {
        MakeDevmode("in.dm", {"dmCopies=3"});
    }

    void MakeDevmode(const std::string& file, const std::vector<std::string>& settings)
    {
        WriteBytes(Folder() / file, NewDevmode(m_printer, settings));
    }

    RunResult FromDevmode(const std::string& base = {})
    {
        std::vector<std::string> arguments = {"ticket",      "from-devmode", "--printer",    m_printer,
                                              File("in.dm"), "-o",           File("out.xml")};
        if (!base.empty())
            arguments.insert(arguments.end(), {"--base", base});
        return RunHost(arguments);
    }

    // Out of "out.xml", into a devmode that asks for one.
    void ExpectCopiesComeBack(int copies)
    {
        MakeDevmode("other.dm", {"dmCopies=1"});
        const std::string before = ReadBytes(Folder() / "other.dm");
        const std::string back = OutputOf({"ticket", "to-devmode", "--printer", m_printer, "--devmode",
                                           File("other.dm"), File("out.xml"), "-o", "-"});
        EXPECT_EQ(ShownDevmode(back)["public"]["dmCopies"], copies);
        EXPECT_EQ(ReadBytes(Folder() / "other.dm"), before);
    }

    std::string m_printer;
};

TEST_F(Roads, EveryBaseGivesAWholeTicketOrOneErrorLine)
{
    // Documents that are no Print Schema documents to the provider.
    const std::map<std::string, std::string> refused = {
        {"odd-default-namespace.xml", "line 1: the root declares the framework's namespace as the default; it needs a "
                                      "prefix, such as psf"},
        {"odd-https-namespaces.xml", "the root element is psf:PrintTicket in the namespace https:"},
    };
    const std::string devmode = ReadBytes(Folder() / "in.dm");
    int converted = 0;
    for (const fs::directory_entry& entry : fs::directory_iterator(TestDataFolder() / "tickets"))
    {
        const std::string name = entry.path().filename().string();
        SCOPED_TRACE(name);
        const RunResult result = FromDevmode(Utf8FromPath(entry.path()));
        if (const auto row = refused.find(name); row != refused.end())
        {
            EXPECT_EQ(result.status, 1);
            EXPECT_TRUE(IsOneErrorLine(result.errors,
                                       "reading the document: " + Utf8FromPath(entry.path()) + ": " + row->second));
            EXPECT_FALSE(fs::exists(Folder() / "out.xml"));
            continue;
        }
        ASSERT_EQ(result.status, 0) << result.errors;
        const SchemaElement ticket = ReadTree(ReadBytes(Folder() / "out.xml"));
        EXPECT_EQ(KeptOf(ReadBytes(Folder() / "out.xml")), KeptOf(ReadBytes(entry.path())));
        EXPECT_EQ(CopiesOf(ticket), "3;");
        fs::remove(Folder() / "out.xml");
        ++converted;
    }
    EXPECT_GE(converted, 15);
    EXPECT_EQ(ReadBytes(Folder() / "in.dm"), devmode);
}

TEST_F(Roads, TheCoreDriversTicketFollowsTheDevmode)
{
    MakeDevmode("in.dm", {"dmCopies=4", "dmOrientation=2", "dmDuplex=3", "dmColor=1", "dmCollate=0", "dmScale=50",
                          "dmDefaultSource=260", "dmPrintQuality=1200", "dmYResolution=1200"});
    ASSERT_EQ(FromDevmode().status, 0);
    const json shown = json::parse(OutputOf({"ticket", "show", File("out.xml"), "--json"}));
    const auto optionOf = [&shown](const std::string& feature) -> json
    {
        for (const json& row : shown["features"])
            if (row["name"] == feature)
                return row["options"][0];
        return nullptr;
    };
    EXPECT_EQ(optionOf("psk:PageOrientation")["name"], "psk:Landscape");
    EXPECT_EQ(optionOf("psk:JobDuplexAllDocumentsContiguously")["name"], "psk:TwoSidedShortEdge");
    EXPECT_EQ(optionOf("psk:PageOutputColor")["name"], "psk:Monochrome");
    EXPECT_EQ(optionOf("psk:DocumentCollate")["name"], "psk:Uncollated");
    EXPECT_EQ(optionOf("psk:PageScaling")["scoredProperties"][0]["value"]["parameterRef"], "psk:PageScalingScale");
    EXPECT_EQ(optionOf("psk:PageResolution")["scoredProperties"][1]["value"], "1200");
    // The driver's own names live in the provider's namespace, whatever prefix they have in the end.
    EXPECT_EQ(optionOf("psk:JobInputBin")["name"], "tk:Tray1");
    EXPECT_TRUE(std::any_of(shown["parameters"].begin(), shown["parameters"].end(),
                            [](const json& row)
                            { return row["name"] == "psk:PageScalingScale" && row["value"] == "50"; }));
}

// In the raw text, which is what other readers of a ticket see.
TEST_F(Roads, TheDriversOwnNamesAreInTheNamespaceThatItsModelHas)
{
    struct Row
    {
        const char* model;
        const char* tray; // its first, as dmDefaultSource
        std::string uri;
    };
    const std::string own(kPrivateKeywords.uri);
    const Row rows[] = {
        {"tavlen-c9070-ps", "260", own},
        {"tavlen-b4400-uni", "1", "http://schemas.microsoft.com/windows/printing/oemdriverpt/Tavlen_B4400_Uni"},
        {"tavlen-w3100-xps", "260", own},
        {"tavlen-b7000-xps", "260", own},
    };
    for (const Row& row : rows)
    {
        SCOPED_TRACE(row.model);
        m_printer = InstallTestPrinter(row.model);
        MakeDevmode("in.dm", {"dmCopies=3", "dmDefaultSource=" + std::string(row.tray)});
        const PrinterModel model = ReadPrinterModel(FindModelFile(row.model));
        const bool isOwn = row.uri == own;
        const std::string uri = DriverNamespaceUri(isOwn ? CXString::FromUtf8(own) : CXString(), model.name);
        const std::string base =
            MakeCoreDriverTicket(Devmode::FromBytes(ReadBytes(Folder() / "in.dm"), "test"), model, uri, nullptr);
        EXPECT_NE(base.find(" xmlns:ns0000=\"" + row.uri + "\""), std::string::npos) << base;
        EXPECT_NE(base.find(" name=\"ns0000:Tray1\""), std::string::npos) << base;

        ASSERT_EQ(FromDevmode().status, 0);
        const std::string ticket = ReadBytes(Folder() / "out.xml");
        const SchemaElement tree = ReadTree(ticket);
        EXPECT_EQ(CopiesOf(tree), "3;");
        const auto features = tree.Children("Feature");
        EXPECT_TRUE(std::any_of(features.begin(), features.end(),
                                [&row](const SchemaElement* feature) {
                                    return feature->Child("Option") != nullptr &&
                                           feature->Child("Option")->nameAttribute.Is(row.uri, "Tray1");
                                }))
            << ticket;
        if (isOwn) // of others' namespaces the provider says nothing
        {
            EXPECT_NE(ticket.find(" xmlns:tk=\"" + row.uri + "\""), std::string::npos) << ticket;
            EXPECT_NE(ticket.find(" name=\"tk:Tray1\""), std::string::npos) << ticket;
            EXPECT_EQ(ticket.find(" name=\"ns0000:"), std::string::npos) << ticket;
        }
        ExpectCopiesComeBack(3);
    }
}

TEST_F(Roads, ValidatingAndExpandingLeaveTheDocument)
{
    const fs::path ticket = TestDataFolder() / "tickets/platform-04.xml";
    for (const char* const command : {"validate", "expand"})
    {
        SCOPED_TRACE(command);
        const RunResult result = RunHost({"ticket", command, "--printer", m_printer, "-"}, ReadBytes(ticket));
        ASSERT_EQ(result.status, 0) << result.errors;
        EXPECT_TRUE(result.out.starts_with("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"));
        EXPECT_EQ(KeptOf(result.out), KeptOf(ReadBytes(ticket)));
    }
}

TEST_F(Roads, TextBeyondAsciiAndBlanksSurvive)
{
    const std::string value = " \xC3\xA4 \xF0\x9F\x96\xA8 &amp; ";
    const auto parameter = [](const std::string& name, const std::string& text)
    {
        return "<psf:ParameterInit name='psk:" + name + "'><psf:Value>" + text + "</psf:Value></psf:ParameterInit>";
    };
    WriteBytes(Folder() / "base.xml",
               Ticket(Binding("psk", kKeywords.uri),
                      "<!-- \xC3\xA4 -->" + parameter("JobName", value) + parameter("Blank", "  ")));
    ASSERT_EQ(FromDevmode(File("base.xml")).status, 0);
    const std::string out = ReadBytes(Folder() / "out.xml");
    EXPECT_NE(out.find("<psf:Value>" + value + "</psf:Value>"), std::string::npos) << out;
    EXPECT_NE(out.find("<psf:Value>  </psf:Value>"), std::string::npos) << out;
    EXPECT_NE(out.find("<!-- \xC3\xA4 -->"), std::string::npos) << out;
}

// As a print service does, so that the provider's names have prefixes.
TEST_F(Roads, ABaseGetsTheStandardPrefixesThatItsRootLacks)
{
    const std::string inner = "<psf:Feature" + Binding("psk", kKeywords.uri) +
                              " name='psk:PageOrientation'><psf:Option name='psk:Portrait'/></psf:Feature>";
    // The name of the copies' parameter, and the type of its value.
    const std::tuple<std::string, const char*, const char*> rows[] = {
        {Ticket("", inner), "psk:JobCopiesAllDocuments", "xsi:type=\"xsd:integer\""},
        {Ticket(Binding("psk", "urn:x") + Binding("xsd", "urn:y"), ""), "psk1:JobCopiesAllDocuments",
         "xsi:type=\"xsd1:integer\""},
        {Ticket("", "<psf:Feature" + Binding("psk", "urn:x") + " name='psk:A'/>"), "psk1:JobCopiesAllDocuments",
         "xsi:type=\"xsd:integer\""},
        {Ticket("", "<psf:Feature" + Binding("k", kKeywords.uri) + " name='k:PageOrientation'/>"),
         "k:JobCopiesAllDocuments", "xsi:type=\"xsd:integer\""},
        {Ticket(Binding("psk", "urn:x") + Binding("psk1", "urn:y") + Binding("tk", "urn:z"), ""),
         "psk2:JobCopiesAllDocuments", "xsi:type=\"xsd:integer\""},
        {Ticket(" a = '>' b=\"'/&gt;\"\n" + Binding("k", kKeywords.uri),
                "<![CDATA[<a xmlns:k='urn:x'>]]><?pi <a xmlns:k='urn:x'>?><psf:Property/>"),
         "k:JobCopiesAllDocuments", "xsi:type=\"xsd:integer\""},
        {"<psf:PrintTicket version='1'" + Binding("psf", kFramework.uri) + "/>", "psk:JobCopiesAllDocuments",
         "xsi:type=\"xsd:integer\""},
        {Ticket(Binding("k", "http&#x3A;" + std::string(kKeywords.uri.substr(5))), ""), "k:JobCopiesAllDocuments",
         "xsi:type=\"xsd:integer\""},
    };
    for (const auto& [base, copies, type] : rows)
    {
        SCOPED_TRACE(base);
        WriteBytes(Folder() / "base.xml", base);
        const RunResult result = FromDevmode(File("base.xml"));
        ASSERT_EQ(result.status, 0) << result.errors;
        const std::string out = ReadBytes(Folder() / "out.xml");
        EXPECT_NE(out.find(" name=\"" + std::string(copies) + "\""), std::string::npos) << out;
        EXPECT_NE(out.find(type), std::string::npos) << out;
        EXPECT_EQ(CopiesOf(ReadTree(out)), "3;");
        EXPECT_EQ(KeptOf(out), KeptOf(base));
    }
}

TEST_F(Roads, ABaseThatAProviderWouldMisreadIsRefusedWithItsLine)
{
    const std::string own = Binding("p", kPrivateKeywords.uri);
    const std::pair<std::string, const char*> rows[] = {
        {Ticket(" xmlns='" + std::string(kKeywords.uri) + "'", ""),
         "line 3: the root declares the keywords' namespace as the default; it needs a prefix, such as psk"},
        {Ticket(own + Binding("tk", "urn:x"), ""),
         "line 3: the root binds the prefix tk, which the driver's namespace needs, to urn:x"},
        {Ticket(own, "<psf:Feature" + Binding("tk", "urn:x") + " name='tk:A'/>"),
         "line 4: the prefix tk, with which the provider spells the driver's names, is bound to urn:x here"},
        {Ticket(own, "\n<psf:Feature" + Binding("p", "urn:x") + " name='p:A'/>"),
         "line 5: the prefix p, which stands for the driver's namespace at the root, is bound to urn:x here"},
        {Ticket(Binding("k", kKeywords.uri), "<psf:Feature><psf:Option" + Binding("k", "urn:x") + "/></psf:Feature>"),
         "line 4: the prefix k, which stands for the keywords' namespace at the root, is bound to urn:x here"},
        {Ticket("", "<psf:Feature" + Binding("k", kKeywords.uri) + "/>\n<psf:Feature" + Binding("psk", kKeywords.uri) +
                        " name='psk:A'/>"),
         "line 5: the keywords' namespace has the prefix psk here and k at the root, which alone counts"},
        {Ticket("",
                "<psf:Feature" + Binding("p", kPrivateKeywords.uri) + "/><psf:Feature" + Binding("p", "urn:x") + "/>"),
         "line 4: the driver's namespace has the prefix p here and tk at the root, which alone counts"},
        {Ticket(Binding("psk", kKeywords.uri), "<a" + Binding("psk", std::string(300, 'x')) + "/>"),
         "at the root, is bound to xxxxxxxxxx"},
    };
    const std::string file = File("base.xml");
    for (const auto& [base, error] : rows)
    {
        WriteBytes(Folder() / "base.xml", base);
        for (const RunResult& result :
             {FromDevmode(file), RunHost({"ticket", "validate", "--printer", m_printer, file}),
              RunHost({"ticket", "to-devmode", "--printer", m_printer, "--devmode", File("in.dm"), file, "-o", "-"})})
        {
            EXPECT_EQ(result.status, 1);
            EXPECT_TRUE(IsOneErrorLine(result.errors, error)) << result.errors;
            EXPECT_LT(result.errors.size(), file.size() + 400);
        }
    }
}

TEST_F(Roads, ADocumentThatIsNoneIsOneErrorWithFileAndLine)
{
    const bool hasLines = !IsWine(); // whose DOM knows neither line nor reason of a parse error
    const std::tuple<const char*, std::string, const char*> rows[] = {
        {"empty", "", "the document is empty"},
        {"blank", "  \n ", "t.xml: "},
        {"text", "hello", hasLines ? "line 1: " : "t.xml: "},
        {"no root", "<?xml version=\"1.0\"?><!-- nothing -->", "t.xml: "},
        {"unclosed", "<a>\n<b>\n</a>", hasLines ? "line 3: " : "t.xml: "},
        {"two roots", "<a/>\n<a/>", hasLines ? "line 2: " : "t.xml: "},
        {"external entity", "<!DOCTYPE a [<!ENTITY b SYSTEM \"file:///etc/passwd\">]><a>&b;</a>",
         "line 1: A document type declaration (DOCTYPE) is not allowed."},
        {"just too large", "<a>" + std::string(documentlimits::kMaximumTextBytes, ' ') + "</a>", "larger than 16 MB"},
        {"50 MB", "<a>" + std::string(50u << 20, 'x') + "</a>", "larger than 33554434 bytes"},
        {"another root", "<Ticket/>", "the root element is Ticket in no namespace, expected PrintTicket in http:"},
        {"another namespace", "<psf:PrintTicket xmlns:psf='urn:x'/>",
         "the root element is psf:PrintTicket in the namespace urn:x, expected PrintTicket in http:"},
        {"the framework's, but no ticket", "<p:PrintCapabilities xmlns:p='" + std::string(kFramework.uri) + "'/>",
         "the root element is p:PrintCapabilities, expected PrintTicket\n"},
    };
    for (const auto& [name, bytes, error] : rows)
    {
        SCOPED_TRACE(name);
        WriteBytes(Folder() / "t.xml", bytes);
        for (const RunResult& result : {FromDevmode(File("t.xml")), RunHost({"ticket", "show", File("t.xml")})})
        {
            EXPECT_EQ(result.status, 1);
            EXPECT_EQ(result.out, "");
            EXPECT_TRUE(IsOneErrorLine(result.errors, error));
            EXPECT_TRUE(IsOneErrorLine(result.errors, File("t.xml")));
            EXPECT_EQ(result.errors.find("line 0"), std::string::npos);
        }
        EXPECT_FALSE(fs::exists(Folder() / "out.xml"));
    }
}

TEST_F(Roads, AReportHidesNothingThatATicketHoldsTwice)
{
    const std::string name = "tickets/duplicate-orientation.xml";
    const json shown = json::parse(OutputOf({"ticket", "show", Utf8FromPath(TestDataFolder() / name), "--json"}));
    EXPECT_EQ(std::count_if(shown["features"].begin(), shown["features"].end(),
                            [](const json& row) { return row["name"] == "psk:PageOrientation"; }),
              2);
    EXPECT_EQ(shown["driverData"]["present"], false);
    EXPECT_FALSE(shown.contains("properties"));
    const std::string property = "<psf:Property name='psk:A'><psf:Value>b</psf:Value></psf:Property>";
    const json other =
        json::parse(RunHost({"ticket", "show", "-", "--json"}, Ticket(Binding("psk", kKeywords.uri), property)).out);
    EXPECT_EQ(other["properties"], (json{{{"name", "psk:A"}, {"value", "b"}}}));
    EXPECT_EQ(shown["jobTicket"], nullptr);
}

TEST_F(Roads, AReportJudgesTheDriverDataAndSplitsTheJobTicket)
{
    const std::tuple<std::string, bool, unsigned, const char*> kRows[] = {
        {"Jjn0yzEyMzQ1Njc4OQ==", true, 9, "9 bytes are no part"}, // the CRC-32 of "123456789" in front of it
        {"Jzn0yzEyMzQ1Njc4OQ==", false, 9, "CRC mismatch: "},
        {"Jjk=", false, 0, "there is no CRC"},
        {"no Base64!", false, 0, "the text is no Base64"},
        {"", false, 0, "there is no CRC"},
        {"YadkHQAA" + std::string(80, 'A'), true, 62,
         "the part is another driver's: its signature is 0x0, not 0x54564E31"},
        {"3MRYqwAAAAAxTlZU" + std::string(72, 'A'), true, 62,
         "the part is another driver's: it says that it has 0 bytes, not 5956"},
    };
    for (const auto& [data, crcValid, bytes, fault] : kRows)
    {
        SCOPED_TRACE(data);
        const std::string ticket =
            Ticket(Binding("p", kPrivateKeywords.uri),
                   "<psf:ParameterInit name='p:JobTavlenDriverData'><psf:Value>" + data +
                       "</psf:Value></psf:ParameterInit><psf:ParameterInit name='p:JobTavlenJtifJobTicket'><psf:Value>"
                       "<![CDATA[%a: 1\n%b: <2>\n]]></psf:Value></psf:ParameterInit>");
        const json shown = json::parse(RunHost({"ticket", "show", "-", "--json"}, ticket).out);
        EXPECT_EQ(shown["driverData"]["crcValid"], crcValid);
        EXPECT_EQ(shown["driverData"]["bytes"], bytes);
        EXPECT_EQ(shown["jobTicket"], (json{"%a: 1", "%b: <2>"}));
        EXPECT_EQ(shown["parameters"][0]["name"], "tk:JobTavlenDriverData");
        EXPECT_TRUE(shown["driverData"]["fault"].get<std::string>().starts_with(fault)) << shown["driverData"];
    }
    for (const bool isBound : {false, true}) // a driver with a namespace of its own reads no other
    {
        const std::string ticket =
            Ticket(Binding("ns0000", "urn:x") + (isBound ? Binding("p", kPrivateKeywords.uri) : ""),
                   "<psf:ParameterInit name='ns0000:JobTavlenDriverData'><psf:Value/></psf:ParameterInit>");
        const json shown = json::parse(RunHost({"ticket", "show", "-", "--json"}, ticket).out);
        EXPECT_EQ(shown["driverData"]["present"], !isBound);
    }
}

} // namespace
