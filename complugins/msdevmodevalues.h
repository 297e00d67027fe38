// The values of the core drivers' settings: as a devmode has them, as the data model has them, as the driver's data
// file names them.
//
// Constant data. Each table ends at an all-zero row. Which table a driver's feature has is in kSelections: the first
// row that fits.
#pragma once

#include <cstddef>
#include <cstdint>
#include <iterator>
#include <span>

#include "complugins/msdriverkind.h"

struct MsDevmodeValueRow
{
    std::uint32_t devmodeValue;
    std::int32_t valueId;    // DataModelIds::Value; 0: the end of the table
    const char* displayName; // ASCII
    const char* keyword;     // of IPrintCoreHelper's option; null: it has none
    std::uint32_t optionIndex;
};

// A row says for whom a table is: for a driver with one of the kinds, with one of the flags, or, without either, for
// every driver.
struct MsDevmodeValueSelection
{
    std::uint32_t feature;
    std::uint32_t kinds;
    std::uint32_t coreFlags;
    std::span<const MsDevmodeValueRow> table; // its end row is left out

    [[nodiscard]] constexpr bool Fits(const MsDriverKind& driver) const noexcept
    {
        return (kinds == 0 && coreFlags == 0) || (kinds & driver.kind) != 0 || (coreFlags & driver.coreFlags) != 0;
    }
};

namespace MsDevmodeValues
{

// Dots per inch, x before y, as one value.
constexpr std::uint32_t Resolution(std::uint32_t x, std::uint32_t y) noexcept
{
    return (x << 16) + y;
}

// clang-format off
inline constexpr MsDevmodeValueRow kPagesPerSheet[] = {
    //  devmode  data model  display name             keyword    index
    {   0,       7240,       "1-Up",                  "1",       0 },
    {   1,       7241,       "2-Up",                  "2",       1 },
    {   2,       7242,       "4-Up",                  "4",       2 },
    {   3,       7243,       "6-Up",                  "6",       3 },
    {   4,       7244,       "9-Up",                  "9",       4 },
    {   5,       7245,       "16-Up",                 "16",      5 },
    {   0,       7240,       "1-Up (But Booklet)",    "Booklet", 6 },
    {},
};
inline constexpr MsDevmodeValueRow kBooklet[] = {
    {   0,       5110,       "Booklet Off",             "1",       0 },
    {   0,       5110,       "Booklet Off (But 2-Up)",  "2",       1 },
    {   0,       5110,       "Booklet Off (But 4-Up)",  "4",       2 },
    {   0,       5110,       "Booklet Off (But 6-Up)",  "6",       3 },
    {   0,       5110,       "Booklet Off (But 9-Up)",  "9",       4 },
    {   0,       5110,       "Booklet Off (But 16-Up)", "16",      5 },
    {   1,       5111,       "Booklet On",              "Booklet", 6 },
    {},
};
inline constexpr MsDevmodeValueRow kPageOrder[] = {
    {   0,       5120,       "Normal",                "FrontToBack", 0 },
    {   1,       5121,       "Reverse",               "BackToFront", 1 },
    {},
};
inline constexpr MsDevmodeValueRow kAdvancedPrinting[] = {
    {   1,       5151,       "On",                    "True",    0 },
    {   0,       5150,       "Off",                   "False",   1 },
    {},
};
inline constexpr MsDevmodeValueRow kOrientationPostScript[] = {
    {   1,       5010,       "Portrait",              "Portrait",         0 },
    {   2,       5011,       "Landscape",             "Landscape",        1 },
    {   3,       5012,       "Rotated Landscape",     "RotatedLandscape", 2 },
    {},
};
inline constexpr MsDevmodeValueRow kOrientationUnidrv[] = {
    {   1,       5010,       "Portrait",              "PORTRAIT",       0 },
    {   2,       5011,       "Landscape CC90",        "LANDSCAPE_CC90", 1 },
    {},
};
inline constexpr MsDevmodeValueRow kDuplexPostScript[] = {
    {   1,       5420,       "Simplex",               "None",           0 },
    {   2,       5421,       "Duplex Flip Long",      "DuplexNoTumble", 1 },
    {   3,       5422,       "Duplex Flip Short",     "DuplexTumble",   2 },
    {},
};
inline constexpr MsDevmodeValueRow kDuplexUnidrv[] = {
    {   1,       5420,       "Simplex",               "NONE",       0 },
    {   3,       5422,       "Duplex Flip Short",     "HORIZONTAL", 1 },
    {   2,       5421,       "Duplex Flip Long",      "VERTICAL",   2 },
    {},
};
inline constexpr MsDevmodeValueRow kOutputFormat[] = {
    {   0,       5160,       "Speed",                 "Speed",       0 },
    {   1,       5161,       "Portability",           "Portability", 1 },
    {   2,       5162,       "EPS",                   "EPS",         2 },
    {   3,       5163,       "Archive",               "Archive",     3 },
    {},
};
inline constexpr MsDevmodeValueRow kMirrored[] = {
    {   0,       5190,       "Off",                   "False",   1 },
    {   1,       5191,       "On",                    "True",    0 },
    {},
};
inline constexpr MsDevmodeValueRow kNegative[] = {
    {   0,       5200,       "Off",                   "False",   1 },
    {   1,       5201,       "On",                    "True",    0 },
    {},
};
inline constexpr MsDevmodeValueRow kLanguageLevel[] = {
    {   3,       5172,       "Level 3",               "3",       3 },
    {   2,       5171,       "Level 2",               "2",       2 },
    {   1,       5170,       "Level 1",               "1",       1 },
    {},
};
inline constexpr MsDevmodeValueRow kErrorHandler[] = {
    {   1,       5181,       "On",                    "True",    0 },
    {   0,       5180,       "Off",                   "False",   1 },
    {},
};
inline constexpr MsDevmodeValueRow kTrueTypeDownloadPostScript[] = {
    {   0,       5210,       "Automatic",             "Automatic",      0 },
    {   1,       5211,       "Outline",               "Outline",        1 },
    {   2,       5212,       "Bitmap",                "Bitmap",         2 },
    {   3,       5213,       "Native TrueType",       "NativeTrueType", 3 },
    {},
};
// The keywords are turned round, on purpose: "%TextAsGraphics" names the opposite.
inline constexpr MsDevmodeValueRow kPrintOptimization[] = {
    {   1,       5221,       "On",                    "False",   0 },
    {   0,       5220,       "Off",                   "True",    1 },
    {},
};
inline constexpr MsDevmodeValueRow kTrueTypeOption[] = {
    {   3,       5053,       "Substitute Device Font", nullptr,  0 },
    {   2,       5051,       "Download Soft Font",     nullptr,  1 },
    {},
};
inline constexpr MsDevmodeValueRow kResolutionPostScript[] = {
    {   Resolution(600, 600),   5023, "600x600dpi",   "600x600dpi",   3 },
    {   Resolution(200, 200),   5020, "200x200dpi",   "200x200dpi",   0 },
    {   Resolution(300, 300),   5021, "300x300dpi",   "300x300dpi",   1 },
    {   Resolution(400, 400),   5022, "400x400dpi",   "400x400dpi",   2 },
    {   Resolution(600, 1200),  5024, "600x1200dpi",  "600x1200dpi",  4 },
    {   Resolution(1200, 600),  5025, "1200x600dpi",  "1200x600dpi",  5 },
    {   Resolution(1200, 1200), 5026, "1200x1200dpi", "1200x1200dpi", 6 },
    {   Resolution(1800, 1800), 5027, "1800x1800dpi", "1800x1800dpi", 7 },
    {   Resolution(2400, 2400), 5028, "2400x2400dpi", "2400x2400dpi", 8 },
    {},
};
inline constexpr MsDevmodeValueRow kResolutionUnidrv[] = {
    {   Resolution(600, 600),   5023, "600x600dpi",   "Res600x600",   3 },
    {   Resolution(200, 200),   5020, "200x200dpi",   "Res200x200",   0 },
    {   Resolution(300, 300),   5021, "300x300dpi",   "Res300x300",   1 },
    {   Resolution(400, 400),   5022, "400x400dpi",   "Res400x400",   2 },
    {   Resolution(1200, 1200), 5026, "1200x1200dpi", "Res1200x1200", 4 },
    {   Resolution(2400, 2400), 5028, "2400x2400dpi", "Res2400x2400", 5 },
    {},
};
inline constexpr MsDevmodeValueRow kCollation[] = {
    {   1,       5410,       "Collated",              nullptr,   0 },
    {   0,       5411,       "Uncollated",            nullptr,   0 },
    {},
};
inline constexpr MsDevmodeValueRow kColorMode[] = {
    {   2,       5970,       "Color",                 nullptr,   1 },
    {   1,       5971,       "Monochrome",            nullptr,   0 },
    {},
};
inline constexpr MsDevmodeValueRow kIcmMethod[] = {
    {   4,       5073,       "ICM by Device",         nullptr,   3 },
    {   1,       5070,       "ICM Disabled",          nullptr,   0 },
    {   2,       5071,       "ICM by Host System",    nullptr,   1 },
    {   3,       5072,       "ICM by Print Driver",   nullptr,   2 },
    {},
};
// The first name is known by its spelling.
inline constexpr MsDevmodeValueRow kIcmIntent[] = {
    {   2,       5092,       "Constrast (Pictures)",     nullptr, 1 },
    {   1,       5093,       "Saturate (Graphics)",      nullptr, 0 },
    {   4,       5090,       "Abs Colorimetric (Proof)", nullptr, 2 },
    {   3,       5091,       "Colorimetric (Match)",     nullptr, 3 },
    {},
};
inline constexpr MsDevmodeValueRow kQualityMacro[] = {
    {   1,          5131,    "Normal",                nullptr,   0 },
    {   2,          5132,    "Draft",                 nullptr,   0 },
    {   0,          5130,    "Best",                  nullptr,   0 },
    {   0xFFFFFFFF, 5133,    "Custom",                nullptr,   0 },
    {},
};
inline constexpr MsDevmodeValueRow kGraphicsMode[] = {
    {   0,       5231,       "Vector",                "HPGL2MODE",  0 },
    {   1,       5230,       "Raster",                "RASTERMODE", 1 },
    {},
};
inline constexpr MsDevmodeValueRow kTrueTypeDownloadUnidrv[] = {
    {   0,       5250,       "TrueType",               "TTF_DOWNLOAD_AS_TRUETYPE", 0 },
    {   1,       5251,       "Bitmap",                 "TTF_DOWNLOAD_AS_BITMAP",   1 },
    {   2,       5252,       "None-Print As Graphics", "TTF_DOWNLOAD_NONE",        2 },
    {},
};
inline constexpr MsDevmodeValueRow kHalftone[] = {
    {   0,       5240,       "Greyscale HT Normal",        "TVL_NORMAL_HT",        0 },
    {   1,       5241,       "Greyscale HT Hi-Contrast",   "TVL_HIGH_CONTRAST_HT", 1 },
    {   2,       5242,       "Greyscale HT Hi-Brightness", "TVL_HIGH_BRIGHT_HT",   2 },
    {},
};
inline constexpr MsDevmodeValueRow kColorPrintingMode[] = {
    {   1,       5970,       "Color",                 "24bpp",   1 },
    {   0,       5971,       "Monochrome",            "Mono",    0 },
    {},
};
inline constexpr MsDevmodeValueRow kEdgeToEdge[] = {
    {   0,       5260,       "Edge To Edge Off",      "EDGE_TO_EDGE_OFF", 0 },
    {   1,       5261,       "Edge To Edge On",       "EDGE_TO_EDGE_ON",  1 },
    {},
};
// clang-format on

template <std::size_t Size>
constexpr std::span<const MsDevmodeValueRow> WithoutEnd(const MsDevmodeValueRow (&table)[Size]) noexcept
{
    return {table, Size - 1};
}

// clang-format off
inline constexpr MsDevmodeValueSelection kSelections[] = {
    //  feature  kinds                       core flags                       table
    {   3,       0,                          MsDriverKind::kPostScriptLayout, WithoutEnd(kOrientationPostScript) },
    {   3,       0,                          0,                               WithoutEnd(kOrientationUnidrv) },
    {   6,       0,                          0,                               WithoutEnd(kCollation) },
    {   8,       MsDriverKind::kPostScript,  0,                               WithoutEnd(kResolutionPostScript) },
    {   8,       MsDriverKind::kUnidrvB,     0,                               WithoutEnd(kResolutionUnidrv) },
    {   8,       MsDriverKind::kUnidrvA,     0,                               WithoutEnd(kResolutionUnidrv) },
    {   8,       0,                          MsDriverKind::kResKeywords,      WithoutEnd(kResolutionUnidrv) },
    {   8,       0,                          MsDriverKind::kPageOrientation,  WithoutEnd(kResolutionPostScript) },
    {   9,       0,                          0,                               WithoutEnd(kColorMode) },
    {   10,      0,                          MsDriverKind::kPostScriptLayout, WithoutEnd(kDuplexPostScript) },
    {   10,      0,                          0,                               WithoutEnd(kDuplexUnidrv) },
    {   11,      0,                          0,                               WithoutEnd(kTrueTypeOption) },
    {   15,      0,                          0,                               WithoutEnd(kIcmMethod) },
    {   16,      0,                          0,                               WithoutEnd(kIcmIntent) },
    {   19,      0,                          0,                               WithoutEnd(kPagesPerSheet) },
    {   20,      0,                          0,                               WithoutEnd(kBooklet) },
    {   21,      0,                          0,                               WithoutEnd(kPageOrder) },
    {   22,      0,                          0,                               WithoutEnd(kQualityMacro) },
    {   23,      0,                          0,                               WithoutEnd(kAdvancedPrinting) },
    {   24,      0,                          0,                               WithoutEnd(kOutputFormat) },
    {   25,      0,                          0,                               WithoutEnd(kLanguageLevel) },
    {   26,      0,                          0,                               WithoutEnd(kErrorHandler) },
    {   27,      0,                          0,                               WithoutEnd(kMirrored) },
    {   28,      0,                          0,                               WithoutEnd(kNegative) },
    {   29,      0,                          0,                               WithoutEnd(kTrueTypeDownloadPostScript) },
    {   30,      0,                          0,                               WithoutEnd(kPrintOptimization) },
    {   31,      0,                          0,                               WithoutEnd(kGraphicsMode) },
    {   32,      0,                          0,                               WithoutEnd(kTrueTypeDownloadUnidrv) },
    {   33,      0,                          0,                               WithoutEnd(kHalftone) },
    {   34,      0,                          0,                               WithoutEnd(kColorPrintingMode) },
    {   35,      0,                          0,                               WithoutEnd(kEdgeToEdge) },
};
// clang-format on

// Empty when the feature has none: its values are numbers.
constexpr std::span<const MsDevmodeValueRow> FindTable(std::uint32_t feature, const MsDriverKind& driver) noexcept
{
    for (const MsDevmodeValueSelection& selection : kSelections)
        if (selection.feature == feature && selection.Fits(driver))
            return selection.table;
    return {};
}

// The first row that fits, or null.
template <class Condition>
constexpr const MsDevmodeValueRow* FindRow(std::span<const MsDevmodeValueRow> table, Condition condition)
{
    for (const MsDevmodeValueRow& row : table)
        if (condition(row))
            return &row;
    return nullptr;
}

constexpr const MsDevmodeValueRow* FindDevmodeValue(std::span<const MsDevmodeValueRow> table, std::uint32_t value)
{
    return FindRow(table, [value](const MsDevmodeValueRow& row) { return row.devmodeValue == value; });
}

constexpr const MsDevmodeValueRow* FindValueId(std::span<const MsDevmodeValueRow> table, std::int32_t valueId)
{
    return FindRow(table, [valueId](const MsDevmodeValueRow& row) { return row.valueId == valueId; });
}

} // namespace MsDevmodeValues
