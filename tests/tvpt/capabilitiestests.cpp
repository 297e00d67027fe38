// What the core driver offers, what its tickets say and what a ticket makes of a devmode: one and the same.
#include <cstring>
#include <map>
#include <set>

#include "coredrivercapabilities.h"
#include "coredriverdevmode.h"
#include "coredriverticket.h"
#include "corehelper.h"
#include "devmodefields.h"
#include "hostrun.h"
#include "modelfiles.h"
#include "newdevmode.h"
#include "printschemadocument.h"

namespace
{

constexpr char kUri[] = "urn:driver";
const std::set<std::string> kProviders = {"psk:PageMediaSize", "psk:PageMediaType"};

// With prefixes of the tests' own.
std::string Named(const SchemaName& name)
{
    if (name.local.empty())
        return {};
    return (name.uri == kUri ? "d:" : name.uri == kKeywords.uri ? "psk:" : "?:") + name.local;
}

std::string Scored(const std::string& name, const std::string& content)
{
    return "<psf:ScoredProperty name='" + name + "'>" + content + "</psf:ScoredProperty>";
}

std::string Value(const std::string& text)
{
    return "<psf:Value>" + text + "</psf:Value>";
}

// The option with its scored properties, as a ticket chooses it.
std::string Chosen(const SchemaElement& option)
{
    const std::string name = Named(option.nameAttribute);
    std::string text = name.empty() ? "<psf:Option>" : "<psf:Option name='" + name + "'>";
    for (const SchemaElement* const property : option.Children("ScoredProperty"))
    {
        const SchemaElement& content = property->children.front();
        text +=
            Scored(Named(property->nameAttribute),
                   content.name.local == "Value" ? Value(content.text)
                                                 : "<psf:ParameterRef name='" + Named(content.nameAttribute) + "'/>");
    }
    return text + "</psf:Option>";
}

std::string Feature(const std::string& name, const std::string& option)
{
    return "<psf:Feature name='" + name + "'>" + option + "</psf:Feature>";
}

std::string Parameter(const std::string& name, const std::string& value)
{
    return "<psf:ParameterInit name='" + name + "'>" + Value(value) + "</psf:ParameterInit>";
}

std::string TicketText(const std::string& content)
{
    return Ticket(Binding("psk", kKeywords.uri) + Binding("d", kUri) + Binding("x", "urn:x"), content);
}

std::map<std::string, std::string> ChoicesOf(const SchemaElement& ticket)
{
    std::map<std::string, std::string> choices;
    for (const SchemaElement* const feature : ticket.Children("Feature"))
        choices[Named(feature->nameAttribute)] = Chosen(*feature->Child("Option"));
    return choices;
}

// A printer without a spooler.
struct ModelOfTest
{
    explicit ModelOfTest(const char* name)
        : model(ReadPrinterModel(FindModelFile(name))), devmode(MakeNewDevmode(model, model.name))
    {
    }

    PrinterModel model;
    Devmode devmode;
};

// Each option from another one: the first again at the end.
void ExpectEachOptionToComeBack(ModelOfTest& printer, const SchemaElement& feature, IPrintCoreHelper* helper)
{
    const std::string name = Named(feature.nameAttribute);
    std::vector<const SchemaElement*> options = feature.Children("Option");
    options.push_back(options.front());
    for (const SchemaElement* const option : options)
    {
        const std::string chosen = Chosen(*option);
        SCOPED_TRACE(name + chosen);
        const auto apply = [&](const SchemaElement& ticket)
        {
            ApplyCoreDriverTicket(ticket, printer.model, kUri, helper, printer.devmode);
        };
        apply(ReadTree(TicketText(Feature(name, chosen) + Parameter("psk:PageScalingScale", " 55 "))));
        const SchemaElement ticket = ReadTree(MakeCoreDriverTicket(printer.devmode, printer.model, kUri, helper));
        EXPECT_EQ(ChoicesOf(ticket)[name], chosen);
        const std::string made(printer.devmode.Bytes());
        apply(ticket);
        EXPECT_TRUE(made == printer.devmode.Bytes()) << "its own ticket changes it";
    }
}

// By either way to the settings, in a devmode that claims its fields and in one that claims none.
TEST(CoreDriverTickets, MakeTheDevmodeThatTheyCameFrom)
{
    for (const char* const name : kModels)
        for (const bool hasHelper : {false, true})
            for (const bool isClaiming : {false, true})
            {
                SCOPED_TRACE(std::string(name) + (hasHelper ? ", asked" : ", known"));
                ModelOfTest printer(name);
                const ComPtr<CoreHelper> helper = hasHelper ? CoreHelper::Make(printer.model) : ComPtr<CoreHelper>();
                DEVMODEW fields = printer.devmode.Public();
                fields.dmFields = isClaiming ? fields.dmFields : 0;
                printer.devmode.SetPublic(fields);
                const SchemaElement capabilities =
                    ReadTree(MakeCoreDriverCapabilities(printer.devmode, printer.model, kUri, nullptr));
                for (const SchemaElement* const feature : capabilities.Children("Feature"))
                    if (!kProviders.contains(Named(feature->nameAttribute)))
                        ExpectEachOptionToComeBack(printer, *feature, helper.Get());
            }
}

TEST(CoreDriverTickets, AreReadByMeaning)
{
    const std::string landscape = Feature("psk:PageOrientation", "<psf:Option name='psk:Landscape'/>");
    const std::string scale =
        Feature("psk:PageScaling", "<psf:Option name='psk:CustomSquare'>" +
                                       Scored("psk:Scale", "<psf:ParameterRef name='psk:S'/>") + "</psf:Option>");
    const struct
    {
        std::string content;
        const char* field; // that alone is changed; none: nothing is
        int value;
    } rows[] = {
        {landscape + Feature("psk:PageOrientation", "<psf:Option name='psk:Portrait'/>"), nullptr, 0},
        {Feature("psk:PageOrientation", "<psf:Option name='psk:Portrait'/>") + landscape, "dmOrientation", 2},
        {Feature("x:PageOrientation", "<psf:Option name='psk:Landscape'/>"), nullptr, 0},
        {Feature("psk:PageOrientation", "<psf:Option name='x:Landscape'/>"), nullptr, 0},
        {Feature("psk:PageOrientation", ""), nullptr, 0},
        {Feature("psk:JobInputBin", "<psf:Option name='d:Tray2'/>"), "dmDefaultSource", 3},
        {Feature("psk:JobInputBin", "<psf:Option name='psk:Tray2'/>"), nullptr, 0},
        {Feature("psk:JobDuplexAllDocumentsContiguously", Scored("psk:OptionName", Value(" psk:TwoSidedShortEdge "))),
         "dmDuplex", 3},
        {scale + Parameter("psk:S", "1000"), "dmScale", 1000},
        {scale + Parameter("psk:S", "1001"), nullptr, 0},
        {scale + Parameter("x:S", "50"), nullptr, 0},
        {Feature("psk:PageResolution",
                 "<psf:Option name='x:_1200'>" + Scored("psk:ResolutionX", Value("1200")) + "</psf:Option>"),
         nullptr, 0}, // one half of it
    };
    for (const auto& row : rows)
    {
        SCOPED_TRACE(row.content);
        ModelOfTest printer("tavlen-b4400-uni");
        DEVMODEW expected = printer.devmode.Public();
        if (row.field != nullptr)
            SetDevmodeField(expected, *FindDevmodeField(row.field), std::to_string(row.value));
        ApplyCoreDriverTicket(ReadTree(TicketText(row.content)), printer.model, kUri, nullptr, printer.devmode);
        const DEVMODEW made = printer.devmode.Public();
        EXPECT_EQ(std::memcmp(&made, &expected, sizeof made), 0);
    }
}

using Capabilities = HostTest;

TEST_F(Capabilities, AreForTheTicketThatAsks)
{
    const std::string printer = InstallTestPrinter("tavlen-b4400-uni");
    const auto imageableWidth = [&printer](const std::string& ticket)
    {
        const SchemaElement made =
            ReadTree(OutputOf({"capabilities", "--printer", printer, "--base-only", "--ticket", ticket}));
        return made.Children("Property").back()->children.front().Child("Value")->text;
    };
    WriteBytes(Folder() / "t.xml",
               TicketText(Feature("psk:PageOrientation", "<psf:Option name='psk:Landscape'/>") +
                          Feature("psk:PageMediaSize",
                                  "<psf:Option name='psk:ISOA4'>" + Scored("psk:MediaSizeWidth", Value("210000")) +
                                      Scored("psk:MediaSizeHeight", Value("297000")) + "</psf:Option>")));
    EXPECT_EQ(imageableWidth(File("t.xml")), "297000");

    // Its changes do not reach a devmode where the core driver is left out.
    WriteDevmode("d.dm");
    const std::string plain = OutputOf({"ticket", "to-devmode", "--printer", printer, "--devmode", File("d.dm"),
                                        File("t.xml"), "-o", "-", "--no-core-driver"});
    EXPECT_EQ(Devmode::FromBytes(plain, "test").Public().dmOrientation, DMORIENT_PORTRAIT);
}

} // namespace
