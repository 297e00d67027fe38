// DEVMODEW and the constants of its fields. The structure has Windows' own layout (220 bytes).
#pragma once

#include <cstddef>

#include "windef.h"

inline constexpr int CCHDEVICENAME = 32;
inline constexpr int CCHFORMNAME = 32;
inline constexpr WORD DM_SPECVERSION = 0x0401;

inline constexpr DWORD DM_ORIENTATION = 0x00000001;
inline constexpr DWORD DM_PAPERSIZE = 0x00000002;
inline constexpr DWORD DM_PAPERLENGTH = 0x00000004;
inline constexpr DWORD DM_PAPERWIDTH = 0x00000008;
inline constexpr DWORD DM_SCALE = 0x00000010;
inline constexpr DWORD DM_POSITION = 0x00000020;
inline constexpr DWORD DM_NUP = 0x00000040;
inline constexpr DWORD DM_COPIES = 0x00000100;
inline constexpr DWORD DM_DEFAULTSOURCE = 0x00000200;
inline constexpr DWORD DM_PRINTQUALITY = 0x00000400;
inline constexpr DWORD DM_COLOR = 0x00000800;
inline constexpr DWORD DM_DUPLEX = 0x00001000;
inline constexpr DWORD DM_YRESOLUTION = 0x00002000;
inline constexpr DWORD DM_TTOPTION = 0x00004000;
inline constexpr DWORD DM_COLLATE = 0x00008000;
inline constexpr DWORD DM_FORMNAME = 0x00010000;
inline constexpr DWORD DM_LOGPIXELS = 0x00020000;
inline constexpr DWORD DM_ICMMETHOD = 0x00800000;
inline constexpr DWORD DM_ICMINTENT = 0x01000000;
inline constexpr DWORD DM_MEDIATYPE = 0x02000000;
inline constexpr DWORD DM_DITHERTYPE = 0x04000000;

inline constexpr short DMORIENT_PORTRAIT = 1;
inline constexpr short DMORIENT_LANDSCAPE = 2;
inline constexpr short DMPAPER_LETTER = 1;
inline constexpr short DMPAPER_TABLOID = 3;
inline constexpr short DMPAPER_A4 = 9;
inline constexpr short DMPAPER_11X17 = 17;
inline constexpr short DMPAPER_USER = 256;
inline constexpr short DMBIN_AUTO = 7;
inline constexpr short DMBIN_FORMSOURCE = 15;
inline constexpr short DMCOLOR_MONOCHROME = 1;
inline constexpr short DMCOLOR_COLOR = 2;
inline constexpr short DMDUP_SIMPLEX = 1;
inline constexpr short DMDUP_VERTICAL = 2;
inline constexpr short DMDUP_HORIZONTAL = 3;
inline constexpr short DMTT_BITMAP = 1;
inline constexpr short DMTT_DOWNLOAD = 2;
inline constexpr short DMTT_SUBDEV = 3;
inline constexpr LONG DCTT_BITMAP = 1;
inline constexpr LONG DCTT_DOWNLOAD = 2;
inline constexpr LONG DCTT_SUBDEV = 4;
inline constexpr LONG DCTT_DOWNLOAD_OUTLINE = 8;
inline constexpr short DMCOLLATE_FALSE = 0;
inline constexpr short DMCOLLATE_TRUE = 1;
inline constexpr DWORD DMICMMETHOD_NONE = 1;
inline constexpr DWORD DMICMMETHOD_SYSTEM = 2;
inline constexpr DWORD DMICMMETHOD_DRIVER = 3;
inline constexpr DWORD DMICMMETHOD_DEVICE = 4;
inline constexpr DWORD DMICM_SATURATE = 1;
inline constexpr DWORD DMICM_CONTRAST = 2;
inline constexpr DWORD DMICM_COLORIMETRIC = 3;
inline constexpr DWORD DMICM_ABS_COLORIMETRIC = 4;
inline constexpr DWORD DMMEDIA_STANDARD = 1;
inline constexpr DWORD DMMEDIA_TRANSPARENCY = 2;
inline constexpr DWORD DMMEDIA_GLOSSY = 3;
inline constexpr DWORD DMMEDIA_USER = 256;
inline constexpr DWORD DMDITHER_NONE = 1;

// The record's anonymous structures are the platform's own shape, not the language's.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wpedantic"

struct _devicemodeW
{
    WCHAR dmDeviceName[CCHDEVICENAME];
    WORD dmSpecVersion;
    WORD dmDriverVersion;
    WORD dmSize;
    WORD dmDriverExtra;
    DWORD dmFields;
    union
    {
        struct
        {
            short dmOrientation;
            short dmPaperSize;
            short dmPaperLength;
            short dmPaperWidth;
            short dmScale;
            short dmCopies;
            short dmDefaultSource;
            short dmPrintQuality;
        };
        struct
        {
            POINTL dmPosition;
            DWORD dmDisplayOrientation;
            DWORD dmDisplayFixedOutput;
        };
    };
    short dmColor;
    short dmDuplex;
    short dmYResolution;
    short dmTTOption;
    short dmCollate;
    WCHAR dmFormName[CCHFORMNAME];
    WORD dmLogPixels;
    DWORD dmBitsPerPel;
    DWORD dmPelsWidth;
    DWORD dmPelsHeight;
    union
    {
        DWORD dmDisplayFlags;
        DWORD dmNup;
    };
    DWORD dmDisplayFrequency;
    DWORD dmICMMethod;
    DWORD dmICMIntent;
    DWORD dmMediaType;
    DWORD dmDitherType;
    DWORD dmReserved1;
    DWORD dmReserved2;
    DWORD dmPanningWidth;
    DWORD dmPanningHeight;
};

#pragma GCC diagnostic pop

using DEVMODEW = _devicemodeW;
using PDEVMODEW = DEVMODEW*;
using LPDEVMODEW = DEVMODEW*;

static_assert(sizeof(DEVMODEW) == 220);

// As drivers exchange it. A field at a wrong place moves those behind it, so the end of each stretch is enough.
static_assert(offsetof(DEVMODEW, dmDriverExtra) == 70 && offsetof(DEVMODEW, dmPaperWidth) == 82);
static_assert(offsetof(DEVMODEW, dmPrintQuality) == 90 && offsetof(DEVMODEW, dmCollate) == 100);
static_assert(offsetof(DEVMODEW, dmLogPixels) == 166 && offsetof(DEVMODEW, dmICMMethod) == 188);
static_assert(offsetof(DEVMODEW, dmDitherType) == 200);
