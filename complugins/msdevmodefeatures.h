// The settings that the core drivers keep for themselves: what they are called and which drivers have them.
//
// Constant data, in an order that counts: of two rows of one feature that apply to a driver, the first is used.
#pragma once

#include <cstddef>
#include <cstdint>
#include <iterator>

// For whoever uses the list: a number, or the name of a macro of the driver's data file. No code here looks at it.
struct MsDevmodeCompanion
{
    constexpr MsDevmodeCompanion() noexcept = default;
    constexpr MsDevmodeCompanion(int value) noexcept : number(static_cast<std::uint32_t>(value))
    {
    }
    constexpr MsDevmodeCompanion(const char* name) noexcept : macro(name)
    {
    }

    std::uint32_t number = 0;
    const char* macro = nullptr;
};

struct MsDevmodeFeatureRow
{
    std::uint32_t mask = 0;        // MsDriverKind::Fits; 0: no driver
    bool isExposed = false;        // false: internal
    std::uint32_t feature = 0;     // DataModelIds::Feature
    const char* name = nullptr;    // ASCII
    bool isPublic = false;         // a field of DEVMODEW
    const char* keyword = nullptr; // by which IPrintCoreHelper knows it; null: it does not
    std::uint32_t valueSet = 0;    // for whoever uses the list
    MsDevmodeCompanion companion;
};

namespace MsDevmodeFeatures
{

// clang-format off
inline constexpr MsDevmodeFeatureRow kRows[] = {
    //  mask    exposed feature  name                                         public keyword             value set, companion
    {   0x2C0,  true,   23, "FEAT_MS_ADV_PRINTING_FEATURES",                  false, "%MetafileSpooling",       0, 419 },
    {   0x7C0,  false,  10, "FEAT_MS_INTERNAL_SIDES_IMAGED",                  true,  "Duplex",                  7, 0 },
    {   0x2C0,  false,  19, "FEAT_MS_INTERNAL_NUP",                           false, "%PagePerSheet",          16, 0 },
    {   0x2C0,  false,  20, "FEAT_MS_INTERNAL_BOOKLET",                       false, "%PagePerSheet",          16, 0 },
    {   0x2C0,  true,   21, "FEAT_MS_PAGE_ORDER",                             false, "%PageOrder",             17, 0 },
    {    0xC0,  true,    3, "FEAT_MS_ORIENTATION",                            true,  "Orientation",             1, 0 },
    {   0x200,  true,    3, "FEAT_MS_ORIENTATION",                            true,  "%Orientation",            1, 0 },
    {   0x400,  true,    3, "FEAT_MS_ORIENTATION",                            true,  "Orientation",             1, 0 },
    {   0x200,  true,   24, "FEAT_MS_PS_OUTPUT_FORMAT",                       false, "%OutputFormat",           0, 454 },
    {   0x200,  true,   27, "FEAT_MS_PS_MIRRORED_IMAGE",                      false, "%Mirroring",              0, 423 },
    {  0x1200,  true,   28, "FEAT_MS_PS_NEGATIVE_IMAGE",                      false, "%Negative",               0, 424 },
    {   0x200,  true,   25, "FEAT_MS_PS_LANGUAGE_LEVEL",                      false, "%OutputPSLevel",          0, 471 },
    {   0x200,  true,   26, "FEAT_MS_PS_SEND_ERROR_HANDLER",                  false, "%PSErrorHandler",         0, 450 },
    {   0x200,  true,   29, "FEAT_MS_PS_TRUE_TYPE_DOWNLOAD_OPTION",           false, "%TTDownloadFormat",       0, 459 },
    {    0xC0,  true,   30, "FEAT_MS_UNI_PRINT_OPTIMIZATION",                 false, "%TextAsGraphics",         0, 431 },
    {   0x2C0,  true,   11, "FEAT_MS_TRUE_TYPE_OPTION",                       true,  nullptr,                   8, 0 },
    {   0x7C0,  true,    8, "FEAT_MS_RESOLUTION",                             true,  "Resolution",              5, 0 },
    {   0x7C0,  true,    5, "FEAT_MS_COPIES",                                 true,  nullptr,                   3, 0 },
    {   0x7C0,  true,    6, "FEAT_MS_COLLATION",                              true,  nullptr,                   3, 0 },
    {   0x200,  true,    4, "FEAT_MS_SCALE",                                  true,  nullptr,                   2, 0 },
    {    0xC0,  true,    4, "FEAT_MS_SCALE",                                  true,  nullptr,                   0, 0 },
    {   0xFC0,  true,    9, "FEAT_MS_COLOR_MODE",                             true,  nullptr,                   6, 0 },
    {  0x17C0,  true,    9, "FEAT_MS_COLOR_MODE",                             true,  nullptr,                   0, 0 },
    {   0xFC0,  true,   15, "FEAT_MS_ICM_METHOD",                             true,  nullptr,                  10, 0 },
    {   0xFC0,  true,   16, "FEAT_MS_ICM_INTENT",                             true,  nullptr,                  11, 0 },
    {   0x7C0,  false,  12, "FEAT_MS_INTERNAL_PAPER_SIZE",                    true,  nullptr,                   0, 0 },
    {   0x7C0,  false,  13, "FEAT_MS_INTERNAL_PAPER_WIDTH",                   true,  nullptr,                   0, 0 },
    {   0x7C0,  false,  14, "FEAT_MS_INTERNAL_PAPER_LENGTH",                  true,  nullptr,                   0, 0 },
    {   0x7C0,  false,   7, "FEAT_MS_INTERNAL_INPUT_TRAY_DEFSOURCE",          true,  nullptr,                   0, 0 },
    {   0x7C0,  false,  17, "FEAT_MS_INTERNAL_MEDIA_TYPE",                    true,  nullptr,                   0, 0 },
    {       0,  false,  18, "FEAT_MS_INTERNAL_DITHER_TYPE",                   true,  nullptr,                   0, 0 },
    {       0,  false,  22, "FEAT_MS_INTERNAL_UNI_QUALITY_MACRO",             false, nullptr,                   0, 0 },
    {    0x80,  true,   31, "FEAT_MS_UNI_GRAPHICS_MODE",                      false, "GraphicsMode",            0, 11114 },
    {    0xC0,  true,   32, "FEAT_MS_UNI_TRUE_TYPE_DOWNLOAD_OPTION",          false, "TvlTrueTypeFontDlOption", 0, "TVL_GPD_TT_DOWNLOAD_OPT" },
    {    0xC0,  false,  35, "FEAT_MS_INTERNAL_UNI_EDGE_TO_EDGE",              false, "TvlEdgeToEdge",           0, "TVL_GPD_EDGE_TO_EDGE" },
    {    0xC0,  true,   33, "FEAT_MS_UNI_HALFTONE",                           false, "TvlHalftone",             0, 11110 },
    {   0x8C0,  false,  34, "FEAT_MS_INTERNAL_UNI_COLOR_PRINTING_MODE",       false, "ColorMode",               0, 11106 },
    {}, // the end
};
// clang-format on

inline constexpr std::size_t kCount = std::size(kRows) - 1;

} // namespace MsDevmodeFeatures
