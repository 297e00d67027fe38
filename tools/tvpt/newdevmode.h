// The devmode that a printer's driver would make: the model's defaults.
#pragma once

#include <tvcore/printermodel.h>

#include "devmode.h"

// The public fields from the first item of each of the model's lists, the core driver's private part, and the maker's
// part behind it, which holds no data yet.
[[nodiscard]] Devmode MakeNewDevmode(const PrinterModel& model, const CXString& printerName);
