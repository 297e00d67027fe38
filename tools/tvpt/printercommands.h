// tvpt printer add | list | show | refresh | caches | custom-size | remove
#pragma once

#include "commandline.h"

void AddPrinterCommands(CLI::App& program, Action& chosen);
