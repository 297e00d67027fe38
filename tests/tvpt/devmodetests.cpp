// Devmodes as files: fields by name, the parts behind the public one, and bytes that are no devmode.
#include <cstring>
#include <nlohmann/json.hpp>

#include "complugins/oemdevmode.h"
#include "devmode.h"
#include "devmodefields.h"
#include "failure.h"
#include "hostrun.h"
#include "oempart.h"

#include <tvutil/crc32.h>

namespace
{

namespace Format = OemDevmodeFormat;
using nlohmann::json;

class DevmodeFiles : public HostTest
{
protected:
    std::string NewDevmode(const std::string& model = "tavlen-c9070-ps")
    {
        const RunResult result =
            RunHost({"devmode", "new", "--printer", InstallTestPrinter(model), "-o", File("new.dm")});
        EXPECT_EQ(result.status, 0) << result.errors;
        return ReadBytes(Folder() / "new.dm");
    }

    json Show(const std::string& bytes)
    {
        const RunResult result = RunHost({"devmode", "show", "-", "--json"}, bytes);
        EXPECT_EQ(result.status, 0) << result.errors;
        return json::parse(result.out);
    }
};

TEST_F(DevmodeFiles, ANewDevmodeHasTheLayoutOfThePrintersDriver)
{
    struct Row
    {
        const char* model;
        const char* kind;
        unsigned coreSize;
        int color;
    };
    constexpr Row kRows[] = {
        {"tavlen-c9070-ps", "postscript", 708, DMCOLOR_COLOR},
        {"tavlen-b4400-uni", "unidrv", 564, DMCOLOR_MONOCHROME},
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
        EXPECT_EQ(shown["public"]["dmPaperSize"], 9);
        EXPECT_EQ(shown["oem"]["offset"], sizeof(DEVMODEW) + row.coreSize);
        EXPECT_EQ(shown["oem"]["crcValid"], true);
        EXPECT_EQ(shown["oem"]["usedBytes"], Format::kEntriesOffset);
    }
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
        {"dmFormName=\xFF", 1, "dmFormName: not a text in UTF-8"},
        {"dmSize=1", 1, "dmSize: is given by the devmode itself"},
        {"dmcopies=1", 1, "dmcopies: no field has this name"},
        {"feature.5=1", 1, "feature.5: not available yet"},
        {"ms.3=1", 1, "ms.3: not available yet"},
        {"app=excel.exe", 1, "app: not available yet"},
        {"dmCopies", 2, "\"dmCopies\" is not KEY=VALUE"},
        {"=1", 2, "\"=1\" is not KEY=VALUE"},
    };
    for (const Row& row : kRows)
    {
        SCOPED_TRACE(row.setting);
        // A sound setting before the bad one must not reach the file either.
        const RunResult result = RunHost(
            {"devmode", "set", File("new.dm"), "--set", "dmCopies=7", "--set", row.setting, "-o", File("new.dm")});
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

// Parts as `devmode show` finds and judges them, from a driver area of our own making.
class OemParts : public testing::Test
{
protected:
    static constexpr std::size_t kCoreSize = 708;

    OemParts() : m_area(kCoreSize + Format::kSize)
    {
        Put<std::uint16_t>(Format::kPostScriptSizeOffset, kCoreSize);
        Put<std::uint32_t>(kCoreSize + Format::kSizeOffset, Format::kSize);
        Put<std::uint32_t>(kCoreSize + Format::kSignatureOffset, Format::kSignature);
    }

    template <class Value>
    void Put(std::size_t offset, std::size_t value)
    {
        const auto narrow = static_cast<Value>(value);
        ASSERT_LE(offset + sizeof narrow, m_area.size());
        std::memcpy(m_area.data() + offset, &narrow, sizeof narrow);
    }

    void PutEntry(std::size_t& offset, std::uint16_t key, std::uint16_t length)
    {
        Put<std::uint16_t>(kCoreSize + offset, key);
        Put<std::uint16_t>(kCoreSize + offset + 2, length);
        offset += Format::kEntryHeaderSize + length;
    }

    void PutCrc()
    {
        Put<std::uint32_t>(kCoreSize + Format::kCrcOffset,
                           Crc32::GetCrc(m_area.data() + kCoreSize + Format::kCountOffset, Format::kCheckedSize));
    }

    std::vector<std::byte> m_area;
};

TEST_F(OemParts, EntriesAreReadInOrderAndTheCrcIsChecked)
{
    std::size_t offset = Format::kEntriesOffset;
    Put<std::uint16_t>(kCoreSize + Format::kCountOffset, 2);
    PutEntry(offset, 1, 100);
    PutEntry(offset, 2, 0);
    PutCrc();
    const auto parts = LocateDriverParts(m_area);
    ASSERT_TRUE(parts);
    OemContent content = ReadOemPart(parts->oem);
    EXPECT_TRUE(content.crcValid);
    ASSERT_TRUE(content.entries);
    ASSERT_EQ(content.entries->size(), 2u);
    EXPECT_EQ(content.entries->at(0).data.size(), 100u);
    EXPECT_EQ(content.entries->at(1).key, 2);
    EXPECT_EQ(content.usedBytes, Format::kEntriesOffset + 2 * Format::kEntryHeaderSize + 100);

    Put<std::uint8_t>(m_area.size() - 1, 1);
    EXPECT_FALSE(ReadOemPart(parts->oem).crcValid);
}

TEST_F(OemParts, EntriesThatRunPastThePartAreNotBelieved)
{
    std::size_t offset = Format::kEntriesOffset;
    PutEntry(offset, 1, 5000);
    struct Row
    {
        const char* name;
        std::uint16_t count;
        std::uint16_t lastLength;
        bool sound;
    };
    constexpr std::uint16_t kRest = Format::kSize - Format::kEntriesOffset - 5000 - 2 * Format::kEntryHeaderSize;
    constexpr Row kRows[] = {
        {"fills the part exactly", 2, kRest, true},
        {"one byte too long", 2, kRest + 1, false},
        {"as long as can be", 2, 65535, false},
        {"more entries than fit", 65535, kRest, false},
    };
    for (const Row& row : kRows)
    {
        SCOPED_TRACE(row.name);
        Put<std::uint16_t>(kCoreSize + Format::kCountOffset, row.count);
        Put<std::uint16_t>(kCoreSize + offset + 2, row.lastLength);
        EXPECT_EQ(ReadOemPart(LocateDriverParts(m_area)->oem).entries.has_value(), row.sound);
    }
}

TEST_F(OemParts, OnlyAWholePartWithSizeAndSignatureIsFound)
{
    ASSERT_TRUE(LocateDriverParts(m_area));
    struct Row
    {
        const char* name;
        std::size_t offset;
        std::uint32_t value;
    };
    constexpr Row kRows[] = {
        {"other signature", kCoreSize + Format::kSignatureOffset, 0},
        {"size one less", kCoreSize + Format::kSizeOffset, Format::kSize - 1},
        {"core size points beyond the area", Format::kPostScriptSizeOffset, 0xFFFF},
        {"core size points to the last byte", Format::kPostScriptSizeOffset, kCoreSize + Format::kSize - 1},
    };
    for (const Row& row : kRows)
    {
        SCOPED_TRACE(row.name);
        const auto kept = m_area;
        Put<std::uint16_t>(row.offset, row.value & 0xFFFF);
        EXPECT_FALSE(LocateDriverParts(m_area));
        m_area = kept;
    }
    for (const std::size_t size : {std::size_t{0}, std::size_t{1}, std::size_t{115}, m_area.size() - 1})
        EXPECT_FALSE(LocateDriverParts(std::span(m_area).first(size))) << size;

    // A PostScript size that leads nowhere: the Unidrv place is asked.
    Put<std::uint16_t>(Format::kPostScriptSizeOffset, 700);
    Put<std::uint16_t>(Format::kUnidrvSizeOffset, kCoreSize);
    const auto parts = LocateDriverParts(m_area);
    ASSERT_TRUE(parts);
    EXPECT_EQ(parts->layout, CoreDriverLayout::Unidrv);
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
