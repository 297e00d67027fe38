// The way from a PrintTicket back to the core driver's settings of a devmode, as the PrintTicket service goes it before
// it asks the provider.
#pragma once

#include <string>

#include <tvcore/printermodel.h>

#include "devmode.h"
#include "documenttree.h"
#include "interfaces/prcomoem.h"

// Names are compared with their prefixes resolved; an option that the driver does not know by its name it knows by its
// scored properties, where all of those that it has agree. Features and options that it does not know, parameters out
// of their range, and what the devmode says already change nothing. Of two features of one name the second counts. What
// is written is claimed in dmFields. Paper, media type and copies are left to the provider.
void ApplyCoreDriverTicket(const SchemaElement& ticket, const PrinterModel& model,
                           const std::string& driverNamespaceUri, IPrintCoreHelper* helper, Devmode& devmode);
