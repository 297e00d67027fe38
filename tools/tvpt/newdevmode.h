// The devmode that a printer's driver makes (tvui/defaultdevmode.h), for a model at hand.
#pragma once

#include <tvcore/printermodel.h>

#include "devmode.h"

[[nodiscard]] Devmode MakeNewDevmode(const PrinterModel& model, const CXString& printerName);
