// The two facts of the user's locale that are asked for.
//
// The territory is taken from the name of the locale ("en_US.UTF-8"): LC_ALL, else LC_MEASUREMENT or LC_PAPER, else
// LANG. A locale without a territory ("C") measures in metres and prints on A4, as it does in the C library.
#pragma once

#include "windef.h"

using LCTYPE = DWORD;

inline constexpr LCID LOCALE_USER_DEFAULT = 0x0400;

inline constexpr LCTYPE LOCALE_IMEASURE = 0x0000000D;   // 0 metric, 1 the United States' system
inline constexpr LCTYPE LOCALE_IPAPERSIZE = 0x0000100A; // DMPAPER_LETTER or DMPAPER_A4
inline constexpr LCTYPE LOCALE_RETURN_NUMBER = 0x20000000;

// LOCALE_USER_DEFAULT and numbers only: `type` is one of the two with LOCALE_RETURN_NUMBER, the room a DWORD (a size
// of 2 characters; of 0, to be told 2). Anything else gives 0 with ERROR_INVALID_PARAMETER, a smaller room 0 with
// ERROR_INSUFFICIENT_BUFFER.
WINPORT_API int WINAPI GetLocaleInfoW(LCID locale, LCTYPE type, LPWSTR data, int size);
