// What a ticket carries of a devmode, for each model: the driver's own settings through the driver data, the job
// ticket, and which of the two parameters there are.
#include <algorithm>

#include "hostrun.h"

namespace
{

using nlohmann::json;

struct ModelRow
{
    const char* name;
    const char* prefix; // of the maker's names
    bool hasJobTicket;
    bool definesJobTicket;
};

constexpr ModelRow kModelRows[] = {
    {"tavlen-c9070-ps", "tk:", true, true},
    {"tavlen-b4400-uni", "ns0000:", false, false}, // no private namespace
    {"tavlen-w3100-xps", "tk:", false, true},      // a family without job tickets
    {"tavlen-b7000-xps", "tk:", true, true},
};

using PrivateState = HostTest;

std::size_t CountOf(const std::string& text, const std::string& part)
{
    std::size_t count = 0;
    for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1))
        ++count;
    return count;
}

// What the value of a parameter holds besides CDATA sections.
std::string BesideCdata(const std::string& text, const std::string& name)
{
    const std::size_t begin = text.find('>', text.find("<psf:Value", text.find(name))) + 1;
    std::string value = text.substr(begin, text.find("</psf:Value>", begin) - begin);
    for (std::size_t at = value.find("<![CDATA["); at != value.npos; at = value.find("<![CDATA["))
        value.erase(at, value.find("]]>", at) + 3 - at);
    return value;
}

TEST_F(PrivateState, ComesThroughATicketAndIsRenderedForTheController)
{
    for (const ModelRow& model : kModelRows)
    {
        SCOPED_TRACE(model.name);
        InstallTestPrinter(model.name);
        WriteDevmode("set.dm", {"feature.78=a]]>b <c>&", "feature.46=5422", "feature.43=7", "feature.208=6254",
                                "feature.179=90", "app=excel.exe", "dmCopies=3"});
        WriteDevmode("plain.dm");
        FromDevmode("set.dm", "t.xml");
        std::string base = ReadBytes(File("t.xml"));
        for (const std::string name : {"JobTavlenDriverData", "JobTavlenJtifJobTicket"})
            if (model.definesJobTicket || name == "JobTavlenDriverData")
                for (int again = 0; again < 2; ++again)
                    base.insert(base.rfind("</psf:PrintTicket>"),
                                "<psf:ParameterInit name=\"" + (model.prefix + name) +
                                    "\"><psf:Value>old</psf:Value></psf:ParameterInit>");
        WriteBytes(File("base.xml"), base);
        FromDevmode("set.dm", "again.xml", "base.xml");
        ToDevmode("again.xml", "plain.dm", "back.dm");
        const json sent = ShownDevmode(ReadBytes(File("set.dm")));
        const json back = ShownDevmode(ReadBytes(File("back.dm")));
        EXPECT_EQ(sent["oem"], back["oem"]);
        EXPECT_EQ(sent["features"], back["features"]);
        EXPECT_EQ(sent["public"]["dmCopies"], back["public"]["dmCopies"]);

        const json ticket = JsonOf({"ticket", "show", File("again.xml")});
        EXPECT_EQ(ticket["driverData"]["fault"], nullptr);
        EXPECT_EQ(ticket["driverData"]["part"]["crc"], sent["oem"]["crc"]);
        EXPECT_EQ(ticket["driverData"]["features"], sent["features"]);
        const json& lines = ticket["jobTicket"];
        EXPECT_EQ(model.hasJobTicket, lines.is_array());
        for (const char* const line : {"%TVLtitle: a]]>b <c>&", "%TVLcopyCount: 7", "%TVLpaperType-weight: 90"})
            EXPECT_EQ(model.hasJobTicket ? 1 : 0, std::count(lines.begin(), lines.end(), line)) << line;

        const std::string name = std::string("name=\"") + model.prefix;
        const std::string text = ReadBytes(File("again.xml"));
        EXPECT_EQ(1u, CountOf(text, name + "JobTavlenDriverData\""));
        EXPECT_EQ(model.hasJobTicket ? 1u : 0u, CountOf(text, name + "JobTavlenJtifJobTicket\""));
        EXPECT_TRUE(!model.hasJobTicket || BesideCdata(text, name + "JobTavlenJtifJobTicket\"").empty());
        const std::string offered = OutputOf({"capabilities", "--printer", m_printer, "--ticket", File("t.xml")});
        EXPECT_EQ(1u, CountOf(offered, name + "JobTavlenDriverData\""));
        EXPECT_EQ(model.definesJobTicket ? 1u : 0u, CountOf(offered, name + "JobTavlenJtifJobTicket\""));
        const SchemaElement capabilities = ReadTree(offered);
        for (const SchemaElement* const definition : capabilities.Children("ParameterDef"))
            if (const std::string& local = definition->nameAttribute.local; local.starts_with("JobTavlen"))
            {
                std::string values;
                for (const SchemaElement* const property : definition->Children("Property"))
                    values += property->Child("Value")->text + " ";
                const std::string longest = local == "JobTavlenDriverData" ? "20000" : "3500000";
                EXPECT_EQ("xsd:string " + longest + " 0 psk:Optional base64  ", values);
            }
    }
}

} // namespace
