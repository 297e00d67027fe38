// Page media sizes and imageable areas: papers of devmodes and tickets on their way through a provider, and what its
// capabilities offer, with the forms of every model and with others.
#include <tvcore/pagesizetable.h>
#include <tvutil/operatingsystem.h>

#include <map>
#include <optional>
#include <sstream>

#include "complugins/fixedtext.h"
#include "complugins/papercache.h"
#include "complugins/ptpcprovider/pagemediasizeextents.h"
#include "printerhandle.h"
#include "tests/common/oemdevmodebytes.h"
#include "tests/common/testdevmode.h"
#include "tests/common/testdocuments.h"
#include "tests/common/testprinter.h"
#include "tests/ptpcprovider/provideraccess.h"
#include "tests/tvui/installedprinter.h"

namespace
{

using nlohmann::json;
using OemDevmodeBytes::MakeForm;
using Access = TavlenPtProviderTestAccess;

constexpr const char* kModels[] = {"tavlen-c9070-ps", "tavlen-b4400-uni", "tavlen-w3100-xps", "tavlen-b7000-xps"};
constexpr const char* kUsual = "the country's usual one";
const std::string kOption = "//psf:Feature[@name='psk:PageMediaSize']/psf:Option";
const std::string kParameter = "//psf:ParameterInit[starts-with(@name,'psk:PageMedia')]";

// The texts that a query finds.
std::string Words(const ComPtr<IXMLDOMDocument2>& document, const std::string& query)
{
    std::string words;
    for (const std::string& text : Select(document.Get(), query))
        words += text + " ";
    return words;
}

// A sample, or "OPTION WIDTH HEIGHT", of which @ is a reference to a parameter: A6's width.
ComPtr<IXMLDOMDocument2> Ticket(const std::string& words, const std::string& more = {})
{
    if (words.ends_with(".xml"))
        return LoadTestDocument("tickets/" + words);
    std::istringstream stream(words);
    std::string option, width, height;
    stream >> option >> width >> height;
    const std::string kind = option.starts_with("psk:PS") ? "PS" : "MediaSize";
    const auto property = [&kind](const std::string& side, const std::string& value)
    {
        return "<psf:ScoredProperty name='psk:" + kind + side + "'>" +
               (value == "@" ? "<psf:ParameterRef name='psk:P'/>" : "<psf:Value>" + value + "</psf:Value>") +
               "</psf:ScoredProperty>";
    };
    return LoadDocument(
        TicketAround("<psf:Feature name='psk:PageMediaSize'><psf:Option name='" + option + "'>" +
                     property("Width", width) + property("Height", height) + "</psf:Option></psf:Feature>" + more +
                     "<psf:ParameterInit name='psk:P'><psf:Value>105000</psf:Value></psf:ParameterInit>"));
}

class MediaSizes : public InstalledPrinter
{
protected:
    void Bind(const std::string& model)
    {
        m_binding.reset();
        m_printer.reset();
        Install(model);
        m_printer = PrinterHandle::Open(m_name.ToUtf8(), PrinterHandle::Access::Use);
        EXPECT_EQ(S_OK, m_binding.emplace().BindTo(m_printer->Get()));
    }

    // In the place of the list that the installation has filled in.
    void SetForms(const std::vector<FormsInfoRecord>& forms) const
    {
        MSDeviceCapabilities caches;
        caches.Initialize(m_printer->Get());
        caches.SetCache(MSDeviceCapabilities::Cache::Papers,
                        PaperCache::Write(0, caches.GetCustomFormsCRC(), forms, {}));
        EXPECT_EQ(S_OK, caches.Save(DataCache::Lock(caches.GetHive())));
    }

    // "9 2100x2970 A4"; fields that are to be cleared are set before.
    std::string ToDevmode(const ComPtr<IXMLDOMDocument2>& ticket) const
    {
        const TestDevmode block;
        DEVMODEW& devmode = *block.Get();
        devmode.dmFields = DM_COPIES | DM_FORMNAME | DM_PAPERWIDTH | DM_PAPERLENGTH;
        if (m_binding->provider->ConvertPrintTicketToDevMode(ticket.Get(), block.Size(), &devmode, 0, nullptr) != S_OK)
            return "refused";
        const DWORD size = devmode.dmPaperSize == DMPAPER_USER ? DWORD{DM_PAPERWIDTH | DM_PAPERLENGTH} : 0;
        EXPECT_EQ(DM_COPIES | DM_PAPERSIZE | size, devmode.dmFields);
        return std::to_string(devmode.dmPaperSize) + " " + std::to_string(WORD(devmode.dmPaperWidth)) + "x" +
               std::to_string(WORD(devmode.dmPaperLength)) + " " + Utf8(GetFixedText(devmode.dmFormName));
    }

    // The option with its names and values, then the parameters with theirs.
    std::string ToTicket(int paperNumber, short width, short length, const ComPtr<IXMLDOMDocument2>& ticket) const
    {
        const TestDevmode devmode;
        devmode.Get()->dmFields = DM_PAPERSIZE;
        devmode.Get()->dmPaperSize = static_cast<short>(paperNumber);
        devmode.Get()->dmPaperWidth = width;
        devmode.Get()->dmPaperLength = length;
        const std::vector<std::byte> before = devmode.Bytes();
        const HRESULT result =
            m_binding->provider->ConvertDevModeToPrintTicket(devmode.Size(), devmode.Get(), 0, nullptr, ticket.Get());
        EXPECT_EQ(before, devmode.Bytes());
        return result != S_OK ? "refused"
                              : Words(ticket, kOption + "//@name | " + kOption + "//psf:Value | " + kParameter +
                                                  "/@name | " + kParameter + "/psf:Value");
    }

    std::optional<PrinterHandle> m_printer;
    std::optional<ProviderBinding> m_binding;
};

// Options of the forms that have no page-size value, and what comes back: of two of a size the user's own. The driver's
// own form of A4 supplies the number of every devmode of that size.
const std::map<std::string, std::pair<std::string, std::string>> kWays = {
    {"A4 (Tray Setup)", {"psk:ISOA4", "9 2100x2970 A4"}},
    {"Index Card 5 x 8 in", {"ns0000:DriverCustomSize_330_1270x2032", "256 1270x2032 Index Card 5 x 8 in"}},
    {"Long Banner", {"ns0000:DriverCustomSize_331_2970x12000", "256 2970x12000 Long Banner"}},
    {"Cheque Blank", {"ns0000:DriverCustomSize_332_2100x990", "256 2100x990 Delivery Note"}},
    {"House Stationery", {"psk:ISOA4", "9 2100x2970 A4"}},
    {"Service Test Sheet", {"", "256 1500x2200 "}},
    {"Custom", {"", "256 1234x2345 "}},
    {"Delivery Note", {"ns0000:UserForm_258_2100x990", "256 2100x990 Delivery Note"}},
    {"Price Tag Sheet – Größe 2", {"ns0000:UserForm_259_1050x2970", "256 1050x2970 Price Tag Sheet – Größe 2"}},
};

std::string OptionOf(const json& form)
{
    if (form["valueId"] == 0)
        return kWays.at(form["name"]).first;
    const PageSizeRow& row = *PageSizeTable::FindRow(form["valueId"].get<int>());
    return (row.isKeyword ? "psk:" : "ns0000:") + Utf8(row.optionName);
}

TEST_F(MediaSizes, OfEveryFormOfEveryModelComeBack)
{
    const std::string custom =
        "psk:CustomMediaSize psk:MediaSizeWidth psk:PageMediaSizeMediaSizeWidth psk:MediaSizeHeight "
        "psk:PageMediaSizeMediaSizeHeight psk:PageMediaSizeMediaSizeWidth 123400 "
        "psk:PageMediaSizeMediaSizeHeight 234500 ";
    const std::string postScript =
        "psk:PSCustomMediaSize psk:PSWidth psk:PageMediaSizePSWidth psk:PSHeight psk:PageMediaSizePSHeight "
        "psk:PSWidthOffset psk:PageMediaSizePSWidthOffset psk:PSHeightOffset psk:PageMediaSizePSHeightOffset "
        "psk:PSOrientation psk:PageMediaSizePSOrientation psk:PageMediaSizePSWidth 123400 psk:PageMediaSizePSHeight "
        "234500 psk:PageMediaSizePSWidthOffset 0 psk:PageMediaSizePSHeightOffset 0 psk:PageMediaSizePSOrientation 1 ";
    for (const std::string model : kModels)
    {
        Bind(model);
        for (const json& form : m_model["forms"])
        {
            SCOPED_TRACE(model + ": " + form["name"].get<std::string>());
            const ComPtr<IXMLDOMDocument2> ticket = Ticket("custom-size.xml"); // whose parameters go with its size
            const auto way = kWays.find(form["name"]);
            const std::string width = form["width"].dump();
            const std::string length = form["length"].dump();
            std::string there =
                OptionOf(form) + " psk:MediaSizeWidth " + width + "00 psk:MediaSizeHeight " + length + "00 ";
            std::string back =
                form["paperId"].dump() + " " + width + "x" + length + " " + form["name"].get<std::string>();
            if (form["paperId"] == 256)
                there = model == kModels[0] ? postScript : custom;
            if (form["type"] == 25007)
                there = "refused"; // as it is never published
            if (way != kWays.end())
                back = way->second.second;
            EXPECT_EQ(there, ToTicket(form["paperId"], 1234, 2345, ticket));
            EXPECT_EQ(back, ToDevmode(ticket));
        }
    }
}

struct TicketRow
{
    const char* form;
    const char* onB4400; // where it is another one
    const char* onB7000;
    std::vector<const char*> tickets;
};

// clang-format off
const TicketRow kTickets[] = {
    // The value of a name ends the walk, whatever the size and the name's prefix.
    {"9 2100x2970 A4",      nullptr, nullptr,               {"platform-00.xml", "prefix-fw.xml", "psk:ISOA4 100000 100000"}},
    {"8 2970x4200 A3",      "256 2970x4200 ", nullptr,               {"psk:ISOA3 297000 420000"}},
    {"256 10x10 ",          nullptr, "325 2250x3200 SRA4",           {"ns0000:sra4 1000 1000", "vnd:sra4 1000 1000"}},
    // By size, to half a millimetre; a user's form wins over earlier ones.
    {"9 2100x2970 A4",      nullptr, "256 2100x2970 House Stationery",   {"vnd:Own 210499 296501"}},
    {"256 2105x2970 ",      nullptr, nullptr,                            {"vnd:Own 210500 297000"}},
    {"256 2000x3000 ",      nullptr, "256 2000x3000 Service Test Sheet", {"vnd:Own 200000 300000"}},
    // Custom sizes take no form's place. Numbers as the runtime reads them; a devmode takes 16 bits of them.
    {"256 1500x2200 ",      nullptr, nullptr, {"custom-size.xml", "psk:CustomMediaSize 150050.9 220049up"}},
    {"256 2159x2794 ",      nullptr, nullptr, {"vnd:CustomMediaSize 215900 279400"}},
    {"256 1050x1480 ",      nullptr, nullptr, {"psk:PSCustomMediaSize @ 148000"}},
    {"256 44564x33000 ",    nullptr, nullptr, {"psk:CustomMediaSize 99999999999 3300000"}},
    // No usable size, whatever the name says; also what leaves nothing in tenths of a millimetre or in 16 bits of them.
    {kUsual, nullptr, nullptr, {"minimal.xml", "psk:ISOA5", "psk:CustomMediaSize 0 297000", "psk:CustomMediaSize 1e5 297000",
                                "psk:CustomMediaSize -210000 297000", "psk:CustomMediaSize 6553600 297000"}},
    {"refused",             nullptr, nullptr, {"A4 210000 297000"}},
};
// clang-format on

TEST_F(MediaSizes, OfATicketChooseTheFormOfItsValueOrElseOfItsSize)
{
    const std::string usual = OperatingSystem::UseEnglishPaperSizes() ? "1 2159x2794 Letter" : "9 2100x2970 A4";
    for (const std::string model : kModels)
    {
        Bind(model);
        for (const TicketRow& row : kTickets)
            for (const char* const words : row.tickets)
            {
                SCOPED_TRACE(model + ": " + words);
                const char* const other = model == kModels[1]   ? row.onB4400
                                          : model == kModels[3] ? row.onB7000
                                                                : nullptr;
                const std::string expected = other != nullptr ? other : row.form;
                const ComPtr<IXMLDOMDocument2> ticket = Ticket(words, "<psf:Feature name='psk:PageMediaSize'/>");
                EXPECT_EQ(expected == kUsual ? usual : expected, ToDevmode(ticket));
                EXPECT_TRUE(expected == "refused" ||
                            (expected == kUsual) == Access::TakesDefaultSize(*m_binding->object, ticket.Get()));
            }
    }
}

// Lists that no model has.
TEST_F(MediaSizes, AreFoundInEveryOrderOfForms)
{
    Bind(kModels[1]);
    const FormsInfoRecord custom = MakeForm(256, W("Custom"), 2100, 2970, 25003);
    const FormsInfoRecord own = MakeForm(330, WideString(40, W('o')), 2000, 3000, 25003);
    const FormsInfoRecord user = MakeForm(257, W("User"), 2000, 3000, 25005);
    const FormsInfoRecord later = MakeForm(258, W("Later"), 2000, 3000, 25005);
    const FormsInfoRecord hidden = MakeForm(340, W("Hidden"), 2000, 3000, 25007);
    const FormsInfoRecord unknown = MakeForm(400, W("by no dictionary"), 2000, 3000, 25001);
    struct Row
    {
        std::vector<FormsInfoRecord> forms;
        int number;
        const char* option;
        std::string back;
    };
    const Row rows[] = {
        {{own, user, later}, 256, "ns0000:UserForm_257_2000x3000 ", "256 2000x3000 Later"},
        {{own, hidden}, 256, "ns0000:DriverCustomSize_330_2000x3000 ", "256 2000x3000 " + std::string(31, 'o')},
        {{custom, own}, 999, "psk:CustomMediaSize ", "256 2000x3000 "},
        {{unknown}, 400, "refused", "256 1500x2200 "},
        {{}, 9, "psk:CustomMediaSize ", "256 2000x3000 "},
    };
    for (const Row& row : rows)
    {
        SetForms(row.forms);
        const ComPtr<IXMLDOMDocument2> ticket = Ticket("custom-size.xml");
        const std::string there = ToTicket(row.number, 2000, 3000, ticket);
        EXPECT_TRUE(there.starts_with(row.option)) << there;
        EXPECT_EQ(row.back, ToDevmode(ticket));
    }
    EXPECT_EQ("256 0x0 ", ToDevmode(Ticket("minimal.xml"))) << "no form has the default value";
    m_binding.emplace();
    EXPECT_EQ("refused", ToDevmode(Ticket("minimal.xml"))) << "no printer, no forms";
}

TEST_F(MediaSizes, AreOfferedByForeignNamesAndNotAsCustomOnesWithoutExtents)
{
    Bind(kModels[1]);
    SetForms({
        MakeForm(500, W("\"<a>&'\t\x0001z"), 1000, 2000, 25005),
        MakeForm(501, WideString(62, W('x')) + W("\U0001F5A8"), 1000, 2000, 25005), // cut within a character
        MakeForm(50000, W("\U0001F5A8"), 1000, 2000, 25003),
        MakeForm(50000, W("a second one of that number"), 1000, 2000, 25003),
        MakeForm(9, W("yields to a form of another type"), 1, 1, 25004),
        MakeForm(9, W("is unlisted"), 1, 1, 25007),
        MakeForm(256, W("Custom"), 1, 1, 25003),
    });
    ChangeInstalledModel([](json& model) { model["minExtent"] = 0; }); // no model any more: the driver has no answer
    const ComPtr<IXMLDOMDocument2> document = LoadTestDocument("capabilities/public-keywords-example.xml");
    Access::Replace(*m_binding->object, document.Get(), nullptr, Access::kMediaSizes);
    EXPECT_EQ("\"<a>&'  z " + std::string(62, 'x') + "\xEF\xBF\xBD \xF0\x9F\x96\xA8 ",
              Words(document, kOption + "/psf:Property/psf:Value"));
    EXPECT_EQ("", Words(document, "//psf:ParameterDef[contains(@name,'PageMediaSize')]"));

    constexpr int kUsable = 0x0102'0304;
    const int beyond = static_cast<int>(0xFFFE'8000U);
    EXPECT_EQ(0xFFFE, PageMediaSize::ExtentsOf(kUsable, beyond)->most.length) << "unsigned";
    for (const auto& [least, most] : {std::pair{-1, kUsable}, {kUsable, -1}, {0, kUsable}, {kUsable, 0}, {beyond, 1}})
        EXPECT_FALSE(PageMediaSize::ExtentsOf(least, most)) << least << " " << most;
}

TEST_F(MediaSizes, HaveTheImageableAreaOfEveryOrientation)
{
    const auto ask = [&](const std::string& orientation)
    {
        const ComPtr<IXMLDOMDocument2> document = LoadDocument(CapabilitiesAround(""));
        const ComPtr<IXMLDOMDocument2> ticket =
            Ticket("vnd:Own 297000 1200000",
                   "<psf:Feature name='psk:PageOrientation'><psf:Option name='" + orientation + "'/></psf:Feature>");
        for (int again = 0; again < 2; ++again)
            Access::Replace(*m_binding->object, document.Get(), ticket.Get(), Access::kImageableArea);
        return Words(document, "/*/psf:Property/psf:Property/@name | //psf:Property/psf:Value");
    };
    const auto area = [](const std::string& width, const std::string& height, const std::string& inner)
    {
        return "psk:ImageableSizeWidth " + width + " psk:ImageableSizeHeight " + height + " psk:ImageableArea " + inner;
    };
    Bind(kModels[3]); // whose banner has margins of 4100 at its sides, 10000 above, 15000 below
    for (const char* const orientation : {"psk:Portrait", "psk:Odd", "cannot be read"})
        EXPECT_EQ(area("297000", "1200000", "4100 10000 288800 1175000 "), ask(orientation)) << orientation;
    EXPECT_EQ(area("1200000", "297000", "15000 4100 1175000 288800 "), ask("psk:Landscape"));
    for (const char* const orientation : {"psk:ReversePortrait", "psk:ReverseLandscape"}) // not turned, on purpose
        EXPECT_EQ(area("297000", "1200000", "4100 15000 288800 1175000 "), ask(orientation)) << orientation;
    Bind(kModels[1]);
    EXPECT_EQ("", ask("psk:Portrait")) << "without its flag";
    const TestPrinter withoutProduct(0x400);
    EXPECT_EQ(S_OK, m_binding.emplace().BindTo(withoutProduct.Handle()));
    EXPECT_EQ(area("1200000", "297000", "0 0 1200000 297000 "), ask("psk:Landscape")) << "without margins";
    m_binding.reset();
}

TEST_F(MediaSizes, AreOfferedWithoutATicketOrAConversionBefore)
{
    Bind(kModels[3]);
    const ComPtr<IXMLDOMDocument2> document = LoadTestDocument("capabilities/core-driver-like.xml");
    EXPECT_EQ(S_OK, m_binding->provider->CompletePrintCapabilities(nullptr, document.Get()));
    EXPECT_EQ(OperatingSystem::UseEnglishPaperSizes() ? "215900 279400 4100 4100 207700 271200 "
                                                      : "210000 297000 4100 4100 201800 288800 ",
              Words(document, "/*/psf:Property//psf:Value"));
}

} // namespace
