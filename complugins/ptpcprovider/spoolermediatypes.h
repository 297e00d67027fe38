// The media types that a printer's driver reports through the spooler.
#pragma once

#include <windows.h>

#include <tvutil/cxstring.h>

#include <cstdint>
#include <vector>

struct SpoolerMediaType
{
    std::int32_t id = 0; // as the driver gave it
    CXString name;       // at most 64 characters
};

// In the driver's order. Empty when the driver does not answer, or when its numbers and names do not come out even,
// even at a second try. A null devmode asks for the driver's default.
[[nodiscard]] std::vector<SpoolerMediaType> AskSpoolerMediaTypes(const CXString& printerName, const DEVMODEW* devmode);
