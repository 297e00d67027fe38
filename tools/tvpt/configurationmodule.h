// The driver's configuration module, asked to fill and to forget the caches of a printer's capabilities: not every
// spooler tells it of events.
#pragma once

#include <string>

#include "printerhandle.h"

// Throws Failure.
void FillCapabilityCaches(const PrinterHandle& printer, const std::string& name);

// What this user has of a printer that is gone. Needs no driver; never throws: what is left is in nobody's way.
void ForgetCapabilityCaches(const std::string& name) noexcept;
