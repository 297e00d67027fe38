// The data file of a printer's driver.
#pragma once

#include <windows.h>

#include <filesystem>

// Throws ExceptionPrintDriverFailure when the spooler does not tell, or when the driver has none.
[[nodiscard]] std::filesystem::path FindDriverDataFile(HANDLE printer);
