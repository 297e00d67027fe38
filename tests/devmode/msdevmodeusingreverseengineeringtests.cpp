// The core drivers' settings by the layouts of their private parts: which driver has which, where each lies, and
// private parts of every size.
#include "complugins/msdevmodeusingreverseengineering.h"

#include <string>

#include <gtest/gtest.h>

#include <tvutil/bytereader.h>
#include <tvutil/bytewriter.h>

#include "complugins/oemdevmode.h"
#include "msdevmodesamples.h"

namespace
{

using namespace MsDevmodeSamples;
using Access = MsDevmodeUsingReverseEngineering;
using Bytes = std::vector<std::byte>;

constexpr std::size_t kPublicSize = sizeof(DEVMODEW);

TEST(CoreDriverFeatures, AreThoseOfTheDriversKindAndPlatform)
{
    struct Case
    {
        const char* what;
        MsDriverKind driver;
        std::vector<std::uint32_t> features;
        const char* orientation; // the keyword
    };
    const Case cases[] = {
        {"PostScript",
         {0x200, 0x800, 0x2},
         {23, 10, 19, 20, 21, 3, 24, 27, 25, 26, 29, 11, 8, 5, 6, 4, 9, 15, 16, 12, 13, 14, 7, 17},
         "%Orientation"},
        {"PostScript, the other platform",
         {0x200, 0x1000, 0x4},
         {23, 10, 19, 20, 21, 3, 24, 27, 28, 25, 26, 29, 11, 8, 5, 6, 4, 9, 12, 13, 14, 7, 17},
         "PageOrientation"},
        {"PostScript, both platforms",
         {0x200, 0x1800, 0x2},
         {23, 10, 19, 20, 21, 3, 24, 27, 25, 26, 29, 11, 8, 5, 6, 4, 12, 13, 14, 7, 17},
         "%Orientation"},
        {"of two kinds",
         {0x600, 0x800, 0x2},
         {23, 10, 19, 20, 21, 3, 3, 24, 27, 25, 26, 29, 11, 8, 5, 6, 4, 9, 15, 16, 12, 13, 14, 7, 17},
         "%Orientation"},
        {"Unidrv",
         {0x80, 0x800, 0x8},
         {23, 10, 19, 20, 21, 3, 30, 11, 8, 5, 6, 4, 9, 15, 16, 12, 13, 14, 7, 17, 31, 32, 35, 33, 34},
         "Orientation"},
        {"the other Unidrv",
         {0x40, 0x1000, 0},
         {23, 10, 19, 20, 21, 3, 30, 11, 8, 5, 6, 4, 9, 12, 13, 14, 7, 17, 32, 35, 33},
         "Orientation"},
        {"the third kind", {0x400, 0x800, 0x8}, {10, 3, 8, 5, 6, 9, 15, 16, 12, 13, 14, 7, 17}, "Orientation"},
        {"the third kind by pages", {0x400, 0x1000, 0x4}, {10, 3, 8, 5, 6, 9, 12, 13, 14, 7, 17}, "PageOrientation"},
        {"no kind", {0, 0x800, 0x2}, {}, nullptr},
    };
    for (const Case& test : cases)
    {
        SCOPED_TRACE(test.what);
        const TestDevmode devmode;
        const Access access(test.driver, devmode.Get());
        std::vector<std::uint32_t> features;
        for (const MsDevmodeBase::Feature& feature : access.GetFeatures())
            features.push_back(feature.feature);
        EXPECT_EQ(features, test.features);
        const MsDevmodeBase::Feature* const orientation = access.FindFeature(3);
        ASSERT_EQ(orientation != nullptr, test.orientation != nullptr);
        EXPECT_STREQ(orientation != nullptr ? orientation->keyword : nullptr, test.orientation);
    }
}

// Which table the resolution has, by the first of its values that only one has, and none.
TEST(CoreDriverFeatures, HaveTheResolutionTableOfTheDriver)
{
    const struct
    {
        MsDriverKind driver;
        const char* keyword;
    } cases[] = {
        {{0x200, 0, 0x8}, "600x600dpi"}, {{0x80, 0, 0x4}, "Res600x600"},  {{0x40, 0, 0x4}, "Res600x600"},
        {{0x400, 0, 0xC}, "Res600x600"}, {{0x400, 0, 0x4}, "600x600dpi"}, {{0x400, 0, 0x3}, nullptr},
    };
    for (const auto& test : cases)
    {
        SCOPED_TRACE(NameOf(test.driver));
        const TestDevmode devmode;
        const Access access(test.driver, devmode.Get());
        const auto ask = [&access]
        {
            return access.GetIPrintCoreHelperValueFromFeatureValue_Helper(8, (600 << 16) + 600);
        };
        if (test.keyword == nullptr)
        {
            EXPECT_EQ(ThrownBy(ask), "ExceptionMicrosoftFeatureNotFound MsDevmodeBase::GetDmValueTable_Helper 469");
            continue;
        }
        EXPECT_STREQ(ask(), test.keyword);
    }
}

struct Place
{
    MsDriverKind driver;
    std::uint32_t feature;
    std::uint32_t value;
    std::size_t offset; // into the private part
    std::uint16_t mask; // of the bits there that are the setting's
    std::uint16_t bits; // what they become
};

// Over zeros and over ones: the value lies where it must, it is read from there, and nothing else has changed.
TEST(PrivateSettings, LieWhereTheLayoutHasThemAndChangeNothingElse)
{
    constexpr MsDriverKind kPs = {0x200, 0x1000, 0x2};
    constexpr MsDriverKind kUni80A = {0x80, 0x800, 0x8};
    constexpr MsDriverKind kUni80B = {0x80, 0x1000, 0x8};
    constexpr MsDriverKind kUni40A = {0x40, 0x800, 0x8};
    constexpr MsDriverKind kUni40B = {0x40, 0x1800, 0x8}; // of both platforms: of neither
    constexpr std::uint16_t kAll = 0xFFFF;
    constexpr Place kPlaces[] = {
        // clang-format off
        {kPs,     19, 5, 136, kAll, 5},      {kUni80A, 19, 5, 24, kAll, 5},
        {kPs,     20, 1, 136, kAll, 6},      {kUni80A, 20, 1, 24, kAll, 6},
        {kPs,     21, 1, 132, kAll, 1},      {kUni80A, 21, 1, 20, kAll, 1},
        {kPs,     23, 1, 5,   0x20, 0x20},   {kPs,     23, 0, 5,  0x20, 0},
        {kUni80A, 23, 1, 16,  0x10, 0},      {kUni80A, 23, 0, 16, 0x10, 0x10},
        {kPs,     24, 3, 124, kAll, 3},      {kPs,     25, 2, 140, kAll, 2},
        {kPs,     26, 1, 4,   0x2,  0x2},    {kPs,     26, 0, 4,  0x2,  0},
        {kPs,     27, 1, 4,   0x4,  0x4},    {kPs,     28, 1, 4,  0x10, 0x10},
        {kPs,     29, 3, 128, kAll, 3},
        {kUni80A, 30, 1, 16,  0x2,  0},      {kUni80A, 30, 0, 16, 0x2,  0x2},
        {kUni80A, 31, 1, 52,  kAll, 1},      {kUni80B, 31, 1, 52, kAll, 1},
        {kUni80A, 32, 2, 54,  kAll, 2},      {kUni40A, 32, 2, 52, kAll, 2},
        {kUni80A, 35, 1, 56,  kAll, 1},      {kUni40B, 35, 1, 54, kAll, 1},
        {kUni80A, 34, 1, 58,  kAll, 1},      {kUni40A, 34, 1, 56, kAll, 1},
        {kUni80B, 33, 2, 58,  kAll, 2},      {kUni40B, 33, 2, 56, kAll, 2},
        {kPs,     3,  3, 5,   0x2,  0x2},    {kPs,     3,  2, 5,  0x2,  0},
        {kPs,     21, 0x12345, 132, kAll, 0x2345}, // the low half
        // clang-format on
    };
    for (const Place& place : kPlaces)
        for (const std::uint8_t fill : {std::uint8_t{0x00}, std::uint8_t{0xFF}})
        {
            SCOPED_TRACE(NameOf(place.driver) + ", feature " + std::to_string(place.feature) + " = " +
                         std::to_string(place.value) + " over " + std::to_string(fill));
            const TestDevmode devmode = MakeDevmode(708, fill);
            Access access(place.driver, devmode.Get());
            Bytes expected = devmode.Bytes();
            const std::span<std::byte> word = std::span(expected).subspan(kPublicSize + place.offset);
            const unsigned kept = ByteReader(word).U16() & ~unsigned{place.mask};
            ByteWriter(word).U16(static_cast<std::uint16_t>(kept | place.bits));
            access.SetMsFeatureValue(place.feature, place.value, MsDevmodeBase::Raw);
            EXPECT_EQ(access.GetMsFeatureValue(place.feature, MsDevmodeBase::Raw), place.value & 0xFFFF);
            const Bytes after = devmode.Bytes();
            EXPECT_TRUE(std::equal(after.begin() + kPublicSize, after.end(), expected.begin() + kPublicSize));
        }
}

TEST(PrivateSettings, OfTheQualityAreTwoWords)
{
    for (const auto& [value, low, high] :
         {std::tuple{0xFFFFFFFFu, 0xFFFF, 0xFFFF}, {0x1FFFFu, 0xFFFF, 0xFFFF}, {0x10002u, 2, 0}, {1u, 1, 0}})
    {
        const TestDevmode devmode = MakeDevmode(560, 0xAA);
        Access access({0x80, 0x800, 0}, devmode.Get());
        access.SetMsFeatureValue(22, value, MsDevmodeBase::Raw);
        EXPECT_EQ(access.GetMsPrivateDmFeatureValue_Helper(28, 0), low) << value;
        EXPECT_EQ(access.GetMsPrivateDmFeatureValue_Helper(30, 0), high) << value;
        EXPECT_EQ(access.GetMsPrivateDmFeatureValue_Helper(26, 0), 0xAAAAu) << value;
        EXPECT_EQ(access.GetMsPrivateDmFeatureValue_Helper(32, 0), 0xAAAAu) << value;
    }
}

// The two share a word, and one page of a sheet is no reason to give up a booklet.
TEST(PrivateSettings, OfSheetAndBookletLeaveEachOtherWhenTheyAreOff)
{
    const struct
    {
        std::uint16_t before;
        std::uint32_t feature;
        std::uint32_t value;
        std::uint16_t after;
        std::uint32_t pages;
        std::uint32_t booklet;
    } cases[] = {
        {6, 19, 0, 6, 0, 1}, {6, 19, 2, 2, 2, 0}, {3, 19, 0, 0, 0, 0}, {3, 20, 0, 3, 3, 0},
        {6, 20, 0, 0, 0, 0}, {3, 20, 1, 6, 0, 1}, {6, 20, 1, 6, 0, 1},
    };
    for (const MsDriverKind& driver : {MsDriverKind{0x200, 0x800, 0x2}, MsDriverKind{0x80, 0x800, 0x8}})
        for (const auto& test : cases)
        {
            SCOPED_TRACE(std::to_string(test.before) + ", feature " + std::to_string(test.feature) + " = " +
                         std::to_string(test.value));
            const TestDevmode devmode = MakeDevmode(708, 0);
            Access access(driver, devmode.Get());
            const std::uint32_t offset = driver.HasPostScriptLayout() ? 136 : 24;
            access.SetMsPrivateDmFeatureValue_Helper(offset, 0, test.before);
            access.SetMsFeatureValue(test.feature, test.value, MsDevmodeBase::Raw);
            EXPECT_EQ(access.GetMsPrivateDmFeatureValue_Helper(offset, 0), test.after);
            EXPECT_EQ(access.GetMsFeatureValue(19, MsDevmodeBase::Raw), test.pages);
            EXPECT_EQ(access.GetMsFeatureValue(20, MsDevmodeBase::Raw), test.booklet);
        }
}

// Every size, alone at the end of its memory and with the maker's part behind it: what lies outside stays.
TEST(PrivateSettings, AreWrittenWithinAPartOfAnySizeOnly)
{
    const struct
    {
        MsDriverKind driver;
        std::size_t noteOffset;
        std::vector<std::pair<std::uint32_t, std::size_t>> places; // feature, the end of what it needs
    } layouts[] = {
        {{0x200, 0x1000, 0x2},
         114,
         {{3, 7},
          {19, 138},
          {20, 138},
          {21, 134},
          {23, 7},
          {24, 126},
          {25, 142},
          {26, 6},
          {27, 6},
          {28, 6},
          {29, 130}}},
        {{0x80, 0x800, 0x8},
         8,
         {{19, 26}, {20, 26}, {21, 22}, {22, 32}, {23, 18}, {30, 18}, {31, 54}, {32, 56}, {34, 60}, {35, 58}}},
    };
    for (const auto& layout : layouts)
        for (std::size_t size = 0; size <= 800; ++size)
            for (const bool hasMakersPart : {false, true})
            {
                if (hasMakersPart && size < layout.noteOffset + 2)
                    continue; // nobody could find it
                SCOPED_TRACE(NameOf(layout.driver) + ", " + std::to_string(size) + " bytes");
                const TestDevmode devmode = MakeDevmode(size, 0, hasMakersPart);
                if (size >= layout.noteOffset + 2)
                    ByteWriter(std::span(reinterpret_cast<std::byte*>(devmode.Get()) + kPublicSize, size)
                                   .subspan(layout.noteOffset))
                        .U16(static_cast<std::uint16_t>(size));
                Access access(layout.driver, devmode.Get());
                access.Initialize();
                const bool isPostScript = layout.noteOffset == 114;
                EXPECT_EQ(access.IsLayoutRecognized(),
                          isPostScript ? size == 708 || size == 724 : size == 560 || size == 564 || size == 572);
                for (const auto& [feature, end] : layout.places)
                {
                    const Bytes before = devmode.Bytes();
                    const std::string thrown =
                        ThrownBy([&, number = feature] { access.SetMsFeatureValue(number, 1, MsDevmodeBase::Raw); });
                    EXPECT_EQ(thrown, end <= size
                                          ? ""
                                          : "ExceptionMicrosoftPrivateDevmodeOffsetOutOfBounds "
                                            "MsDevmodeUsingReverseEngineering::SetMsPrivateDmFeatureValue_Helper 747")
                        << feature;
                    const Bytes after = devmode.Bytes();
                    EXPECT_TRUE(thrown.empty() || before == after) << feature;
                    EXPECT_TRUE(std::equal(before.begin() + static_cast<std::ptrdiff_t>(kPublicSize + size),
                                           before.end(),
                                           after.begin() + static_cast<std::ptrdiff_t>(kPublicSize + size)))
                        << feature;
                    if (end > size && feature != 3 && feature != 22) // upright sheets need no bit, a quality one word
                    {
                        EXPECT_EQ(ThrownBy([&, number = feature]
                                           { (void)access.GetMsFeatureValue(number, MsDevmodeBase::Raw); }),
                                  "ExceptionMicrosoftPrivateDevmodeOffsetOutOfBounds "
                                  "MsDevmodeUsingReverseEngineering::GetMsPrivateDmFeatureValue_Helper 706")
                            << feature;
                    }
                }
            }
}

TEST(PrivateSettings, ThatADriverLacksAreNamed)
{
    constexpr MsDriverKind kPs = {0x200, 0x800, 0x2};
    constexpr MsDriverKind kUni = {0x80, 0x800, 0x8};
    const std::string outside = "ExceptionMicrosoftPrivateDevmodeOffsetOutOfBounds MsDevmodeUsingReverseEngineering::";
    const std::string notFound = "ExceptionMicrosoftFeatureNotFound MsDevmodeUsingReverseEngineering::";
    const struct
    {
        MsDriverKind driver;
        std::vector<std::uint32_t> features;
        std::string get;
        std::string set;
    } cases[] = {
        {kUni,
         {24, 25, 29},
         outside + "GetMsPrivateDmFeatureValue_Helper 706",
         outside + "SetMsPrivateDmFeatureValue_Helper 747"},
        {kUni, {26, 27, 28, 33}, notFound + "GetMsFeatureValue 409", notFound + "SetMsFeatureValue 662"},
        {kPs, {22, 30, 31, 32, 33, 34, 35}, notFound + "GetMsFeatureValue 409", notFound + "SetMsFeatureValue 662"},
        {{0x400, 0x800, 0x8},
         {31, 32, 33, 34, 35},
         notFound + "GetMsFeatureValue 409",
         notFound + "SetMsFeatureValue 662"},
        {kPs,
         {0, 2, 36, 99},
         "ExceptionMicrosoftFeatureNotFound MsDevmodeBase::GetPublicDmFeatureValue_Helper 165",
         "ExceptionMicrosoftFeatureNotFound MsDevmodeBase::SetPublicDmFeatureValue_Helper 305"},
    };
    for (const auto& test : cases)
        for (const std::uint32_t feature : test.features)
        {
            SCOPED_TRACE(NameOf(test.driver) + ", feature " + std::to_string(feature));
            const TestDevmode devmode = MakeDevmode(708, 0);
            const Bytes before = devmode.Bytes();
            Access access(test.driver, devmode.Get());
            EXPECT_EQ(ThrownBy([&] { (void)access.GetMsFeatureValue(feature, MsDevmodeBase::Raw); }), test.get);
            EXPECT_EQ(ThrownBy([&] { access.SetMsFeatureValue(feature, 1, MsDevmodeBase::Raw); }), test.set);
            EXPECT_EQ(devmode.Bytes(), before);
        }
}

TEST(PublicSettings, AreAsWideAsTheirFieldsAndLongerOutside)
{
    const TestDevmode devmode;
    DEVMODEW& fields = *devmode.Get();
    Access access({0x200, 0x800, 0x2}, &fields);
    access.SetMsFeatureValue(8, (600 << 16) + 1200, MsDevmodeBase::Raw);
    EXPECT_EQ(fields.dmPrintQuality, 600);
    EXPECT_EQ(fields.dmYResolution, 1200);
    EXPECT_EQ(access.GetMsFeatureValue(8, MsDevmodeBase::DataModel), 5024u);
    fields.dmPrintQuality = -4; // a name, not dots
    EXPECT_EQ(access.GetMsFeatureValue(8, MsDevmodeBase::Raw), 0xFFFC0000u + 1200);
    fields.dmPaperSize = static_cast<short>(50000);
    EXPECT_EQ(access.GetMsFeatureValue(12, MsDevmodeBase::Raw), 50000u);
    access.SetMsFeatureValue(13, 0x12345, MsDevmodeBase::Raw);
    EXPECT_EQ(fields.dmPaperWidth, 0x2345);
    EXPECT_EQ(fields.dmPaperLength, 0);
    access.SetMsFeatureValue(17, 0x12345, MsDevmodeBase::Raw);
    EXPECT_EQ(fields.dmMediaType, 0x12345u);
    EXPECT_EQ(fields.dmFields, DWORD{DM_PRINTQUALITY | DM_YRESOLUTION | DM_PAPERWIDTH | DM_MEDIATYPE});
    EXPECT_EQ(fields.dmICMIntent, 0u);

    bool isFound = true;
    EXPECT_EQ(access.GetPublicDmFeatureValue_Helper(&fields, 24, MsDevmodeBase::Raw, &isFound), 0u);
    EXPECT_FALSE(isFound);
    EXPECT_EQ(access.GetPublicDmFeatureValue_Helper(&fields, 17, MsDevmodeBase::Raw, &isFound), 0x12345u);
    EXPECT_TRUE(isFound);
}

// A public part that ends before the colour management, at the end of its memory.
TEST(PublicSettings, BeyondThePublicPartAreNotThere)
{
    const TestDevmode devmode(188, 0, 188);
    Access access({0x200, 0x800, 0x2}, devmode.Get());
    EXPECT_EQ(access.GetMsFeatureValue(9, MsDevmodeBase::Raw), 0u);
    EXPECT_EQ(ThrownBy([&] { (void)access.GetMsFeatureValue(15, MsDevmodeBase::Raw); }),
              "ExceptionMicrosoftFeatureNotFound MsDevmodeBase::GetPublicDmFeatureValue_Helper 165");
    EXPECT_EQ(ThrownBy([&] { access.SetMsFeatureValue(16, 1, MsDevmodeBase::Raw); }),
              "ExceptionMicrosoftFeatureNotFound MsDevmodeBase::SetPublicDmFeatureValue_Helper 305");
}

// The third orientation is the second one and a bit, for the PostScript kind; the bit means nothing to an upright
// sheet, and the public field alone tells it to other kinds.
TEST(PublicSettings, OfRotatedLandscapeNeedABitOfThePostScriptKind)
{
    const TestDevmode devmode = MakeDevmode(708, 0);
    Access access({0x200, 0x800, 0x2}, devmode.Get());
    access.SetMsFeatureValue(3, 5012, MsDevmodeBase::DataModel);
    EXPECT_EQ(devmode.Get()->dmOrientation, DMORIENT_LANDSCAPE);
    EXPECT_EQ(access.GetMsPrivateDmFeatureValue_Helper(5, 0x2), 1u);
    EXPECT_EQ(access.GetMsFeatureValue(3, MsDevmodeBase::Raw), 3u);
    EXPECT_EQ(access.GetMsFeatureValue(3, MsDevmodeBase::DataModel), 5012u);
    devmode.Get()->dmOrientation = DMORIENT_PORTRAIT;
    EXPECT_EQ(access.GetMsFeatureValue(3, MsDevmodeBase::DataModel), 5010u);

    Access other({0x400, 0x1000, 0x4}, devmode.Get());
    other.SetMsFeatureValue(3, 3, MsDevmodeBase::Raw);
    EXPECT_EQ(devmode.Get()->dmOrientation, 3);
    EXPECT_EQ(other.GetMsFeatureValue(3, MsDevmodeBase::DataModel), 5012u);
}

TEST(SettingValues, WithoutARowAreNamed)
{
    const std::string notFound = "ExceptionMicrosoftFeatureNotFound MsDevmodeBase::GetDmValueTable_Helper 469";
    const std::string unmapped = "ExceptionMicrosoftDevmodeValueMappingFailed MsDevmodeBase::";
    const TestDevmode devmode = MakeDevmode(708, 0);
    Access access({0x200, 0x800, 0x2}, devmode.Get());
    const Bytes before = devmode.Bytes();
    EXPECT_EQ(ThrownBy([&] { access.SetMsFeatureValue(10, 5423, MsDevmodeBase::DataModel); }),
              unmapped + "GetMsDmValueFromValueEnum_Helper 815");
    EXPECT_EQ(ThrownBy([&] { access.SetMsFeatureValue(5, 3, MsDevmodeBase::DataModel); }), notFound);
    EXPECT_EQ(ThrownBy([&] { (void)access.GetMsFeatureValue(5, MsDevmodeBase::DataModel); }), notFound);
    EXPECT_EQ(ThrownBy([&] { (void)access.GetDmValueTable_Helper(31); }), notFound); // another driver's
    EXPECT_EQ(
        ThrownBy(
            [&]
            { (void)access.GetFeatureValueFromIPrintCoreHelperValue_Helper(10, "HORIZONTAL", MsDevmodeBase::Raw); }),
        unmapped + "GetFeatureValueFromIPrintCoreHelperValue_Helper 543");
    EXPECT_EQ(
        ThrownBy([&]
                 { (void)access.GetFeatureValueFromIPrintCoreHelperValue_Helper(10, nullptr, MsDevmodeBase::Raw); }),
        "ExceptionInvalidArgumentNullPointer MsDevmodeBase::GetFeatureValueFromIPrintCoreHelperValue_Helper 513");
    EXPECT_EQ(ThrownBy([&] { (void)access.GetIPrintCoreHelperValueFromFeatureValue_Helper(10, 4); }),
              unmapped + "GetIPrintCoreHelperValueFromFeatureValue_Helper 583");
    EXPECT_EQ(ThrownBy([&] { (void)access.GetIPrintCoreHelperValueFromFeatureValue_Helper(6, 1); }), // without keywords
              unmapped + "GetIPrintCoreHelperValueFromFeatureValue_Helper 583");
    EXPECT_THROW((void)access.GetMsFeatureValue(10, MsDevmodeBase::DataModel),
                 ExceptionMicrosoftDevmodeValueMappingFailed);
    EXPECT_EQ(devmode.Bytes(), before);
    EXPECT_THROW(Access({}, nullptr), ExceptionInvalidArgumentNullPointer);

    // Colour printing is only understood together with the colour.
    Access unidrv({0x80, 0x800, 0x8}, devmode.Get());
    EXPECT_THROW(unidrv.SetMsFeatureValue(34, 7, MsDevmodeBase::Raw), ExceptionMicrosoftDevmodeValueMappingFailed);
    EXPECT_EQ(devmode.Bytes(), before);
    unidrv.SetMsFeatureValue(34, 5970, MsDevmodeBase::DataModel);
    EXPECT_EQ(devmode.Get()->dmColor, DMCOLOR_COLOR);
    unidrv.SetMsFeatureValue(34, 0, MsDevmodeBase::Raw);
    EXPECT_EQ(devmode.Get()->dmColor, DMCOLOR_MONOCHROME);
}

} // namespace
