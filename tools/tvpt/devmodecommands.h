// tvpt devmode new | show | set
#pragma once

#include "commandline.h"

void AddDevmodeCommands(CLI::App& program, Action& chosen);
