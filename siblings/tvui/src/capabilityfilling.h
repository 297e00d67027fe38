// Filling the caches of a printer's capabilities (complugins/msdevicecapabilities.h) from its model and, outside of the
// spooler, the custom sizes of the user.
#pragma once

#include <tvcore/productdata.h>
#include <tvutil/printer.h>

#include "complugins/msdevicecapabilities.h"

// Every cache of the table, all of them or, when the store refuses in between, those before it: each is whole in
// itself. Waits for whoever is filling caches of that hive, not for ever. Throws TavlenComException with the code of
// saving, the printer's or its driver's failure, or ExceptionDataCacheFailure.
void FillCapabilityCaches(const Printer& printer, const ProductData& product,
                          MSDeviceCapabilities::Context context = MSDeviceCapabilities::Context::OfThisProcess);

// What is kept for a printer that may be gone by now, in the hive of this process. Throws ExceptionDataCacheFailure.
void RemoveCapabilityCaches(const CXString& printerName);
