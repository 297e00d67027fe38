// tvpt ticket from-devmode | to-devmode | validate | expand | show
#pragma once

#include "commandline.h"

void AddTicketCommands(CLI::App& program, Action& chosen);
