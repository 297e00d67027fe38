// tvpt printer add | list | show | refresh | remove
#pragma once

#include "commandline.h"

void AddPrinterCommands(CLI::App& program, Action& chosen);
