// Paper number, dimensions and form name of a devmode, made to agree with the printer's paper list.
#pragma once

#include <windows.h>

class MSDeviceCapabilities;

// True when a paper of the list matched. The devmode's public part must reach the end of dmDitherType; a shorter one
// is left as it is (false). Throws ExceptionPrinterFailure when the printer does not answer.
//
// Two quirks are intended. Paper 3 (Tabloid) always becomes 17 (11x17), the same sheet. And where the device's settings
// ask for it, a driver-defined paper that comes from "excel.exe" becomes A4 or Letter, by country.
bool ReconcileDevmodePaperSize(void* printerHandle, DEVMODEW* devmode, MSDeviceCapabilities& capabilities);
