// The "capabilities" command.
#pragma once

#include "commandline.h"

void AddCapabilitiesCommand(CLI::App& program, Action& chosen);
