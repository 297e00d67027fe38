// The PrintTicket that the PrintTicket service makes from the core driver, before it asks the provider.
#pragma once

#include <string>

#include <tvcore/printermodel.h>

#include "devmode.h"
#include "interfaces/prcomoem.h"

// The namespace of what the core driver itself names: the provider's default namespace when it has one, else one that
// is made from the driver's name.
[[nodiscard]] std::string DriverNamespaceUri(const CXString& providerNamespace, const CXString& driverName);

// In UTF-8. Fields that the devmode does not claim (dmFields) come from the model's defaults. The core driver's own
// settings are asked of the helper or, without one (null), read where its private part has them; of a devmode
// whose private part is none of its layout they are the defaults.
[[nodiscard]] std::string MakeCoreDriverTicket(const Devmode& devmode, const PrinterModel& model,
                                               const std::string& driverNamespaceUri, IPrintCoreHelper* helper);
