// The media types that a printer's driver reports through the spooler.
#pragma once

#include <windows.h>

#include <tvcore/printermodel.h>
#include <tvutil/cxstring.h>

#include <vector>

// In the driver's order, with its numbers and names of at most 64 characters. Empty when the driver does not answer, or
// when its numbers and names do not come out even, even at a second try. A null devmode asks for the driver's default.
[[nodiscard]] std::vector<PrinterModel::MediaType> AskSpoolerMediaTypes(const CXString& printerName,
                                                                        const DEVMODEW* devmode);
