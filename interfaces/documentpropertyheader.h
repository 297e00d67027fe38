// DOCUMENTPROPERTYHEADER: what the spooler hands to a driver's DrvDocumentPropertySheets. MinGW's winddiui.h lacks it;
// a source that includes this header must not include an SDK's that has it.
#pragma once

#include <windows.h>

struct DOCUMENTPROPERTYHEADER
{
    WORD cbSize; // of this structure
    WORD Reserved;
    HANDLE hPrinter;       // borrowed; null from some spoolers
    LPWSTR pszPrinterName; // borrowed
    DEVMODEW* pdmIn;       // the caller's settings, or null
    DEVMODEW* pdmOut;      // receives the driver's, or null
    DWORD cbOut;           // room at pdmOut in bytes; the driver answers the size that it needs in it
    DWORD fMode;           // DM_IN_BUFFER, DM_OUT_BUFFER ...; 0 asks for the size only
};

using PDOCUMENTPROPERTYHEADER = DOCUMENTPROPERTYHEADER*;

static_assert(sizeof(void*) != 8 || sizeof(DOCUMENTPROPERTYHEADER) == 48);
