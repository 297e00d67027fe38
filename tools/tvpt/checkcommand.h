// "tvpt check": a Print Schema document held against the rules of its construction, and against a printer.
#pragma once

#include "commandline.h"

void AddCheckCommand(CLI::App& program, Action& chosen);
