// Installing and removing printers, the way an installer does it: driver package, printer, printer data.
#pragma once

#include <string>

#include <tvcore/printermodel.h>

#include "printerhandle.h"

// What was half done when something fails is taken back. All of them throw Failure or ExceptionInvalidPrinterModel.
void InstallPrinter(const std::string& name, const std::string& modelNameOrFile);
// Only printers that were installed by InstallPrinter; their driver goes with the last of them.
void RemovePrinter(const std::string& name);
// Reads the installed model again and stores what the printer keeps of it.
void RefreshPrinter(const std::string& name);

// The model of an installed printer: its driver's data file.
[[nodiscard]] PrinterModel ReadInstalledModel(const PrinterHandle& printer, const std::string& name);
