// The PrintCapabilities that the PrintTicket service makes from the core driver, before it asks the provider.
#pragma once

#include <string>

#include <tvcore/printermodel.h>

#include "devmode.h"
#include "interfaces/prcomoem.h"

// In UTF-8: all that the printer's model offers. The devmode says which paper, and which way up, the imageable size is
// for; it and the helper are read as for a ticket (coredriverticket.h).
[[nodiscard]] std::string MakeCoreDriverCapabilities(const Devmode& devmode, const PrinterModel& model,
                                                     const std::string& driverNamespaceUri, IPrintCoreHelper* helper);
