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
#include "tests/common/documentcomparer.h"

namespace
{

constexpr char kUri[] = "urn:driver";
constexpr const char* kModels[] = {"tavlen-c9070-ps", "tavlen-b4400-uni", "tavlen-w3100-xps", "tavlen-b7000-xps"};
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

    [[nodiscard]] SchemaElement Ticket(IPrintCoreHelper* helper = nullptr) const
    {
        return ReadTree(MakeCoreDriverTicket(devmode, model, kUri, helper));
    }

    [[nodiscard]] SchemaElement Capabilities() const
    {
        return ReadTree(MakeCoreDriverCapabilities(devmode, model, kUri, nullptr));
    }

    PrinterModel model;
    Devmode devmode;
};

long NumberIn(const SchemaElement& definition, const std::string& property)
{
    for (const SchemaElement* const each : definition.Children("Property"))
        if (each->nameAttribute.Is(kFramework.uri, property))
            return std::stol(each->Child("Value")->text);
    ADD_FAILURE() << property << " of " << Named(definition.nameAttribute);
    return 0;
}

TEST(CoreDriverCapabilities, OfferEachOptionOnceAndWhatTicketsSay)
{
    for (const char* const name : kModels)
    {
        SCOPED_TRACE(name);
        const ModelOfTest printer(name);
        std::map<std::string, std::set<std::string>> offered;
        const SchemaElement capabilities = printer.Capabilities();
        for (const SchemaElement* const feature : capabilities.Children("Feature"))
        {
            std::set<std::string>& options = offered[Named(feature->nameAttribute)];
            EXPECT_TRUE(options.empty()) << "a second " << feature->nameAttribute.local;
            EXPECT_EQ(feature->Child("Property")->Child("Value")->textName.local, "PickOne");
            for (const SchemaElement* const option : feature->Children("Option"))
            {
                EXPECT_TRUE(options.insert(Chosen(*option)).second) << "twice: " << Chosen(*option);
                EXPECT_EQ(Chosen(*option).find("?:"), std::string::npos) << Chosen(*option);
                EXPECT_NE(option->Child("Property"), nullptr) << "no name to show: " << Chosen(*option);
                EXPECT_EQ(option->attributes.back().second, "psk:None");
            }
        }
        const std::map<std::string, std::string> choices = ChoicesOf(printer.Ticket());
        for (const auto& [feature, option] : choices)
            EXPECT_TRUE(offered[feature].contains(option)) << feature << ": " << option;
        EXPECT_EQ(offered.size(), choices.size());
        for (const char* const feature :
             {"psk:PageOrientation", "psk:JobDuplexAllDocumentsContiguously", "psk:PageResolution",
              "psk:DocumentCollate", "psk:JobInputBin", "psk:PageOutputColor", "psk:PageScaling",
              "psk:PageTrueTypeFontMode", "psk:PageDeviceFontSubstitution", "psk:PageMediaSize", "psk:PageMediaType"})
            EXPECT_TRUE(offered.contains(feature)) << feature;
        EXPECT_EQ(offered["psk:PageMediaType"].size(), printer.model.mediaTypes.size());
        EXPECT_EQ(offered["psk:JobInputBin"].size(), printer.model.bins.size());
        EXPECT_EQ(offered["psk:PageOutputColor"].size(), printer.model.IsColor() ? 2U : 1U);
        for (const SchemaElement* const definition : capabilities.Children("ParameterDef"))
        {
            EXPECT_LE(NumberIn(*definition, "MinValue"), NumberIn(*definition, "DefaultValue"));
            EXPECT_LE(NumberIn(*definition, "DefaultValue"), NumberIn(*definition, "MaxValue"));
        }
    }
}

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
        const SchemaElement ticket = printer.Ticket(helper);
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
                const SchemaElement capabilities = printer.Capabilities();
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
        {landscape, "dmOrientation", 2},
        {landscape + Feature("psk:PageOrientation", "<psf:Option name='psk:Portrait'/>"), nullptr, 0},
        {Feature("psk:PageOrientation", "<psf:Option name='psk:Portrait'/>") + landscape, "dmOrientation", 2},
        {Feature("x:PageOrientation", "<psf:Option name='psk:Landscape'/>"), nullptr, 0},
        {Feature("psk:PageOrientation", "<psf:Option name='x:Landscape'/>"), nullptr, 0},
        {Feature("psk:PageOrientation", "<psf:Option xmlns:psk='urn:x' name='psk:Landscape'/>"), nullptr, 0},
        {Feature("psk:PageOrientation", "<psf:Option name='psk:Slanted'/>"), nullptr, 0},
        {Feature("psk:PageOrientation", ""), nullptr, 0},
        {Feature("psk:JobInputBin", "<psf:Option name='d:Tray2'/>"), "dmDefaultSource", 3},
        {Feature("psk:JobInputBin", "<psf:Option name='psk:Tray2'/>"), nullptr, 0},
        {Feature("psk:JobDuplexAllDocumentsContiguously", Scored("psk:OptionName", Value(" psk:TwoSidedShortEdge "))),
         "dmDuplex", 3},
        {scale + Parameter("psk:S", "1000"), "dmScale", 1000},
        {scale + Parameter("psk:S", "1001"), nullptr, 0},
        {scale + Parameter("psk:S", "0"), nullptr, 0},
        {scale + Parameter("psk:S", "50%"), nullptr, 0},
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

class Capabilities : public HostTest
{
};

// The width of the imageable size.
std::string ImageableWidth(const std::string& capabilities)
{
    return ReadTree(capabilities).Children("Property").back()->children.front().Child("Value")->text;
}

TEST_F(Capabilities, AreForTheTicketThatAsks)
{
    const std::string printer = InstallTestPrinter("tavlen-b4400-uni");
    const std::vector<std::string> base = {"capabilities", "--printer", printer, "--base-only"};
    EXPECT_EQ(ImageableWidth(OutputOf(base)), "210000");
    WriteBytes(Folder() / "t.xml",
               TicketText(Feature("psk:PageOrientation", "<psf:Option name='psk:Landscape'/>") +
                          Feature("psk:PageMediaSize",
                                  "<psf:Option name='psk:ISOA4'>" + Scored("psk:MediaSizeWidth", Value("210000")) +
                                      Scored("psk:MediaSizeHeight", Value("297000")) + "</psf:Option>")));
    std::vector<std::string> asked = base;
    asked.insert(asked.end(), {"--ticket", File("t.xml")});
    EXPECT_EQ(ImageableWidth(OutputOf(asked)), "297000");

    // And its changes reach a devmode, unless the core driver is left out.
    MakePlainDevmode(printer);
    std::vector<std::string> back = {"ticket",     "to-devmode",  "--printer", printer, "--devmode",
                                     File("d.dm"), File("t.xml"), "-o",        "-"};
    const auto orientation = [&back]
    {
        return Devmode::FromBytes(OutputOf(back), "test").Public().dmOrientation;
    };
    EXPECT_EQ(orientation(), DMORIENT_LANDSCAPE);
    back.emplace_back("--no-core-driver");
    EXPECT_EQ(orientation(), DMORIENT_PORTRAIT);
}

TEST_F(Capabilities, AreCompletedByTheProvider)
{
    for (const char* const model : kModels)
    {
        SCOPED_TRACE(model);
        const std::string printer = InstallTestPrinter(model);
        MakePlainDevmode(printer);
        FromDevmode("d.dm", "t.xml");
        WriteBytes(Folder() / "base.xml", OutputOf({"capabilities", "--printer", printer, "--base-only"}));
        const std::string ours = OutputOf({"capabilities", "--printer", printer});
        for (const std::vector<std::string>& given : {std::vector<std::string>{"--ticket", File("t.xml")},
                                                      std::vector<std::string>{"--base", File("base.xml")}})
        {
            const std::string same = OutputOf({"capabilities", "--printer", printer, given[0], given[1]});
            EXPECT_EQ(CompareDocuments(LoadDocument(ours, "ours").Get(), LoadDocument(same, "same").Get()), "");
        }
    }
}

} // namespace
