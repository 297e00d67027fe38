// The forms of a printer model, and their margins.
#pragma once

#include <cstdint>
#include <map>
#include <vector>

#include <tvcore/printermodel.h>

#include "jsoncursor.h"

[[nodiscard]] std::vector<PrinterModel::Form> ReadModelForms(const JsonCursor& place);

// By paper id; each of a paper that the forms have, and smaller than it.
[[nodiscard]] std::map<std::uint16_t, PrinterModel::Margins>
ReadModelMargins(const JsonCursor& place, const std::vector<PrinterModel::Form>& forms);
