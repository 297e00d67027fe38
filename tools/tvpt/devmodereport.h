// What `devmode show` says about a devmode. docs/command-line.md describes it; scripts read it.
#pragma once

#include <nlohmann/json_fwd.hpp>
#include <string>

#include "devmode.h"

#include <tvcore/printermodel.h>

// "public", "core", "oem", "settings", "features", "choices", "application" and "papers".
// The core driver's settings are those that the printer's model says it has; without one (null), those that the layout
// of its part tells.
[[nodiscard]] nlohmann::ordered_json DescribeDevmode(const Devmode& devmode, const PrinterModel* model);

// "name", "driver", "matches" and "differences": where the devmode is not one that the printer's driver would make.
[[nodiscard]] nlohmann::ordered_json CompareWithPrinter(const Devmode& devmode, const std::string& printerName,
                                                        const PrinterModel& model);
