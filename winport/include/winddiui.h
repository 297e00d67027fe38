// What a driver's configuration module exports and the spooler of Windows calls, as far as it is used here.
#pragma once

#include "windef.h"

using LPARAM = LONG_PTR;

inline constexpr INT PRINTER_EVENT_ADD_CONNECTION = 1;
inline constexpr INT PRINTER_EVENT_DELETE_CONNECTION = 2;
inline constexpr INT PRINTER_EVENT_INITIALIZE = 3;
inline constexpr INT PRINTER_EVENT_DELETE = 4;
inline constexpr INT PRINTER_EVENT_CACHE_REFRESH = 5;
inline constexpr INT PRINTER_EVENT_CACHE_DELETE = 6;
inline constexpr INT PRINTER_EVENT_ATTRIBUTES_CHANGED = 7;

inline constexpr DWORD PRINTER_EVENT_FLAG_NO_UI = 1;

extern "C"
{
    WINPORT_API BOOL WINAPI DrvPrinterEvent(LPWSTR printerName, INT event, DWORD flags, LPARAM param);
}
