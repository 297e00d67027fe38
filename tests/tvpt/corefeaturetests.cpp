// The core driver's settings on the command line: shown by name and in words, set, and in a ticket the same whichever
// way they are reached.
#include <tuple>

#include "hostrun.h"

#include "complugins/oemdevmode.h"
#include "utilitiesstaticlib/wideliteral.h"

namespace
{

namespace Format = OemDevmodeFormat;
using nlohmann::json;

class CoreFeatures : public HostTest
{
protected:
    std::string Make(const std::string& model, const std::vector<std::string>& settings = {})
    {
        return NewDevmode(InstallTestPrinter(model), settings);
    }

    [[nodiscard]] std::string Set(const std::string& bytes, const std::vector<std::string>& settings) const
    {
        return OutputOf(With({"devmode", "set", "-", "--printer", m_printer}, settings), bytes);
    }

    // With the arguments and the printer; the core driver's helper is asked, or left out.
    [[nodiscard]] std::string Converted(std::vector<std::string> arguments, const std::string& input,
                                        bool isAsked) const
    {
        arguments.insert(arguments.end(), {"--printer", m_printer});
        if (!isAsked)
            arguments.emplace_back("--no-core-helper");
        return OutputOf(arguments, input);
    }

    [[nodiscard]] std::string Ticket(const std::string& devmode, bool isAsked) const
    {
        return Converted({"ticket", "from-devmode", "-"}, devmode, isAsked);
    }
};

// Whose core driver's part has a size that no layout has.
std::string WithUnknownCorePart(std::string bytes, std::size_t noteAt = Format::kUnidrvSizeOffset,
                                std::uint16_t size = 562)
{
    bytes.erase(sizeof(DEVMODEW) + 200, 2);
    bytes = Patched<WORD>(std::move(bytes), sizeof(DEVMODEW) + noteAt, size);
    const auto extra = static_cast<WORD>(bytes.size() - sizeof(DEVMODEW));
    return Patched(std::move(bytes), offsetof(DEVMODEW, dmDriverExtra), extra);
}

json Described(const char* name, unsigned value, const json& option, const json& text)
{
    return {{"name", name}, {"value", value}, {"option", option}, {"text", text}};
}

TEST_F(CoreFeatures, AreShownByNameAndSetByEitherValue)
{
    const struct
    {
        const char* model;
        const char* setting;
        const char* number;
        json shown;
        const char* words;
        bool isInLayout; // told without a printer
        bool isForAll;   // and set
    } rows[] = {
        // clang-format off
        {"tavlen-c9070-ps",  "ms.10=@5421", "10", Described("FEAT_MS_INTERNAL_SIDES_IMAGED", 2, 5421, "Duplex Flip Long"),            "    duplex: flip on the long edge\n", true, true},
        {"tavlen-c9070-ps",  "ms.3=@5012",  "3",  Described("FEAT_MS_ORIENTATION", 3, 5012, "Rotated Landscape"),                     "    orientation: landscape, turned round\n", true, false},
        {"tavlen-c9070-ps",  "ms.20=1",     "20", Described("FEAT_MS_INTERNAL_BOOKLET", 1, 5111, "Booklet On"),                       "    booklet: on\n", true, false},
        {"tavlen-c9070-ps",  "ms.16=@5092", "16", Described("FEAT_MS_ICM_INTENT", 2, 5092, "Constrast (Pictures)"),                   "    rendering intent: contrast (pictures)\n", false, false},
        {"tavlen-c9070-ps",  "ms.4=0x32",   "4",  Described("FEAT_MS_SCALE", 50, nullptr, nullptr),                                   "    scale: 50 %\n", true, true},
        {"tavlen-b4400-uni", "ms.8=@5026",  "8",  Described("FEAT_MS_RESOLUTION", (1200u << 16) + 1200, 5026, "1200x1200dpi"),        "    resolution: 1200x1200dpi\n", true, true},
        {"tavlen-b4400-uni", "ms.34=@5970", "34", Described("FEAT_MS_INTERNAL_UNI_COLOR_PRINTING_MODE", 1, 5970, "Color"),            "    colour printing mode: Color\n", false, false},
        // clang-format on
    };
    for (const auto& row : rows)
    {
        SCOPED_TRACE(std::string(row.model) + ", " + row.setting);
        const std::string before = Make(row.model);
        const std::string set = Set(before, {row.setting});
        EXPECT_TRUE(set == NewDevmode(m_printer, {row.setting})); // made so, as well
        EXPECT_EQ(ShownDevmode(set, m_printer)["core"]["features"][row.number], row.shown);
        EXPECT_EQ(ShownDevmode(set)["core"]["features"].value(row.number, json()), row.isInLayout ? row.shown : json());
        EXPECT_EQ(RunHost(With({"devmode", "set", "-"}, {row.setting}), before).status, row.isForAll ? 0 : 1);
        const std::string lines = OutputOf({"devmode", "show", "-", "--printer", m_printer}, set);
        EXPECT_NE(lines.find(row.words), std::string::npos) << lines;
    }
}

TEST_F(CoreFeatures, AreShownWithTheirSign)
{
    const std::tuple<std::size_t, std::int16_t, const char*> rows[] = {
        {offsetof(DEVMODEW, dmPrintQuality), -1, "    resolution: draft\n"},
        {offsetof(DEVMODEW, dmPrintQuality), -5, "    resolution: -5 by 600 dots per inch\n"},
        {offsetof(DEVMODEW, dmScale), -50, "    scale: -50 %\n"},
        {offsetof(DEVMODEW, dmPaperWidth), -7, "    paper width: -0.7 mm\n"},
        {offsetof(DEVMODEW, dmPaperSize), -1, "    paper size: 65535\n"}, // has none
        {offsetof(DEVMODEW, dmDuplex), -1, "    duplex: no option, value -1\n"},
    };
    const std::string bytes = Make("tavlen-b4400-uni", {"dmYResolution=600"});
    for (const auto& [offset, value, words] : rows)
    {
        const std::string lines =
            OutputOf({"devmode", "show", "-", "--printer", m_printer}, Patched(bytes, offset, value));
        EXPECT_NE(lines.find(words), std::string::npos) << words << lines;
    }
}

// The bit that turns landscape round lies in a part of which nobody knows what it is.
TEST_F(CoreFeatures, OfAnUnknownPartTheOrientationIsItsPublicField)
{
    std::string bytes = WithUnknownCorePart(Make("tavlen-c9070-ps"), Format::kPostScriptSizeOffset, 706);
    bytes[sizeof(DEVMODEW) + 5] = 2;
    const std::string set = Set(bytes, {"ms.3=2"});
    EXPECT_TRUE(set.substr(sizeof(DEVMODEW)) == bytes.substr(sizeof(DEVMODEW)));
    EXPECT_EQ(ShownDevmode(set, m_printer)["core"]["features"]["3"]["value"], 2);
    EXPECT_TRUE(IsRefused(RunHost({"devmode", "set", "-", "--printer", m_printer, "--set", "ms.3=3"}, bytes),
                          "rotated landscape is kept in the core driver's part"));
}

// Whoever sets a field after a setting, or the other way round, gets both.
TEST_F(CoreFeatures, AndPublicFieldsAreSetInTheirOrder)
{
    const std::string bytes = Make("tavlen-c9070-ps");
    const std::string set = Set(bytes, {"ms.10=2", "dmCopies=4", "ms.5=5", "dmDuplex=3", "feature.46=5421", "ms.19=3"});
    const json shown = ShownDevmode(set, m_printer);
    EXPECT_EQ(shown["public"]["dmDuplex"], 3);
    EXPECT_EQ(shown["public"]["dmCopies"], 5);
    EXPECT_EQ(shown["features"]["46"], 5421);
    EXPECT_EQ(shown["core"]["features"]["19"]["text"], "6-Up");
    EXPECT_EQ(shown["oem"]["crcValid"], true);
}

TEST_F(CoreFeatures, ThatCannotBeSetAreOneLineWithWhatCanBe)
{
    const std::string postScript = Make("tavlen-c9070-ps");
    const std::string unidrv = Make("tavlen-b4400-uni"); // its printer is asked below
    const std::string unknownSize = WithUnknownCorePart(unidrv);
    const std::string noParts = Patched<WORD>(unidrv.substr(0, sizeof(DEVMODEW)), offsetof(DEVMODEW, dmDriverExtra), 0);
    constexpr bool kPrinter = true;
    constexpr bool kNone = false;
    const struct
    {
        const std::string& bytes;
        bool namesPrinter;
        const char* setting;
        const char* error;
    } rows[] = {
        // clang-format off
        {unidrv, kPrinter, "ms.99=1",    "ms.99: no core driver has such a feature; a unidrv driver of kind 0x80, platform 0x800 has 3, 4, 5, "},
        {noParts, kNone,   "ms.99=1",    "ms.99: no core driver has such a feature; they have 3 to 35"},
        {unidrv, kPrinter, "ms.24=1",    "FEAT_MS_PS_OUTPUT_FORMAT is no setting of a unidrv driver of kind 0x80, platform 0x800, which has 3, 4, 5, "},
        {unidrv, kNone,    "ms.31=1",    "with --printer the printer's driver is known"},
        {postScript, kNone, "ms.20=1",   "FEAT_MS_INTERNAL_BOOKLET lies in the part of a postscript driver: name the printer with --printer; without it only public fields can be set: 3, 4, 5, 6, 7, 8, 10, "},
        {postScript, kNone, "ms.3=@5012", "must be one of @5010 (Portrait), @5011 (Landscape); with --printer"},
        {unidrv, kPrinter, "ms.3=3",     "ms.3: FEAT_MS_ORIENTATION of a unidrv driver of kind 0x80, platform 0x800 must be one of 1 (Portrait), 2 (Landscape CC90)"},
        {unidrv, kPrinter, "ms.5=two",   "\"two\" is not a number from 1 to 32767"},
        {unidrv, kPrinter, "ms.10=4294967298", "must be one of 1 (Simplex)"},
        {unidrv, kPrinter, "ms.5=@5410", "FEAT_MS_COPIES of a unidrv driver of kind 0x80, platform 0x800 has no values of the data model, only numbers from 1 to 32767"},
        {unidrv, kPrinter, "ms.5=40000", "ms.5: FEAT_MS_COPIES of a unidrv driver of kind 0x80, platform 0x800: must be from 1 to 32767"},
        {postScript, kPrinter, "ms.21=1", "the devmode is one of a postscript driver, the printer has another"},
        {unknownSize, kPrinter, "ms.21=1", "is not recognised as that of a unidrv driver of kind 0x80, platform 0x800; only public fields can be set: 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16, 17"},
        {unknownSize, kNone, "ms.21=1",  "the core driver's part is not recognised"},
        {noParts, kNone, "ms.10=1",      "no maker's part to tell the core driver's kind by; with --printer"},
        // clang-format on
    };
    for (const auto& row : rows)
    {
        SCOPED_TRACE(row.setting);
        WriteBytes(Folder() / "in.dm", row.bytes);
        std::vector<std::string> arguments = {"devmode", "set", File("in.dm"), "-o", File("in.dm")};
        if (row.namesPrinter)
            arguments.insert(arguments.end(), {"--printer", m_printer});
        EXPECT_TRUE(IsRefused(RunHost(With(arguments, {"dmCopies=7", row.setting})), row.error));
        EXPECT_TRUE(ReadBytes(Folder() / "in.dm") == row.bytes);
    }
    // What is public can still be set, and what is private is not shown.
    const std::string set = Set(unknownSize, {"ms.10=@5421"});
    const json core = ShownDevmode(set, m_printer)["core"];
    EXPECT_EQ(core["recognized"], false);
    EXPECT_EQ(core["features"]["10"]["option"], 5421);
    EXPECT_FALSE(core["features"].contains("21"));
    EXPECT_EQ(ShownDevmode(noParts)["core"]["features"], json::object());
    EXPECT_NE(Set(noParts, {"ms.10=2"}), noParts);
}

// By the core driver's helper, and by the layout of its part.
TEST_F(CoreFeatures, GiveTheSameTicketWhicheverWayTheyAreReached)
{
    const struct
    {
        const char* model;
        std::vector<std::string> settings;
        std::vector<const char*> held; // by the ticket
    } rows[] = {
        {"tavlen-c9070-ps", {}, {"psk:Portrait", "psk:OneSided", "psk:Standard", "psk:Automatic"}},
        {"tavlen-c9070-ps",
         {"ms.3=3", "ms.10=@5422", "ms.19=@7243", "ms.21=1", "ms.29=2", "ms.8=@5028", "ms.6=0", "ms.4=71"},
         {"psk:ReverseLandscape", "psk:TwoSidedShortEdge", ">6<", "psk:Reverse\"", "psk:DownloadAsRasterFont", ">2400<",
          "psk:Uncollated", ">71<"}},
        {"tavlen-c9070-ps", {"ms.20=1"}, {"psk:Booklet", ">1<"}},
        {"tavlen-c9070-ps", {"dmScale=5000"}, {">1000<"}}, // the most that is offered
        {"tavlen-c9070-ps", {"dmPrintQuality=720", "dmYResolution=360"}, {">720<", ">360<"}}, // no option of the driver
        {"tavlen-b4400-uni",
         {"ms.3=2", "ms.10=2", "ms.19=5", "ms.21=@5121"},
         {"psk:Landscape", "psk:TwoSidedLongEdge", ">16<", "psk:Reverse\""}},
        {"tavlen-b4400-uni", {"ms.20=1", "dmTTOption=1"}, {"psk:Booklet", "psk:RenderAsBitmap"}},
        {"tavlen-w3100-xps", {"ms.3=2", "ms.10=3"}, {"psk:Landscape", "psk:TwoSidedShortEdge"}},
        {"tavlen-b7000-xps", {"ms.3=3", "ms.10=2"}, {"psk:ReverseLandscape", "psk:TwoSidedLongEdge"}},
    };
    for (const auto& row : rows)
    {
        SCOPED_TRACE(row.model);
        const std::string devmode = Make(row.model, row.settings);
        const std::string ticket = Ticket(devmode, true);
        EXPECT_EQ(ticket, Ticket(devmode, false));
        for (const char* const held : row.held)
            EXPECT_NE(ticket.find(held), std::string::npos) << held << " in " << ticket;
        WriteBytes(Folder() / "in.dm", devmode);
        for (const bool isAsked : {true, false}) // and back
            EXPECT_TRUE(Converted({"ticket", "to-devmode", "--devmode", File("in.dm"), "-", "-o", "-"}, ticket,
                                  isAsked) == devmode);
    }
    // Of a devmode of another driver's layout, or of an unknown one, only the public settings mean something here.
    const std::string unidrv = Make("tavlen-b4400-uni", {"ms.21=1", "ms.10=3"});
    for (const std::string& devmode : {WithUnknownCorePart(unidrv), unidrv})
    {
        for (const bool isAsked : {true, false})
            for (const char* const held : {"psk:Standard", "psk:TwoSidedShortEdge"})
                EXPECT_NE(Ticket(devmode, isAsked).find(held), std::string::npos) << held;
        InstallTestPrinter(); // for the second one
    }
    // A known core driver's part needs no maker's part behind it.
    const std::string alone = Make("tavlen-c9070-ps", {"ms.21=1"}).substr(0, sizeof(DEVMODEW) + 708);
    EXPECT_NE(Ticket(Patched<WORD>(alone, offsetof(DEVMODEW, dmDriverExtra), 708), true).find("psk:Reverse\""),
              std::string::npos);
    // Only the PostScript kind turns landscape round by a bit of its part: elsewhere the field says it all.
    const std::string turned = Ticket(Make("tavlen-b7000-xps", {"ms.3=3"}), true);
    WriteBytes(Folder() / "in.dm", WithUnknownCorePart(NewDevmode(m_printer), Format::kPostScriptSizeOffset, 722));
    for (const bool isAsked : {true, false})
    {
        const std::string made =
            Converted({"ticket", "to-devmode", "--devmode", File("in.dm"), "-", "-o", "-"}, turned, isAsked);
        EXPECT_EQ(ShownDevmode(made)["public"]["dmOrientation"], 3);
    }
}

} // namespace
