// The paper of a devmode, made to agree with a printer's form list; and in words what that changed.
#pragma once

#include <string>

#include "devmode.h"
#include "printerhandle.h"

// The words are lines: one for each field that is another now, then which paper it is. Throws Failure, or what the
// utility library throws of a printer.
[[nodiscard]] std::string ReconcilePaper(const PrinterHandle& printer, const std::string& printerName,
                                         Devmode& devmode);
