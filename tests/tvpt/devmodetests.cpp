// Devmodes as files: public fields and features by name, the parts behind them, and bytes that are no devmode.
#include <algorithm>
#include <cstring>
#include <functional>
#include <nlohmann/json.hpp>

#include "complugins/xdevmode.h"
#include "devmode.h"
#include "devmodefields.h"
#include "hostrun.h"
#include "tests/common/oemdevmodebytes.h"

#include <tvutil/attributebyteslistvalue.h>
#include <tvutil/crc32.h>
#include <tvutil/persistentattributes.h>

namespace
{

namespace Format = OemDevmodeFormat;
using nlohmann::json;

constexpr std::size_t kOem = sizeof(DEVMODEW) + 708; // of the PostScript model
constexpr std::uint16_t kUnknownKey = 77;
constexpr std::int32_t kUnknownFeature = 4711;

template <class Value>
void Put(std::string& bytes, std::size_t offset, Value value)
{
    ASSERT_LE(offset + sizeof value, bytes.size());
    std::memcpy(bytes.data() + offset, &value, sizeof value);
}

void StampCrc(std::string& bytes)
{
    Put<DWORD>(bytes, kOem + Format::kCrcOffset,
               Crc32::GetCrc(bytes.data() + kOem + Format::kCountOffset, Format::kCheckedSize));
}

void PutEntry(std::string& bytes, std::uint16_t key, const ByteBuffer& value)
{
    XDevmode devmode(reinterpret_cast<DEVMODEW*>(bytes.data()));
    devmode.SetPropertyBagEntry(key, value);
    EXPECT_TRUE(devmode.CommitToDevmode());
}

// Adds to the features' raw list what only its bytes can say.
void AppendToFeatures(std::string& bytes, const ByteBuffer& addition)
{
    constexpr auto kDocument = PersistentAttributes::GetDataModelDocPropNameSpaceId();
    const ByteBuffer state = *XDevmode(reinterpret_cast<DEVMODEW*>(bytes.data())).GetPropertyBagEntry(1);
    PersistentAttributes settings(state);
    ByteBuffer list(settings.GetAttributeBytesListForNameSpace(kDocument).GetBytes());
    list.append(addition.bytes());
    AttributeBytesNameSpaces nameSpaces;
    nameSpaces.SetAttributeBytesList(kDocument, AttributeBytesRawList(list.bytes()));
    settings.SetAttributeBytesNameSpaces(nameSpaces);
    PutEntry(bytes, 1, settings.GetPersistentAttributesState());
}

// With this namespace only.
ByteBuffer StateOf(int nameSpace, const AttributeBytesRawList& list)
{
    AttributeBytesNameSpaces nameSpaces;
    nameSpaces.SetAttributeBytesList(AttributeBytesNameSpacesId(nameSpace), list);
    PersistentAttributes state;
    state.SetAttributeBytesNameSpaces(nameSpaces);
    return state.GetPersistentAttributesState();
}

ByteBuffer Attribute(std::int32_t feature, AttributeBytesValue value)
{
    AttributeBytesIndexedList list;
    list.SetAttributeBytes(feature, std::move(value));
    return ByteBuffer(AttributeBytesRawList(list).GetBytes());
}

class DevmodeFiles : public HostTest
{
protected:
    std::string NewDevmode(const std::string& model = "tavlen-c9070-ps")
    {
        m_printer = InstallTestPrinter(model);
        const RunResult result = RunHost({"devmode", "new", "--printer", m_printer, "-o", File("new.dm")});
        EXPECT_EQ(result.status, 0) << result.errors;
        return ReadBytes(Folder() / "new.dm");
    }

    static json Show(const std::string& bytes)
    {
        return Shown({"devmode", "show", "-", "--json"}, bytes);
    }

    json Compare(const std::string& bytes) const
    {
        return Shown({"devmode", "show", "-", "--json", "--printer", m_printer}, bytes)["printer"];
    }

    static RunResult Set(const std::string& bytes, const std::vector<std::string>& settings)
    {
        std::vector<std::string> arguments = {"devmode", "set", "-"};
        for (const std::string& setting : settings)
            arguments.insert(arguments.end(), {"--set", setting});
        return RunHost(arguments, bytes);
    }

private:
    static json Shown(const std::vector<std::string>& arguments, const std::string& bytes)
    {
        const RunResult result = RunHost(arguments, bytes);
        EXPECT_EQ(result.status, 0) << result.errors;
        return json::parse(result.out);
    }

    std::string m_printer;
};

TEST_F(DevmodeFiles, ANewDevmodeIsWholeForEveryShippedModel)
{
    struct Row
    {
        const char* model;
        const char* kind;
        unsigned coreSize;
        int color;
        const char* features;
    };
    constexpr Row kRows[] = {
        {"tavlen-c9070-ps", "postscript", 708, DMCOLOR_COLOR, R"({"477":{"210":{"175":5001}}})"},
        {"tavlen-b4400-uni", "unidrv", 564, DMCOLOR_MONOCHROME, R"({"477":{"210":{"175":5001}}})"},
        {"tavlen-w3100-xps", "unidrv", 572, DMCOLOR_COLOR, R"({"43":1,"46":5420,"477":{"210":{"175":5001}}})"},
        {"tavlen-b7000-xps", "postscript", 724, DMCOLOR_MONOCHROME,
         R"({"43":1,"45":5410,"46":5421,"95":"0mm","96":"0mm","477":{"210":{"175":6800}}})"},
    };
    for (const Row& row : kRows)
    {
        SCOPED_TRACE(row.model);
        const std::string bytes = NewDevmode(row.model);
        ASSERT_EQ(bytes.size(), sizeof(DEVMODEW) + row.coreSize + Format::kSize);
        const json shown = Show(bytes);
        EXPECT_EQ(shown["core"]["kind"], row.kind);
        EXPECT_EQ(shown["core"]["size"], row.coreSize);
        EXPECT_EQ(shown["public"]["dmColor"], row.color);
        EXPECT_EQ(shown["oem"]["offset"], sizeof(DEVMODEW) + row.coreSize);
        EXPECT_EQ(shown["oem"]["crcValid"], true);
        EXPECT_EQ(shown["oem"]["fault"], nullptr);
        EXPECT_EQ(shown["settings"]["fault"], nullptr);
        EXPECT_LE(shown["settings"]["size"], Format::kMaxPersistentAttributesSize);
        EXPECT_EQ(shown["features"], json::parse(row.features));
        EXPECT_EQ(shown["choices"], json::array());
        EXPECT_EQ(shown["application"], nullptr);
        EXPECT_EQ(shown["papers"][0]["name"], shown["public"]["dmFormName"]);
        EXPECT_EQ(shown["papers"][0]["paperId"], shown["public"]["dmPaperSize"]);
        EXPECT_EQ(Compare(bytes)["matches"], true) << Compare(bytes);
    }
    // The last one's devmode is not for a printer of another layout, nor are its paper and media.
    NewDevmode("tavlen-b4400-uni");
    const std::string foreign = Set(NewDevmode("tavlen-c9070-ps"), {"dmPaperSize=999", "dmMediaType=9999"}).out;
    EXPECT_EQ(Compare(foreign)["differences"].size(), 3u) << Compare(foreign);
    NewDevmode("tavlen-b4400-uni");
    EXPECT_EQ(Compare(foreign)["differences"][0],
              "the core driver's part is postscript, 708 bytes; the printer's is unidrv, 564 bytes");
}

// Values as people write them come back as they are shown; what nobody here understands survives beside them.
TEST_F(DevmodeFiles, SetFeaturesAreShownAndNothingElseChanges)
{
    std::string before = NewDevmode();
    AppendToFeatures(
        before, Attribute(kUnknownFeature, {static_cast<AttributeBytesKind>(99), 0x82, ByteBuffer("\x01\xAF", 2)}));
    PutEntry(before, kUnknownKey, ByteBuffer("kept", 4));
    struct Row
    {
        std::string setting;
        const char* feature;
        json shown;
    };
    const std::string name64(64, 'n');
    const std::string text255(255, 't');
    const Row rows[] = {
        {"feature.46=5421", "/46", 5421},
        {"feature.43=32767", "/43", 32767},
        {"feature.78=" + text255, "/78", text255},
        {"feature.82=H\xC3\xA4\xE2\x82\xAC=\xF0\x9F\x96\xA8", "/82", "H\xC3\xA4\xE2\x82\xAC=\xF0\x9F\x96\xA8"},
        {"feature.84=", "/84", ""},
        {"feature.95=12.5mm", "/95", "12.5mm"},
        {"feature.96=-0.5in", "/96", "-12.7mm"},
        {"feature.97=1000000um", "/97", "1000mm"},
        {"feature.98=-0.000001mm", "/98", "-0.000001mm"},
        {"feature.146=9687:" + name64, "/146", "9687:" + name64},
        {"feature.174=6756", "/174", 6756},
        {"feature.175=9700:B\xC3\xBCtten: 90g", "/477/210/175", "9700:B\xC3\xBCtten: 90g"},
    };
    std::vector<std::string> settings = {"app=excel.exe"};
    json expected = json::parse(R"({"4711": {"kind": 99, "flags": 130, "bytes": "01AF"}, "477": {"210": {}}})");
    for (const Row& row : rows)
    {
        settings.push_back(row.setting);
        expected[json::json_pointer(row.feature)] = row.shown;
    }
    const RunResult result = Set(before, settings);
    ASSERT_EQ(result.status, 0) << result.errors;
    const json shown = Show(result.out);
    EXPECT_EQ(shown["features"], expected);
    EXPECT_EQ(shown["choices"], json({175, 46, 146, 174}));
    EXPECT_EQ(shown["application"], "excel.exe");
    EXPECT_EQ(shown["oem"]["crcValid"], true);
    EXPECT_EQ(shown["oem"]["entries"][2], json({{"key", kUnknownKey}, {"length", 4}, {"meaning", nullptr}}));
    EXPECT_EQ(shown["papers"], Show(before)["papers"]);
    EXPECT_EQ(result.out.substr(0, kOem + Format::kCrcOffset), before.substr(0, kOem + Format::kCrcOffset));
    for (const Row& row : rows)
    {
        const json& value = shown["features"][json::json_pointer(row.feature)];
        const std::string again = row.setting.substr(0, row.setting.find('=') + 1);
        EXPECT_EQ(Set(result.out, {again + (value.is_string() ? value.get<std::string>() : value.dump())}).out,
                  result.out)
            << row.setting << ": what is shown can be set";
    }
    // Automatic takes the choice back.
    EXPECT_EQ(Show(Set(result.out, {"feature.175=5001"}).out)["choices"], json({46, 146, 174}));
}

TEST_F(DevmodeFiles, ASetFieldIsShownAndClaimed)
{
    const std::string before = NewDevmode();
    struct Row
    {
        const char* setting;
        const char* field;
        json value;
        DWORD flag;
    };
    const Row rows[] = {
        {"dmOrientation=2", "dmOrientation", 2, DM_ORIENTATION},
        {"dmPaperSize=65535", "dmPaperSize", 65535, DM_PAPERSIZE},
        {"dmPaperLength=4200", "dmPaperLength", 4200, DM_PAPERLENGTH},
        {"dmPaperWidth=0xB9A", "dmPaperWidth", 2970, DM_PAPERWIDTH},
        {"dmPrintQuality=-4", "dmPrintQuality", -4, DM_PRINTQUALITY},
        {"dmDuplex=3", "dmDuplex", 3, DM_DUPLEX},
        {"dmICMIntent=4294967295", "dmICMIntent", 4294967295u, DM_ICMINTENT},
        {"dmFormName=A=B \xC3\xA4\xF0\x9F\x96\xA8", "dmFormName", "A=B \xC3\xA4\xF0\x9F\x96\xA8", DM_FORMNAME},
        {"dmFormName=", "dmFormName", "", DM_FORMNAME},
        {"dmFormName=1234567890123456789012345678901", "dmFormName", "1234567890123456789012345678901", DM_FORMNAME},
    };
    for (const Row& row : rows)
    {
        SCOPED_TRACE(row.setting);
        const RunResult result = RunHost({"devmode", "set", "-", "--set", row.setting}, before);
        ASSERT_EQ(result.status, 0) << result.errors;
        json changed = Show(result.out);
        EXPECT_EQ(changed["public"][row.field], row.value);
        EXPECT_EQ(changed["public"]["dmFields"].get<DWORD>() & row.flag, row.flag);
        EXPECT_EQ(result.out.substr(sizeof(DEVMODEW)), before.substr(sizeof(DEVMODEW))) << "the drivers' parts";
    }
}

TEST_F(DevmodeFiles, ABadSettingNamesTheKeyAndLeavesTheInput)
{
    const std::string before = NewDevmode();
    struct Row
    {
        const char* setting;
        int status;
        const char* error;
    };
    constexpr Row kRows[] = {
        {"dmCopies=0", 1, "dmCopies: must be from 1 to 32767"},
        {"dmCopies=32768", 1, "dmCopies: must be from 1 to 32767"},
        {"dmCopies=99999999999999999999", 1, "dmCopies: must be from 1 to 32767"},
        {"dmCopies=3x", 1, "dmCopies: \"3x\" is not a number"},
        {"dmCopies=", 1, "dmCopies: \"\" is not a number"},
        {"dmCopies=0x", 1, "dmCopies: \"0x\" is not a number"},
        {"dmCopies=0x-1", 1, "dmCopies: \"0x-1\" is not a number"},
        {"dmFormName=12345678901234567890123456789012", 1, "dmFormName: longer than 31 characters"},
        {"dmFormName=\xFF", 1, "dmFormName: not a text in UTF-8 on one line"},
        {"dmFormName=a\nb", 1, "dmFormName: not a text in UTF-8 on one line"},
        {"dmSize=1", 1, "dmSize: is given by the devmode itself"},
        {"dmcopies=1", 1, "dmcopies: no field has this name"},
        {"ms.3=4", 1, "ms.3: FEAT_MS_ORIENTATION must be one of 1 (Portrait), 2 (Landscape), 3 (Rotated Landscape)"},
        {"feature.5=1", 1, "feature.5: the feature catalogue has no such feature"},
        {"feature.=1", 1, "feature.: the feature catalogue has no such feature"},
        {"feature.46x=5420", 1, "feature.46x: the feature catalogue has no such feature"},
        {"feature.720=true", 1, "feature.720: is a setting of the printer, not of a document"},
        {"feature.30001=1", 1, "feature.30001: DevicePaperList is written by the driver only"},
        {"feature.477=1", 1, "feature.477: PageMediaCollection has no value of its own, only features"},
        {"feature.200=1", 1, "feature.200: PageExceptions has no value of its own, only features"},
        {"feature.43=0", 1, "feature.43: JobCopies must be a whole number from 1 to 32767"},
        {"feature.43=3.0", 1, "feature.43: JobCopies must be a whole number from 1 to 32767"},
        {"feature.46=5423", 1, "feature.46: JobPlex must be one of 5001, 5420 to 5422"},
        {"feature.46=5420:Simplex", 1, "feature.46: JobPlex must be one of 5001, 5420 to 5422"},
        {"feature.46=", 1, "feature.46: JobPlex must be one of 5001, 5420 to 5422"},
        {"feature.175=6811", 1, "feature.175: MediaType must be one of 5001, 6799 to 6810, 6820 to 6830"},
        {"feature.175=9700", 1, "9687 on with a name (9687:NAME) of at most 64 characters"},
        {"feature.175=9700:", 1, "9687 on with a name (9687:NAME) of at most 64 characters"},
        {"feature.146=9700:12345678901234567890123456789012345678901234567890123456789012345", 1,
         "feature.146: FinishingBypass must be"},
        {"feature.95=12.5", 1,
         "feature.95: ImageShiftX must be a length from -1000mm to 1000mm, such as 12.5mm or 0.5in"},
        {"feature.95=.5mm", 1, "feature.95: ImageShiftX must be a length"},
        {"feature.95=1.mm", 1, "feature.95: ImageShiftX must be a length"},
        {"feature.95=1000.000001mm", 1, "feature.95: ImageShiftX must be a length"},
        {"feature.95=1e2mm", 1, "feature.95: ImageShiftX must be a length"},
        {"feature.95=--1mm", 1, "feature.95: ImageShiftX must be a length"},
        {"feature.95=0.0000000001mm", 1, "feature.95: ImageShiftX must be a length"},
        {"feature.78=\xFF", 1, "feature.78: JobTitle must be a text in UTF-8, on one line, of at most 255"},
        {"feature.83=a\nb", 1, "feature.83: JobRecipientName must be a text in UTF-8, on one line"},
        {"feature.175=9700: ", 1, "9687 on with a name (9687:NAME) of at most 64 characters"},
        {"feature.175=9700:a\xE2\x80\xA8", 1, "9687 on with a name (9687:NAME) of at most 64 characters"},
        {"app=", 1, "app: must be a file name without a folder, in UTF-8, of 1 to 255 characters"},
        {"app= ", 1, "app: must be a file name"},
        {"app=a\tb", 1, "app: must be a file name"},
        {"app=C:\\excel.exe", 1, "app: must be a file name"},
        {"dmCopies", 2, "\"dmCopies\" is not KEY=VALUE"},
        {"=1", 2, "\"=1\" is not KEY=VALUE"},
    };
    for (const Row& row : kRows)
    {
        SCOPED_TRACE(row.setting);
        // A sound setting before the bad one must not reach the file either.
        const RunResult result = RunHost({"devmode", "set", File("new.dm"), "--set", "dmCopies=7", "--set",
                                          "feature.43=7", "--set", row.setting, "-o", File("new.dm")});
        EXPECT_EQ(result.status, row.status);
        EXPECT_TRUE(IsOneErrorLine(result.errors, row.error));
        EXPECT_EQ(ReadBytes(Folder() / "new.dm"), before);
    }
    EXPECT_EQ(FilesLeft(), std::vector<std::string>{"new.dm"});
}

TEST_F(DevmodeFiles, BytesThatAreNoDevmodeAreRefused)
{
    const std::string good = NewDevmode();
    const auto withWord = [&good](std::size_t offset, std::uint16_t value)
    {
        std::string bytes = good;
        std::memcpy(bytes.data() + offset, &value, sizeof value);
        return bytes;
    };
    struct Row
    {
        std::string bytes;
        const char* error;
    };
    const Row rows[] = {
        {"", "only 0 bytes"},
        {good.substr(0, 203), "only 203 bytes"},
        {good.substr(0, good.size() - 1), "dmSize and dmDriverExtra make 6884 bytes, the file has 6883"},
        {good + '\0', "dmSize and dmDriverExtra make 6884 bytes, the file has 6885"},
        {withWord(offsetof(DEVMODEW, dmSize), 203), "dmSize is 203, less than a devmode has"},
        {withWord(offsetof(DEVMODEW, dmDriverExtra), 65535), "the file has 6884"},
        {std::string(200000, 'x'), "larger than 131070 bytes"},
    };
    for (const Row& row : rows)
    {
        SCOPED_TRACE(row.error);
        const RunResult result = RunHost({"devmode", "show", "-"}, row.bytes);
        EXPECT_EQ(result.status, 1);
        EXPECT_TRUE(IsOneErrorLine(result.errors, row.error));
        EXPECT_EQ(result.out, "");
    }
}

TEST_F(DevmodeFiles, AShortPublicPartShowsOnlyItsFields)
{
    DEVMODEW fields{};
    fields.dmSize = Devmode::kSmallestPublicSize;
    fields.dmDitherType = 5;
    const std::string bytes(reinterpret_cast<const char*>(&fields), Devmode::kSmallestPublicSize);
    const json shown = Show(bytes);
    EXPECT_EQ(shown["public"]["dmDitherType"], 5);
    EXPECT_FALSE(shown["public"].contains("dmReserved1"));
    EXPECT_EQ(shown["oem"]["present"], false);

    WriteBytes(Folder() / "short.dm", bytes);
    const RunResult beyond = RunHost({"devmode", "set", File("short.dm"), "--set", "dmReserved1=7"});
    EXPECT_EQ(beyond.status, 1);
    EXPECT_TRUE(IsOneErrorLine(beyond.errors, "dmReserved1: the devmode's public part ends before this field"));
}

TEST_F(DevmodeFiles, SettingsThatDoNotFitAreRefusedWithTheFigures)
{
    const std::string fresh = NewDevmode();
    const std::size_t used = Show(fresh)["settings"]["size"];
    const auto withFeature = [&fresh](std::size_t size)
    {
        std::string bytes = fresh;
        AppendToFeatures(bytes, Attribute(kUnknownFeature, {AttributeBytesKind::Binary, 0, ByteBuffer(size)}));
        return bytes;
    };
    const auto withEntry = [&fresh](std::size_t size)
    {
        std::string bytes = fresh;
        PutEntry(bytes, kUnknownKey, ByteBuffer(size));
        return bytes;
    };
    // 8 bytes for the attribute, 4 for its entry, 8 + 4 for a new integer, 4 + 4 for a new text entry of one character.
    const std::size_t roomOfState = Format::kMaxPersistentAttributesSize - used - 8 - 12;
    const std::size_t roomOfPart = Format::kSize - Format::kEntriesOffset - 4 - used - 4 - 8;
    struct Row
    {
        std::string devmode;
        const char* setting;
        const char* error; // null: it fits
    };
    const Row rows[] = {
        {withFeature(roomOfState), "feature.43=1", nullptr},
        {withFeature(roomOfState + 1), "feature.43=1",
         "feature.43: the settings would take 5401 bytes, a devmode has room for 5400"},
        {withEntry(roomOfPart), "app=x", nullptr},
        {withEntry(roomOfPart + 1), "app=x", "app: the maker's part would take 5957 bytes, it has 5956"},
    };
    for (const Row& row : rows)
    {
        const RunResult result = Set(row.devmode, {row.setting});
        EXPECT_EQ(result.status, row.error != nullptr ? 1 : 0) << result.errors;
        EXPECT_TRUE(row.error == nullptr || IsOneErrorLine(result.errors, row.error));
        EXPECT_EQ(result.out.size(), row.error != nullptr ? 0 : row.devmode.size());
    }
}

// What is wrong is told in words, and what an edit would destroy is not edited.
TEST_F(DevmodeFiles, ABadPartIsExplainedAndNotEdited)
{
    const std::string fresh = NewDevmode();
    constexpr std::size_t kState = kOem + Format::kEntriesOffset + Format::kEntryHeaderSize;
    struct Row
    {
        const char* fault;
        bool isPresent;
        std::function<void(std::string&)> spoil;
        const char* alsoRefused = "feature.43=7";
    };
    const Row rows[] = {
        {"absent: no core driver says where it would begin", false,
         [](std::string& b)
         {
             Put<WORD>(b, sizeof(DEVMODEW) + Format::kPostScriptSizeOffset, 0);
         }},
        {"absent: the drivers' bytes end at 6664, the part would begin at 6652", false,
         [](std::string& b)
         {
             Put<WORD>(b, sizeof(DEVMODEW) + Format::kPostScriptSizeOffset, 6652);
         }},
        {"wrong signature 0x54564E30 at offset 708 of the drivers' bytes, not 0x54564E31", false,
         [](std::string& b)
         {
             Put<DWORD>(b, kOem + Format::kSignatureOffset, Format::kSignature - 1);
         }},
        {"wrong size 5955 at offset 708 of the drivers' bytes, not 5956", false,
         [](std::string& b)
         {
             Put<DWORD>(b, kOem + Format::kSizeOffset, Format::kSize - 1);
         }},
        {"cut off: 5955 of 5956 bytes at offset 708", false,
         [](std::string& b)
         {
             b.pop_back();
             Put<WORD>(b, offsetof(DEVMODEW, dmDriverExtra), 708 + Format::kSize - 1);
         }},
        {"CRC mismatch: 0x", true, [](std::string& b) { b.back() = 1; }, "app=excel.exe"},
        {"entry 2 of 2 runs past the part's end", true,
         [](std::string& b)
         {
             Put<WORD>(b, kOem + Format::kEntriesOffset + 2, Format::kSize - Format::kEntriesOffset - 4 - 3);
             Put<WORD>(b, kOem + Format::kCountOffset, 2);
             StampCrc(b);
         },
         "app=excel.exe"},
        {"the settings contradict themselves", true,
         [](std::string& b)
         {
             Put<DWORD>(b, kState, 60000);
             StampCrc(b);
         }},
        {"the settings are of a later format", true,
         [](std::string& b)
         {
             Put<WORD>(b, kState + 4, 0x0200);
             StampCrc(b);
         }},
        {"a feature runs past the end of the settings", true,
         [](std::string& b)
         {
             AppendToFeatures(b, ByteBuffer("\x01\x02\x03", 3));
         }},
    };
    for (const Row& row : rows)
    {
        SCOPED_TRACE(row.fault);
        std::string spoilt = fresh;
        row.spoil(spoilt);
        const json shown = Show(spoilt);
        EXPECT_EQ(shown["oem"]["present"], row.isPresent);
        const json& place = shown["oem"]["fault"].is_null() ? shown["settings"] : shown["oem"];
        EXPECT_NE(place["fault"].get<std::string>().find(row.fault), std::string::npos) << place["fault"];
        EXPECT_EQ(shown["features"], json::object());

        for (const std::string setting : {"feature.43=7", row.alsoRefused})
        {
            const RunResult refused = Set(spoilt, {setting});
            EXPECT_EQ(refused.status, 1);
            EXPECT_TRUE(IsOneErrorLine(refused.errors, row.fault));
        }
        const RunResult done = Set(spoilt, {"dmCopies=7"});
        EXPECT_EQ(done.status, 0) << done.errors;
        EXPECT_EQ(done.out.substr(sizeof(DEVMODEW)), spoilt.substr(sizeof(DEVMODEW)));
    }

    // Something else where a collection should be: what it is stays.
    std::string odd = fresh;
    AttributeBytesIndexedList features;
    features.SetAttributeBytes(477, AttributeBytesOptionValue(AttributeBytesValueId(5001), true));
    PutEntry(odd, 1, StateOf(1, AttributeBytesRawList(features)));
    EXPECT_TRUE(IsOneErrorLine(Set(odd, {"feature.175=6800"}).errors,
                               "feature.175: something else is stored where the features of 477 should be"));
    EXPECT_EQ(Show(odd)["papers"], nullptr);
}

// Sound, but not as the driver writes it.
TEST_F(DevmodeFiles, OddContentIsToldAndNothingOfItLost)
{
    const auto with = [](const OemDevmodeBytes::Entries& entries)
    {
        const OemDevmodeBytes::Bytes bytes = OemDevmodeBytes::Make(CoreDriverLayout::Unidrv, entries);
        return std::string(reinterpret_cast<const char*>(bytes.data()), bytes.size());
    };
    const auto papersFault = [&](const AttributeBytesRawList& capabilities)
    {
        const json shown = Show(with({{1, StateOf(2, capabilities)}}));
        EXPECT_EQ(shown["papers"], nullptr);
        EXPECT_EQ(shown["settings"]["fault"], nullptr);
        return shown["settings"]["papersFault"];
    };
    const ByteBuffer noList("\1\0\1\0", 4);
    EXPECT_EQ(papersFault(AttributeBytesRawList()), nullptr);
    for (const AttributeBytesKind kind : {AttributeBytesKind::Binary, AttributeBytesKind::String})
        EXPECT_EQ(papersFault(AttributeBytesRawList(Attribute(30001, {kind, 0, noList}).bytes())),
                  "the paper list contradicts itself");
    EXPECT_EQ(papersFault(AttributeBytesRawList(noList.bytes())), "a capability runs past the end of the capabilities");

    const std::string twice = with({{5, noList}, {5, {}}});
    EXPECT_EQ(Show(twice)["oem"]["entries"][1], json({{"key", 5}, {"length", 0}, {"meaning", "repeated"}}));
    EXPECT_TRUE(IsOneErrorLine(Set(twice, {"app=x"}).errors, "app: the maker's part has more than one entry of key 5"));

    const std::string nothing = with({{1, {}}});
    EXPECT_EQ(Show(nothing)["settings"]["fault"], nullptr);
    EXPECT_EQ(Show(Set(nothing, {"feature.43=7"}).out)["features"], json({{"43", 7}}));

    // A name where the catalogue has one, none where it has not: shown as what no setting makes.
    AttributeBytesIndexedList odd;
    odd.SetAttributeBytes(46, AttributeBytesOptionValue(AttributeBytesNewValueId(5421, W("X")), false));
    odd.SetAttributeBytes(174, AttributeBytesOptionValue(AttributeBytesValueId(9700), false));
    EXPECT_EQ(Show(with({{1, StateOf(1, AttributeBytesRawList(odd))}}))["features"],
              json::parse(R"({"46": {"value": 5421, "name": "X"}, "174": {"value": 9700, "name": ""}})"));

    // Both notes lead somewhere: both places are told.
    std::string foreign = with({});
    Put<DWORD>(foreign, OemDevmodeBytes::kPartOffset + Format::kSignatureOffset, 7);
    Put<WORD>(foreign, sizeof(DEVMODEW) + Format::kPostScriptSizeOffset, 150);
    EXPECT_EQ(
        Show(foreign)["oem"]["fault"],
        "as postscript: wrong signature 0x0 at offset 150 of the drivers' bytes, not 0x54564E31; as unidrv: wrong "
        "signature 0x7 at offset 200 of the drivers' bytes, not 0x54564E31");
}

TEST(DevmodeFieldTable, RowsFollowOneAnotherInTheStructure)
{
    std::size_t end = 0;
    for (const DevmodeField& field : DevmodeFields())
    {
        EXPECT_GE(field.offset, end) << field.name;
        end = field.offset + DevmodeFieldWidth(field);
        EXPECT_EQ(FindDevmodeField(field.name), &field);
    }
    EXPECT_EQ(end, sizeof(DEVMODEW));
}

} // namespace
