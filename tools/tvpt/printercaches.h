// What `printer caches` shows: the caches of a printer's capabilities as a conversion would find them now.
// docs/command-line.md describes it; scripts read it.
#pragma once

#include <string>

// Throws Failure.
[[nodiscard]] std::string ShowPrinterCaches(const std::string& name, bool asJson);
