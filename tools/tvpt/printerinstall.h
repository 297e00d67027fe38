// Installing and removing printers, the way an installer does it: driver package, printer, printer data.
#pragma once

#include <string>

// What was half done when something fails is taken back. All of them throw Failure, ExceptionInvalidPrinterModel, or
// what the utility library throws of a printer.
void InstallPrinter(const std::string& name, const std::string& modelNameOrFile);
// Only printers that InstallPrinter installed, or began to; their driver goes with the last of them.
void RemovePrinter(const std::string& name);
// Reads the installed model again and brings in line with it what the printer keeps; completes an installation that did
// not come to its end. Can be repeated when it fails. What somebody has chosen stays. False when the device settings
// are in the format of a later driver: they stay as they are, all else is done.
[[nodiscard]] bool RefreshPrinter(const std::string& name);
