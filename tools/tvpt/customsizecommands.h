// tvpt printer custom-size add | list | remove
#pragma once

#include "commandline.h"

void AddCustomSizeCommands(CLI::App& printer, Action& chosen);

// A line for each of the user's custom sizes that cannot be used; empty when there is none.
[[nodiscard]] std::string DescribeUnusableSizes();
