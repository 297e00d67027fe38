// The road of a conversion: devmode to ticket and back, through files, with the module of the installed driver.
#include <tuple>

#include "hostrun.h"
#include "printschemadocument.h"
#include "tests/common/documentcomparer.h"
#include "tests/common/testfolders.h"
#include "tests/platform/wine.h"
#include "utilitiesstaticlib/documentlimits.h"

namespace
{

namespace fs = std::filesystem;
using nlohmann::json;

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
    Roads()
    {
        InstallTestPrinter();
        WriteDevmode("in.dm", {"dmCopies=3"});
    }
};

// In the raw text, which is what other readers of a ticket see.
TEST_F(Roads, TheDriversOwnNamesAreInTheNamespaceThatItsModelHas)
{
    const std::tuple<const char*, const char*, std::string_view, std::string> rows[] = {
        {"tavlen-c9070-ps", "260", kPrivateKeywords.uri, "tk"},
        {"tavlen-b4400-uni", "1", "http://schemas.microsoft.com/windows/printing/oemdriverpt/Tavlen_B4400_Uni",
         "ns0000"},
    };
    for (const auto& [model, tray, uri, prefix] : rows)
    {
        InstallTestPrinter(model);
        WriteDevmode("in.dm", {"dmDefaultSource=" + std::string(tray)});
        ASSERT_EQ(FromDevmode("in.dm", "out.xml").status, 0);
        const std::string ticket = ReadBytes(Folder() / "out.xml");
        EXPECT_NE(ticket.find(" xmlns:" + prefix + "=\"" + std::string(uri) + "\""), std::string::npos) << ticket;
        EXPECT_NE(ticket.find(" name=\"" + prefix + ":Tray1\""), std::string::npos) << ticket;
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
        EXPECT_EQ(
            CompareDocuments(LoadDocument(ReadBytes(ticket), "given").Get(), LoadDocument(result.out, "out").Get()),
            "");
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
    ASSERT_EQ(FromDevmode("in.dm", "out.xml", "base.xml").status, 0);
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
        const RunResult result = FromDevmode("in.dm", "out.xml", "base.xml");
        ASSERT_EQ(result.status, 0) << result.errors;
        const std::string out = ReadBytes(Folder() / "out.xml");
        EXPECT_NE(out.find(" name=\"" + std::string(copies) + "\""), std::string::npos) << out;
        EXPECT_NE(out.find(type), std::string::npos) << out;
        EXPECT_EQ(CopiesOf(ReadTree(out)), "3;");
    }
}

TEST_F(Roads, ABaseThatAProviderWouldMisreadIsRefusedWithItsLine)
{
    const std::string own = Binding("p", kPrivateKeywords.uri);
    const std::pair<std::string, const char*> rows[] = {
        {Ticket(" xmlns='" + std::string(kKeywords.uri) + "'", ""),
         "line 3: the root declares the keywords' namespace as the default; it needs a prefix, such as psk"},
        {"<PrintTicket xmlns='" + std::string(kFramework.uri) + "' version='1'/>",
         "line 1: the root declares the framework's namespace as the default; it needs a prefix, such as psf"},
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
             {FromDevmode("in.dm", "out.xml", "base.xml"),
              RunHost({"ticket", "validate", "--printer", m_printer, file}), ToDevmode("base.xml", "in.dm", "o.dm")})
        {
            EXPECT_TRUE(IsRefused(result, error));
            EXPECT_LT(result.errors.size(), file.size() + 400);
        }
    }
}

TEST_F(Roads, ADocumentThatIsNoneIsOneErrorWithFileAndLine)
{
    const bool hasLines = !IsWine(); // whose DOM knows neither line nor reason of a parse error
    const std::tuple<const char*, std::string, const char*> rows[] = {
        {"empty", "", "the document is empty"},
        {"unclosed", "<a>\n<b>\n</a>", hasLines ? "line 3: " : "t.xml: "},
        {"external entity", "<!DOCTYPE a [<!ENTITY b SYSTEM \"file:///etc/passwd\">]><a>&b;</a>",
         "line 1: A document type declaration (DOCTYPE) is not allowed."},
        {"just too large", "<a>" + std::string(documentlimits::kMaximumTextBytes, ' ') + "</a>", "larger than 16 MB"},
        {"50 MB", "<a>" + std::string(50u << 20, 'x') + "</a>", "larger than 33554434 bytes"},
        {"another root", "<Ticket/>", "the root element is Ticket in no namespace, expected PrintTicket in http:"},
        {"the framework's, but no ticket", "<p:PrintCapabilities xmlns:p='" + std::string(kFramework.uri) + "'/>",
         "the root element is p:PrintCapabilities, expected PrintTicket\n"},
    };
    for (const auto& [name, bytes, error] : rows)
    {
        SCOPED_TRACE(name);
        WriteBytes(Folder() / "t.xml", bytes);
        for (const RunResult& result :
             {FromDevmode("in.dm", "out.xml", "t.xml"), RunHost({"ticket", "show", File("t.xml")})})
        {
            EXPECT_TRUE(IsRefused(result, error));
            EXPECT_TRUE(IsOneErrorLine(result.errors, File("t.xml")));
            EXPECT_EQ(result.errors.find("line 0"), std::string::npos);
        }
        EXPECT_FALSE(fs::exists(Folder() / "out.xml"));
    }
}

TEST_F(Roads, AReportHidesNothingThatATicketHoldsTwice)
{
    const std::string feature = "<psf:Feature name='psk:A'><psf:Option name='psk:B'/></psf:Feature>";
    const std::string property = "<psf:Property name='psk:A'><psf:Value>b</psf:Value></psf:Property>";
    const json shown =
        JsonOf({"ticket", "show", "-"}, Ticket(Binding("psk", kKeywords.uri), feature + feature + property));
    EXPECT_EQ(shown["features"].size(), 2U);
    EXPECT_EQ(shown["properties"], (json{{{"name", "psk:A"}, {"value", "b"}}}));
    EXPECT_EQ(shown["driverData"]["present"], false);
    EXPECT_EQ(shown["jobTicket"], nullptr);
}

TEST_F(Roads, AReportJudgesTheDriverDataAndSplitsTheJobTicket)
{
    const std::tuple<std::string, bool, unsigned, const char*> kRows[] = {
        {"Jjn0yzEyMzQ1Njc4OQ==", true, 9, "9 bytes are no part"}, // the CRC-32 of "123456789" in front of it
        {"Jzn0yzEyMzQ1Njc4OQ==", false, 9, "CRC mismatch: "},
        {"Jjk=", false, 0, "there is no CRC"},
        {"no Base64!", false, 0, "the text is no Base64"},
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
        const json shown = JsonOf({"ticket", "show", "-"}, ticket);
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
        const json shown = JsonOf({"ticket", "show", "-"}, ticket);
        EXPECT_EQ(shown["driverData"]["present"], !isBound);
    }
}

} // namespace
