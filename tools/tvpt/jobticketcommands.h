// tvpt jobticket
#pragma once

#include "commandline.h"

void AddJobTicketCommand(CLI::App& program, Action& chosen);
