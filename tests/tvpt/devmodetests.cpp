// Devmodes as files: public fields and features by name, the parts behind them, and bytes that are no devmode.
#include <cstring>
#include <tuple>

#include "complugins/xdevmode.h"
#include "devmode.h"
#include "hostrun.h"
#include "printschemadocument.h"
#include "tests/common/oemdevmodebytes.h"

#include <tvutil/attributebyteslistvalue.h>
#include <tvutil/crc32.h>
#include <tvutil/persistentattributes.h>

namespace
{

namespace Format = OemDevmodeFormat;
using nlohmann::json;
using OemDevmodeBytes::StateOf;

constexpr std::size_t kOem = sizeof(DEVMODEW) + 708; // of the PostScript model
constexpr std::uint16_t kUnknownKey = 77;
constexpr std::int32_t kUnknownFeature = 4711;

std::string WithRightCrc(const std::string& bytes)
{
    return Patched(bytes, kOem + Format::kCrcOffset,
                   Crc32::GetCrc(bytes.data() + kOem + Format::kCountOffset, Format::kCheckedSize));
}

std::string WithEntry(std::string bytes, std::uint16_t key, const ByteBuffer& value)
{
    XDevmode devmode(reinterpret_cast<DEVMODEW*>(bytes.data()));
    devmode.SetPropertyBagEntry(key, value);
    EXPECT_TRUE(devmode.CommitToDevmode());
    return bytes;
}

ByteBuffer Attribute(std::int32_t feature, AttributeBytesValue value)
{
    AttributeBytesIndexedList list;
    list.SetAttributeBytes(feature, std::move(value));
    return ByteBuffer(AttributeBytesRawList(list).GetBytes());
}

std::string WithFeatures(const std::string& bytes, const ByteBuffer& list)
{
    return WithEntry(bytes, Format::kPersistentAttributesKey, StateOf(AttributeBytesRawList(list.bytes())));
}

class DevmodeFiles : public HostTest
{
protected:
    std::string Make(const std::string& model = "tavlen-c9070-ps")
    {
        const std::string bytes = NewDevmode(InstallTestPrinter(model));
        WriteBytes(Folder() / "new.dm", bytes);
        return bytes;
    }

    // With the printer of the last new devmode.
    [[nodiscard]] json Compare(const std::string& bytes) const
    {
        return ShownDevmode(bytes, m_printer)["printer"];
    }

    static RunResult TryToSet(const std::string& bytes, const std::string& setting)
    {
        return RunHost({"devmode", "set", "-", "--set", setting}, bytes);
    }

    static std::string Set(const std::string& bytes, const std::vector<std::string>& settings)
    {
        return OutputOf(With({"devmode", "set", "-"}, settings), bytes);
    }
};

TEST_F(DevmodeFiles, ANewDevmodeIsWholeForEveryShippedModel)
{
    constexpr std::tuple<const char*, unsigned, int, const char*> kRows[] = {
        {"tavlen-c9070-ps", 708, DMCOLOR_COLOR, R"({"477":{"210":{"175":5001}}})"},
        {"tavlen-b4400-uni", 564, DMCOLOR_MONOCHROME, R"({"477":{"210":{"175":5001}}})"},
        {"tavlen-w3100-xps", 572, DMCOLOR_COLOR, R"({"43":1,"46":5420,"477":{"210":{"175":5001}}})"},
        {"tavlen-b7000-xps", 724, DMCOLOR_MONOCHROME,
         R"({"43":1,"45":5410,"46":5421,"95":"0mm","96":"0mm","477":{"210":{"175":6800}}})"},
    };
    for (const auto& [model, coreSize, color, features] : kRows)
    {
        SCOPED_TRACE(model);
        const std::string bytes = Make(model);
        EXPECT_EQ(bytes.size(), sizeof(DEVMODEW) + coreSize + Format::kSize);
        const json shown = ShownDevmode(bytes);
        EXPECT_EQ(shown["public"]["dmColor"], color);
        EXPECT_EQ(shown["oem"]["offset"], sizeof(DEVMODEW) + coreSize);
        EXPECT_EQ(shown["oem"]["fault"], nullptr);
        EXPECT_EQ(shown["settings"]["fault"], nullptr);
        EXPECT_EQ(shown["features"], json::parse(features));
        EXPECT_EQ(shown["papers"][0]["name"], shown["public"]["dmFormName"]);
        EXPECT_EQ(Compare(bytes)["matches"], true) << Compare(bytes);
    }
    // A devmode is not for a printer of another layout, nor without its paper and media.
    const std::string foreign = Set(Make(), {"dmPaperSize=999", "dmMediaType=9999"});
    EXPECT_EQ(Compare(foreign)["differences"].size(), 3u) << Compare(foreign); // the paper list lacks it, too
    Make("tavlen-b4400-uni");
    EXPECT_EQ(Compare(foreign)["differences"][0],
              "the core driver's part is postscript, 708 bytes; the printer's is unidrv, 564 bytes");
}

// Values as people write them come back as they are shown; what nobody here understands survives beside them.
TEST_F(DevmodeFiles, WhatIsSetIsShownAndNothingElseChanges)
{
    const ByteBuffer unknown =
        Attribute(kUnknownFeature, {static_cast<AttributeBytesKind>(99), 0x82, ByteBuffer("\x01\xAF", 2)});
    const std::string fresh = Make();
    const std::string before = WithEntry(WithFeatures(fresh, unknown), kUnknownKey, ByteBuffer("kept", 4));
    struct Row
    {
        const char* place;
        std::string setting;
        json shown;
        DWORD flag = 0;
    };
    const std::string name64(64, 'n');
    const std::string text255(255, 't');
    const std::string text31(31, 't');
    const Row rows[] = {
        {"/public/dmFields", "dmFields=0", 0},
        {"/public/dmDeviceName", "dmDeviceName=" + text31, text31},
        {"/public/dmPaperSize", "dmPaperSize=65535", 65535, DM_PAPERSIZE},
        {"/public/dmPaperWidth", "dmPaperWidth=0xB9A", 2970, DM_PAPERWIDTH},
        {"/public/dmPrintQuality", "dmPrintQuality=-4", -4, DM_PRINTQUALITY},
        {"/public/dmFormName", "dmFormName=A=B \xC3\xA4\xF0\x9F\x96\xA8", "A=B \xC3\xA4\xF0\x9F\x96\xA8", DM_FORMNAME},
        {"/public/dmICMIntent", "dmICMIntent=4294967295", 4294967295u, DM_ICMINTENT},
        {"/application", "app=excel.exe", "excel.exe"},
        {"/features/46", "feature.46=5421", 5421},
        {"/features/43", "feature.43=32767", 32767},
        {"/features/78", "feature.78=" + text255, text255},
        {"/features/82", "feature.82=H\xC3\xA4\xE2\x82\xAC=\xF0\x9F\x96\xA8", "H\xC3\xA4\xE2\x82\xAC=\xF0\x9F\x96\xA8"},
        {"/features/84", "feature.84=", ""},
        {"/features/95", "feature.95=12.5mm", "12.5mm"},
        {"/features/96", "feature.96=-0.5in", "-12.7mm"},
        {"/features/98", "feature.98=-0.000001mm", "-0.000001mm"},
        {"/features/146", "feature.146=9687:" + name64, "9687:" + name64},
        {"/features/174", "feature.174=6756", 6756},
        {"/features/477/210/175", "feature.175=9700:B\xC3\xBCtten: 90g", "9700:B\xC3\xBCtten: 90g"},
    };
    std::vector<std::string> settings;
    json expected = ShownDevmode(before);
    EXPECT_EQ(expected["features"], json::parse(R"({"4711": {"kind": 99, "flags": 130, "bytes": "01AF"}})"));
    expected["features"]["477"]["210"] = json::object(); // collections, not lists
    DWORD flags = 0;
    for (const Row& row : rows)
    {
        settings.push_back(row.setting);
        expected[json::json_pointer(row.place)] = row.shown;
        flags |= row.flag;
    }
    expected["public"]["dmFields"] = flags;
    const std::string after = Set(before, settings);
    const json shown = ShownDevmode(after);
    for (const char* const part : {"public", "features", "application"})
        EXPECT_EQ(shown[part], expected[part]);
    EXPECT_EQ(shown["choices"], json({46, 146, 174, 175}));
    EXPECT_EQ(shown["oem"]["crcValid"], true);
    EXPECT_EQ(shown["oem"]["entries"][2], json({{"key", kUnknownKey}, {"length", 4}, {"meaning", nullptr}}));
    EXPECT_EQ(after.substr(sizeof(DEVMODEW), 708), before.substr(sizeof(DEVMODEW), 708)) << "the core driver's part";
    EXPECT_EQ(ShownDevmode(Set(fresh, settings))["papers"], ShownDevmode(fresh)["papers"]);
    for (const Row& row : std::span(rows).subspan(1))
    {
        const json& value = shown[json::json_pointer(row.place)];
        const std::string again = row.setting.substr(0, row.setting.find('=') + 1);
        EXPECT_EQ(Set(after, {again + (value.is_string() ? value.get<std::string>() : value.dump())}), after)
            << row.setting << ": what is shown can be set";
    }
    // Automatic takes the choice back.
    EXPECT_EQ(ShownDevmode(Set(after, {"feature.175=5001"}))["choices"], json({46, 146, 174}));
}

TEST_F(DevmodeFiles, ABadSettingNamesTheKeyAndLeavesTheInput)
{
    const std::string before = Make();
    const std::tuple<std::string, const char*, std::vector<std::string>> rows[] = {
        {"dmCopies", "must be from 1 to 32767", {"0", "32768", "99999999999999999999"}},
        {"dmCopies", "is not a number", {"3x", "", "0x", "0x-1"}},
        {"dmFormName", "longer than 31 characters", {std::string(32, 'x')}},
        {"dmFormName", "not a text in UTF-8 on one line", {"\xFF", "a\nb"}},
        {"dmSize", "is given by the devmode itself", {"1"}},
        {"dmcopies", "no field has this name", {"1"}},
        {"feature.5", "the feature catalogue has no such feature", {"1"}},
        {"feature.46x", "the feature catalogue has no such feature", {"5420"}},
        {"feature.720", "is a setting of the printer, not of a document", {"true"}},
        {"feature.30001", "DevicePaperList is written by the driver only", {"1"}},
        {"feature.477", "PageMediaCollection has no value of its own, only features", {"1"}},
        {"feature.43", "JobCopies must be a whole number from 1 to 32767", {"0", "3.0"}},
        {"feature.46", "JobPlex must be one of 5001, 5420 to 5422", {"5423", "5420:Simplex", ""}},
        {"feature.175",
         "from 9687 on with a name (9687:NAME) of at most 64 characters",
         {"6811", "9700", "9700:", "9700: ", "9700:a\xE2\x80\xA8", "9700:" + std::string(65, 'n')}},
        {"feature.95",
         "ImageShiftX must be a length from -1000mm to 1000mm, such as 12.5mm or 0.5in",
         {"12.5", ".5mm", "1.mm", "1000.000001mm", "1e2mm", "--1mm", "0.0000000001mm"}},
        {"feature.78", "JobTitle must be a text in UTF-8, on one line, of at most 255 characters", {"\xFF", "a\nb"}},
        {"app",
         "must be a file name without a folder, in UTF-8, of 1 to 255 characters",
         {"", " ", "a\tb", "C:\\excel.exe"}},
    };
    for (const auto& [key, error, values] : rows)
        for (const std::string& value : values)
        {
            SCOPED_TRACE(key + "=" + value);
            // A sound setting before the bad one must not reach the file either.
            const RunResult result = RunHost({"devmode", "set", File("new.dm"), "--set", "dmCopies=7", "--set",
                                              "feature.43=7", "--set", key + "=" + value, "-o", File("new.dm")});
            EXPECT_TRUE(IsRefused(result, "setting a field: " + key + ": "));
            EXPECT_TRUE(IsRefused(result, error));
            EXPECT_EQ(ReadBytes(Folder() / "new.dm"), before);
        }
    for (const char* const setting : {"dmCopies", "=1"})
        EXPECT_TRUE(
            IsOneErrorLine(TryToSet(before, setting).errors, "\"" + std::string(setting) + "\" is not KEY=VALUE"));
    EXPECT_EQ(FilesLeft(), std::vector<std::string>{"new.dm"});
}

TEST_F(DevmodeFiles, BytesThatAreNoDevmodeAreRefused)
{
    const std::string good = Make();
    const std::pair<std::string, const char*> rows[] = {
        {"", "only 0 bytes"},
        {good.substr(0, 203), "only 203 bytes"},
        {good + '\0', "dmSize and dmDriverExtra make 6884 bytes, the file has 6885"},
        {Patched<WORD>(good, offsetof(DEVMODEW, dmSize), 203), "dmSize is 203, less than a devmode has"},
        {std::string(200000, 'x'), "larger than 131070 bytes"},
    };
    for (const auto& [bytes, error] : rows)
        EXPECT_TRUE(IsRefused(RunHost({"devmode", "show", "-"}, bytes), error));
}

TEST_F(DevmodeFiles, AShortPublicPartShowsOnlyItsFields)
{
    DEVMODEW fields{};
    fields.dmSize = Devmode::kSmallestPublicSize;
    fields.dmDitherType = 5;
    fields.dmDeviceName[0] = W('\n');
    fields.dmDeviceName[1] = W('x');
    const std::string bytes(reinterpret_cast<const char*>(&fields), Devmode::kSmallestPublicSize);
    const json shown = ShownDevmode(bytes);
    EXPECT_EQ(shown["public"]["dmDitherType"], 5);
    EXPECT_FALSE(shown["public"].contains("dmReserved1"));
    EXPECT_EQ(shown["oem"]["present"], false);
    EXPECT_NE(OutputOf({"devmode", "show", "-"}, bytes).find("dmDeviceName:  x\n"), std::string::npos);

    EXPECT_TRUE(
        IsRefused(TryToSet(bytes, "dmReserved1=7"), "dmReserved1: the devmode's public part ends before this field"));
}

// A byte that no entry owns tells: whoever writes the part anew clears it.
TEST_F(DevmodeFiles, ThePartStaysByteForByteUnderATicketWithoutItsSettings)
{
    const std::string fresh = Make();
    WriteBytes(Folder() / "d.dm", WithRightCrc(Patched<BYTE>(fresh, fresh.size() - 1, 7)));
    for (const auto& [option, isKept] : {std::pair("", true), {"<psf:Option name='psk:Transparency'/>", false}})
    {
        const std::string feature = "<psf:Feature name='psk:PageMediaType'>" + std::string(option) + "</psf:Feature>";
        WriteBytes(Folder() / "t.xml", Ticket(Binding("psk", kKeywords.uri), feature));
        ToDevmode("t.xml", "d.dm", "o.dm");
        EXPECT_EQ(ReadBytes(Folder() / "o.dm").substr(kOem) == ReadBytes(Folder() / "d.dm").substr(kOem), isKept);
    }
}

TEST_F(DevmodeFiles, SettingsThatDoNotFitAreRefusedWithTheFigures)
{
    const std::string fresh = Make();
    const auto withFeature = [&fresh](std::size_t size)
    {
        return WithFeatures(fresh, Attribute(kUnknownFeature, {AttributeBytesKind::Binary, 0, ByteBuffer(size)}));
    };
    // 8 + 4 bytes for a new integer; 4 for each of the two entries there, 4 + 4 for a new text entry of one character.
    const std::size_t used = ShownDevmode(fresh)["settings"]["size"];
    const std::size_t usedWithFeature = ShownDevmode(withFeature(0))["settings"]["size"];
    const std::size_t roomOfState = Format::kMaxPersistentAttributesSize - usedWithFeature - 12;
    const std::size_t roomOfPart = Format::kSize - Format::kEntriesOffset - 4 - used - 4 - 8;
    const std::string fullState = withFeature(roomOfState);
    const std::string fullPart = WithEntry(fresh, kUnknownKey, ByteBuffer(roomOfPart));
    EXPECT_EQ(Set(fullState, {"feature.43=1"}).size(), fresh.size());
    EXPECT_EQ(Set(fullPart, {"app=x"}).size(), fresh.size());
    EXPECT_TRUE(IsRefused(TryToSet(withFeature(roomOfState + 1), "feature.43=1"),
                          "feature.43: the settings would take 5401 bytes, a devmode has room for 5400"));
    EXPECT_TRUE(IsRefused(TryToSet(fullPart, "app=xy"), "app: the maker's part would take 5958 bytes, it has 5956"));
}

// What is wrong is told in words, and what an edit would destroy is not edited.
TEST_F(DevmodeFiles, ABadPartIsExplainedAndNotEdited)
{
    const std::string fresh = Make();
    constexpr std::size_t kCoreSize = sizeof(DEVMODEW) + Format::kPostScriptSizeOffset;
    constexpr std::size_t kEntries = kOem + Format::kEntriesOffset;
    constexpr std::size_t kState = kEntries + Format::kEntryHeaderSize;
    const std::string shorter = fresh.substr(0, fresh.size() - 1);
    const auto beyond = static_cast<WORD>(Format::kSize - Format::kEntriesOffset - 4 - 3); // for a second entry
    const std::string longEntry = Patched<WORD>(fresh, kEntries + 2, beyond);
    struct Row
    {
        const char* fault;
        bool isPresent;
        std::string spoilt;
        const char* alsoRefused = "feature.43=7";
    };
    const Row rows[] = {
        {"absent: no core driver says where it would begin", false, Patched<WORD>(fresh, kCoreSize, 0)},
        {"absent: the drivers' bytes end at 6664, the part would begin at 6652", false,
         Patched<WORD>(fresh, kCoreSize, 6652)},
        {"wrong signature 0x54564E30 at offset 708 of the drivers' bytes, not 0x54564E31", false,
         Patched<DWORD>(fresh, kOem + Format::kSignatureOffset, Format::kSignature - 1)},
        {"wrong size 5955 at offset 708 of the drivers' bytes, not 5956", false,
         Patched<DWORD>(fresh, kOem + Format::kSizeOffset, Format::kSize - 1)},
        {"cut off: 5955 of 5956 bytes at offset 708", false,
         Patched<WORD>(shorter, offsetof(DEVMODEW, dmDriverExtra), 708 + Format::kSize - 1)},
        {"CRC mismatch: 0x", true, shorter + '\1', "app=excel.exe"},
        {"entry 2 of 2 runs past the part's end", true,
         WithRightCrc(Patched<WORD>(longEntry, kOem + Format::kCountOffset, 2)), "app=excel.exe"},
        {"the settings contradict themselves", true, WithRightCrc(Patched<DWORD>(fresh, kState, 60000))},
        {"the settings are of a later format", true, WithRightCrc(Patched<WORD>(fresh, kState + 4, 0x0200))},
        {"a feature runs past the end of the settings", true, WithFeatures(fresh, ByteBuffer("\x01\x02\x03", 3))},
    };
    for (const auto& [fault, isPresent, spoilt, alsoRefused] : rows)
    {
        SCOPED_TRACE(fault);
        const json shown = ShownDevmode(spoilt);
        EXPECT_EQ(shown["oem"]["present"], isPresent);
        const json& place = shown["oem"]["fault"].is_null() ? shown["settings"] : shown["oem"];
        EXPECT_NE(place["fault"].get<std::string>().find(fault), std::string::npos) << place["fault"];
        EXPECT_EQ(shown["features"], json::object());

        for (const char* const setting : {"feature.43=7", alsoRefused})
            EXPECT_TRUE(IsRefused(TryToSet(spoilt, setting), fault));
        EXPECT_EQ(Set(spoilt, {"dmCopies=7"}).substr(sizeof(DEVMODEW)), spoilt.substr(sizeof(DEVMODEW)));
    }

    // Something else where a collection should be: what it is stays.
    const std::string odd = WithFeatures(
        fresh, Attribute(477, AttributeBytesOptionValue(AttributeBytesValueId(5001), true).ToAttributeBytes()));
    EXPECT_TRUE(IsRefused(TryToSet(odd, "feature.175=6800"),
                          "feature.175: something else is stored where the features of 477 should be"));
    EXPECT_EQ(ShownDevmode(odd)["papers"], nullptr);
}

// Sound, but not as the driver writes it.
TEST_F(DevmodeFiles, OddContentIsToldAndNothingOfItLost)
{
    const auto with = [](const OemDevmodeBytes::Entries& entries)
    {
        const OemDevmodeBytes::Bytes bytes = OemDevmodeBytes::Make(CoreDriverLayout::Unidrv, entries);
        return std::string(reinterpret_cast<const char*>(bytes.data()), bytes.size());
    };
    const ByteBuffer noList("\1\0\1\0", 4);
    const AttributeBytesRawList noPapers(Attribute(30001, {AttributeBytesKind::Binary, 0, noList}).bytes());
    EXPECT_EQ(ShownDevmode(with({{1, StateOf(noPapers, 2)}}))["settings"]["papersFault"],
              "the paper list contradicts itself");

    const std::string twice = with({{5, noList}, {5, {}}});
    EXPECT_EQ(ShownDevmode(twice)["oem"]["entries"][1], json({{"key", 5}, {"length", 0}, {"meaning", "repeated"}}));
    EXPECT_TRUE(IsRefused(TryToSet(twice, "app=x"), "app: the maker's part has more than one entry of key 5"));

    const std::string nothing = with({{1, {}}});
    EXPECT_EQ(ShownDevmode(nothing)["settings"]["fault"], nullptr);
    EXPECT_EQ(ShownDevmode(Set(nothing, {"feature.43=7"}))["features"], json({{"43", 7}}));
}

} // namespace
