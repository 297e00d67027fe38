// The core drivers' settings by the layouts of their private parts: which driver has which, where each lies, and
// private parts of every size.
#include "complugins/msdevmodeusingreverseengineering.h"

#include <gtest/gtest.h>

#include <tvutil/bytereader.h>

#include "msdevmodesamples.h"

namespace
{

using namespace MsDevmodeSamples;
using Access = MsDevmodeUsingReverseEngineering;
using Bytes = std::vector<std::byte>;

constexpr auto Raw = MsDevmodeBase::Raw;
constexpr auto DataModel = MsDevmodeBase::DataModel;
constexpr MsDriverKind kPostScript = {0x200, 0x800, 0x2};
constexpr MsDriverKind kUnidrv = {0x80, 0x800, 0x8};

const std::string kNoTable = "ExceptionMicrosoftFeatureNotFound MsDevmodeBase::GetDmValueTable_Helper 469";
const std::string kNoField = "ExceptionMicrosoftFeatureNotFound MsDevmodeBase::GetPublicDmFeatureValue_Helper 165";
const std::string kNoFieldToSet = "ExceptionMicrosoftFeatureNotFound MsDevmodeBase::SetPublicDmFeatureValue_Helper 305";
const std::string kOutside = "ExceptionMicrosoftPrivateDevmodeOffsetOutOfBounds MsDevmodeUsingReverseEngineering::";
const std::string kGetOutside = kOutside + "GetMsPrivateDmFeatureValue_Helper 706";
const std::string kSetOutside = kOutside + "SetMsPrivateDmFeatureValue_Helper 747";
const std::string kUnmapped = "ExceptionMicrosoftDevmodeValueMappingFailed MsDevmodeBase::";

std::string GetThrows(Access& access, std::uint32_t feature, MsDevmodeBase::Map map = Raw)
{
    return ThrownBy([&] { (void)access.GetMsFeatureValue(feature, map); });
}

std::string SetThrows(Access& access, std::uint32_t feature, std::uint32_t value, MsDevmodeBase::Map map = Raw)
{
    return ThrownBy([&] { access.SetMsFeatureValue(feature, value, map); });
}

// Over zeros and over ones: the value lies where it must, it is read from there, and nothing else has changed.
TEST(PrivateSettings, LieWhereTheLayoutHasThemAndChangeNothingElse)
{
    constexpr MsDriverKind kPs = {0x200, 0x1000, 0x2};
    constexpr MsDriverKind kUni80B = {0x80, 0x1000, 0x8};
    constexpr MsDriverKind kUni40A = {0x40, 0x800, 0x8};
    constexpr MsDriverKind kUni40B = {0x40, 0x1800, 0x8}; // of both platforms: of neither
    constexpr std::uint32_t kAll = 0xFFFF;
    constexpr std::uint32_t kTwo = 0xFFFFFFFF;
    constexpr struct
    {
        MsDriverKind driver;
        std::uint32_t feature = 0;
        std::uint32_t value = 0;
        std::size_t offset = 0; // into the private part
        std::uint32_t mask = 0; // of the bits there that are the setting's
        std::uint32_t bits = 0; // what they become
    } kPlaces[] = {
        // clang-format off
        {kPs,     19, 5, 136, kAll, 5},      {kUnidrv, 19, 5, 24, kAll, 5},
        {kPs,     20, 1, 136, kAll, 6},      {kUnidrv, 20, 1, 24, kAll, 6},
        {kPs,     21, 1, 132, kAll, 1},      {kUnidrv, 21, 1, 20, kAll, 1},
        {kPs,     23, 1, 5,   0x20, 0x20},   {kPs,     23, 0, 5,  0x20, 0},
        {kUnidrv, 23, 1, 16,  0x10, 0},      {kUnidrv, 23, 0, 16, 0x10, 0x10},
        {kPs,     24, 3, 124, kAll, 3},      {kPs,     25, 2, 140, kAll, 2},
        {kPs,     26, 1, 4,   0x2,  0x2},    {kPs,     26, 0, 4,  0x2,  0},
        {kPs,     27, 1, 4,   0x4,  0x4},    {kPs,     28, 1, 4,  0x10, 0x10},
        {kPs,     29, 3, 128, kAll, 3},
        {kUnidrv, 30, 1, 16,  0x2,  0},      {kUnidrv, 30, 0, 16, 0x2,  0x2},
        {kUnidrv, 31, 1, 52,  kAll, 1},      {kUni80B, 31, 1, 52, kAll, 1},
        {kUnidrv, 32, 2, 54,  kAll, 2},      {kUni40A, 32, 2, 52, kAll, 2},
        {kUnidrv, 35, 1, 56,  kAll, 1},      {kUni40B, 35, 1, 54, kAll, 1},
        {kUnidrv, 34, 1, 58,  kAll, 1},      {kUni40A, 34, 1, 56, kAll, 1},
        {kUni80B, 33, 2, 58,  kAll, 2},      {kUni40B, 33, 2, 56, kAll, 2},
        {kPs,     3,  3, 5,   0x2,  0x2},    {kPs,     3,  2, 5,  0x2,  0},
        {kPs,     21, 0x12345, 132, kAll, 0x2345}, // the low half
        {kUnidrv, 22, 1, 28, kTwo, 1},       {kUnidrv, 22, 0x10002, 28, kTwo, 2},
        {kUnidrv, 22, 0xFFFFFFFF, 28, kTwo, kTwo}, {kUnidrv, 22, 0x1FFFF, 28, kTwo, kTwo},
        // clang-format on
    };
    for (const auto& place : kPlaces)
        for (const std::uint8_t fill : {std::uint8_t{0x00}, std::uint8_t{0xFF}})
        {
            SCOPED_TRACE(NameOf(place.driver) + ", feature " + std::to_string(place.feature) + " = " +
                         std::to_string(place.value) + " over " + std::to_string(fill));
            const TestDevmode devmode = MakeDevmode(708, fill);
            Access access(place.driver, devmode.Get());
            Bytes expected = devmode.Bytes();
            const std::span<std::byte> there = std::span(expected).subspan(sizeof(DEVMODEW) + place.offset);
            const std::uint32_t kept = ByteReader(there).U32() & ~place.mask;
            ByteWriter(there).U32(kept | place.bits);
            access.SetMsFeatureValue(place.feature, place.value, Raw);
            EXPECT_EQ(access.GetMsFeatureValue(place.feature, Raw), place.value & 0xFFFF);
            const Bytes after = devmode.Bytes();
            EXPECT_TRUE(std::equal(after.begin() + sizeof(DEVMODEW), after.end(), expected.begin() + sizeof(DEVMODEW)));
        }
}

// The two share a word, and one page of a sheet is no reason to give up a booklet.
TEST(PrivateSettings, OfSheetAndBookletLeaveEachOtherWhenTheyAreOff)
{
    // clang-format off
    constexpr struct { std::uint32_t before, feature, value, after, pages, booklet; } kCases[] = {
        {6, 19, 0, 6, 0, 1}, {6, 19, 2, 2, 2, 0}, {3, 19, 0, 0, 0, 0}, {3, 20, 0, 3, 3, 0},
        {6, 20, 0, 0, 0, 0}, {3, 20, 1, 6, 0, 1}, {6, 20, 1, 6, 0, 1},
    };
    // clang-format on
    for (const auto& [driver, offset] : {std::pair(kPostScript, 136u), std::pair(kUnidrv, 24u)})
        for (const auto& test : kCases)
        {
            SCOPED_TRACE(std::to_string(test.before) + ", feature " + std::to_string(test.feature));
            const TestDevmode devmode = MakeDevmode(708, 0);
            Access access(driver, devmode.Get());
            access.SetMsPrivateDmFeatureValue_Helper(offset, 0, test.before);
            access.SetMsFeatureValue(test.feature, test.value, Raw);
            EXPECT_EQ(access.GetMsPrivateDmFeatureValue_Helper(offset, 0), test.after);
            EXPECT_EQ(access.GetMsFeatureValue(19, Raw), test.pages);
            EXPECT_EQ(access.GetMsFeatureValue(20, Raw), test.booklet);
        }
}

// Every size, alone at the end of its memory and with the maker's part behind it: what lies outside stays.
TEST(PrivateSettings, AreWrittenWithinAPartOfAnySizeOnly)
{
    const struct
    {
        MsDriverKind driver;
        std::size_t noteOffset;
        std::vector<std::size_t> known;                          // sizes
        std::vector<std::pair<std::uint32_t, std::size_t>> ends; // feature, the end of what it needs
    } layouts[] = {
        // clang-format off
        {kPostScript, 114, {708, 724}, {{3, 7}, {19, 138}, {20, 138}, {21, 134}, {23, 7}, {24, 126}, {25, 142}, {26, 6}, {27, 6}, {28, 6}, {29, 130}}},
        {kUnidrv, 8, {560, 564, 572}, {{19, 26}, {20, 26}, {21, 22}, {22, 32}, {23, 18}, {30, 18}, {31, 54}, {32, 56}, {34, 60}, {35, 58}}},
        // clang-format on
    };
    for (const auto& layout : layouts)
        for (std::size_t at = 0; at <= 2 * 800 + 1; ++at)
        {
            const std::size_t size = at / 2;
            const bool hasNote = size >= layout.noteOffset + 2;
            const bool hasMakersPart = hasNote && at % 2 != 0; // nobody could find it otherwise
            SCOPED_TRACE(NameOf(layout.driver) + ", " + std::to_string(size) + " bytes");
            const TestDevmode devmode = MakeDevmode(size, 0, hasMakersPart);
            const std::span part(reinterpret_cast<std::byte*>(devmode.Get()) + sizeof(DEVMODEW), size);
            if (hasNote)
                ByteWriter(part.subspan(layout.noteOffset)).U16(static_cast<std::uint16_t>(size));
            Access access(layout.driver, devmode.Get());
            access.Initialize();
            EXPECT_EQ(access.IsLayoutRecognized(),
                      std::find(layout.known.begin(), layout.known.end(), size) != layout.known.end());
            for (const auto& [feature, end] : layout.ends)
            {
                const Bytes before = devmode.Bytes();
                EXPECT_EQ(SetThrows(access, feature, 1), end <= size ? "" : kSetOutside) << feature;
                const Bytes after = devmode.Bytes();
                const auto rest = static_cast<std::ptrdiff_t>(end <= size ? sizeof(DEVMODEW) + size : 0);
                EXPECT_TRUE(std::equal(before.begin() + rest, before.end(), after.begin() + rest)) << feature;
                const bool readsLess = feature == 3 || feature == 22; // upright sheets need no bit, a quality one word
                EXPECT_TRUE(readsLess || GetThrows(access, feature) == (end <= size ? "" : kGetOutside)) << feature;
            }
        }
}

TEST(PublicSettings, AreAsWideAsTheirFieldsAndLongerOutside)
{
    const TestDevmode devmode;
    DEVMODEW& fields = *devmode.Get();
    Access access(kPostScript, &fields);
    access.SetMsFeatureValue(8, (600 << 16) + 1200, Raw);
    EXPECT_EQ(fields.dmPrintQuality, 600);
    EXPECT_EQ(fields.dmYResolution, 1200);
    EXPECT_EQ(access.GetMsFeatureValue(8, DataModel), 5024u);
    fields.dmPrintQuality = -4; // a name, not dots
    EXPECT_EQ(access.GetMsFeatureValue(8, Raw), 0xFFFC0000u + 1200);
    fields.dmPaperSize = static_cast<short>(50000);
    EXPECT_EQ(access.GetMsFeatureValue(12, Raw), 50000u);
    access.SetMsFeatureValue(13, 0x12345, Raw);
    EXPECT_EQ(fields.dmPaperWidth, 0x2345);
    EXPECT_EQ(fields.dmPaperLength, 0);
    access.SetMsFeatureValue(17, 0x12345, Raw);
    EXPECT_EQ(fields.dmMediaType, 0x12345u);
    EXPECT_EQ(fields.dmFields, DWORD{DM_PRINTQUALITY | DM_YRESOLUTION | DM_PAPERWIDTH | DM_MEDIATYPE});
    fields.dmOrientation = DMORIENT_PORTRAIT; // the bit that turns landscape, were there one, means nothing to it
    EXPECT_EQ(access.GetMsFeatureValue(3, DataModel), 5010u);

    // A public part that ends before the colour management, at the end of its memory.
    const TestDevmode smaller(188, 0, 188);
    Access short_(kPostScript, smaller.Get());
    EXPECT_EQ(short_.GetMsFeatureValue(9, Raw), 0u);
    EXPECT_EQ(GetThrows(short_, 15), kNoField);
    EXPECT_EQ(SetThrows(short_, 16, 1), kNoFieldToSet);
}

TEST(SettingValues, WithoutARowAreNamed)
{
    const TestDevmode devmode = MakeDevmode(708, 0);
    const Bytes before = devmode.Bytes();
    Access access(kPostScript, devmode.Get());
    EXPECT_EQ(SetThrows(access, 10, 5423, DataModel), kUnmapped + "GetMsDmValueFromValueEnum_Helper 815");
    EXPECT_EQ(SetThrows(access, 5, 3, DataModel), kNoTable);
    EXPECT_EQ(GetThrows(access, 5, DataModel), kNoTable);
    EXPECT_THROW((void)access.GetMsFeatureValue(10, DataModel), ExceptionMicrosoftDevmodeValueMappingFailed);
    EXPECT_EQ(devmode.Bytes(), before);

    // A colour printing mode without a row is no colour.
    Access unidrv(kUnidrv, devmode.Get());
    unidrv.SetMsFeatureValue(34, 7, Raw);
    EXPECT_EQ(unidrv.GetMsFeatureValue(34, Raw), 7u);
    EXPECT_EQ(devmode.Get()->dmFields | static_cast<DWORD>(devmode.Get()->dmColor), 0u);
    for (const std::uint32_t quality : {5130u, 5131u, 5132u, 5133u}) // in no driver's list
    {
        unidrv.SetMsFeatureValue(22, quality, DataModel);
        EXPECT_EQ(unidrv.GetMsFeatureValue(22, DataModel), quality);
    }
}

// Settings of both parts are written to both or to none.
TEST(PrivateSettings, ThatNeedAPublicFieldStayWithoutIt)
{
    const struct
    {
        MsDriverKind driver;
        std::uint32_t feature;
        std::uint32_t value;
        WORD publicSize;
        std::string thrown;
    } cases[] = {
        {kPostScript, 3, 3, 60, kNoFieldToSet}, {kPostScript, 3, 3, 76, kNoFieldToSet}, {kPostScript, 3, 3, 78, ""},
        {kUnidrv, 34, 1, 80, kNoFieldToSet},    {kUnidrv, 34, 1, 92, kNoFieldToSet},    {kUnidrv, 34, 1, 94, ""},
    };
    for (const auto& test : cases)
    {
        SCOPED_TRACE(test.publicSize);
        const TestDevmode devmode(test.publicSize, 708, std::size_t{test.publicSize} + 708);
        Access access(test.driver, devmode.Get());
        const Bytes before = devmode.Bytes();
        EXPECT_EQ(SetThrows(access, test.feature, test.value), test.thrown);
        EXPECT_EQ(devmode.Bytes() == before, !test.thrown.empty());
    }
}

} // namespace
