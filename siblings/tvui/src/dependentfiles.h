// The files that are installed with the driver file, by their names.
#pragma once

#include <vector>

#include <tvutil/cxstring.h>
#include <tvutil/printer.h>

// Throws ExceptionPrintDriverFailure.
[[nodiscard]] std::vector<CXString> DependentFileNames(const Printer& printer);
