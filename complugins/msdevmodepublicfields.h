// The core drivers' settings that are fields of DEVMODEW: which, where, and the bits of dmFields that claim them.
// Constant data.
#pragma once

#include <windows.h>

#include <cstddef>
#include <cstdint>

struct MsDevmodePublicField
{
    std::uint32_t feature;
    std::size_t offset;
    std::size_t width; // bytes, 2 or 4
    DWORD flag;
};

namespace MsDevmodePublicFields
{

// Two fields of one feature make one value of 32 bits, the first of them its high half.
// clang-format off
inline constexpr MsDevmodePublicField kFields[] = {
    //  feature  offset                               width  flag
    {   3,       offsetof(DEVMODEW, dmOrientation),   2,     DM_ORIENTATION },
    {   4,       offsetof(DEVMODEW, dmScale),         2,     DM_SCALE },
    {   5,       offsetof(DEVMODEW, dmCopies),        2,     DM_COPIES },
    {   6,       offsetof(DEVMODEW, dmCollate),       2,     DM_COLLATE },
    {   7,       offsetof(DEVMODEW, dmDefaultSource), 2,     DM_DEFAULTSOURCE },
    {   8,       offsetof(DEVMODEW, dmPrintQuality),  2,     DM_PRINTQUALITY },
    {   8,       offsetof(DEVMODEW, dmYResolution),   2,     DM_YRESOLUTION },
    {   9,       offsetof(DEVMODEW, dmColor),         2,     DM_COLOR },
    {   10,      offsetof(DEVMODEW, dmDuplex),        2,     DM_DUPLEX },
    {   11,      offsetof(DEVMODEW, dmTTOption),      2,     DM_TTOPTION },
    {   12,      offsetof(DEVMODEW, dmPaperSize),     2,     DM_PAPERSIZE },
    {   13,      offsetof(DEVMODEW, dmPaperWidth),    2,     DM_PAPERWIDTH },
    {   14,      offsetof(DEVMODEW, dmPaperLength),   2,     DM_PAPERLENGTH },
    {   15,      offsetof(DEVMODEW, dmICMMethod),     4,     DM_ICMMETHOD },
    {   16,      offsetof(DEVMODEW, dmICMIntent),     4,     DM_ICMINTENT },
    {   17,      offsetof(DEVMODEW, dmMediaType),     4,     DM_MEDIATYPE },
    {   18,      offsetof(DEVMODEW, dmDitherType),    4,     DM_DITHERTYPE },
};
// clang-format on

} // namespace MsDevmodePublicFields
