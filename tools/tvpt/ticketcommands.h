// tvpt ticket from-devmode | to-devmode | validate | expand | show
#pragma once

#include "commandline.h"

void AddTicketCommands(CLI::App& program, Action& chosen);

// The options of every command that binds a printer.
void AddPrinterOptions(CLI::App& command, std::string& printer, bool& noCoreHelper);
