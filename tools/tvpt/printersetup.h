// What the set-up keeps with a printer: its capability word, workflow module, device settings and, last, how far it
// has come.
#pragma once

#include <string>

#include <tvcore/printermodel.h>

#include "printerhandle.h"

enum class SetUpState
{
    NotOurs,    // another driver's printer
    Incomplete, // ours by its driver; the set-up did not come to its end
    Complete,
};

[[nodiscard]] SetUpState SetUpStateOf(const PrinterHandle& printer);

// The model of an installed printer: its driver's data file. Throws Failure for another driver's printer and, unless
// told otherwise, for one whose set-up is incomplete; ExceptionInvalidPrinterModel.
[[nodiscard]] PrinterModel ReadInstalledModel(const PrinterHandle& printer, const std::string& name,
                                              SetUpState least = SetUpState::Complete);

// Stores all of it; again, where it was stored before: settings that somebody has chosen, and those that the model does
// not know, stay. False when the device settings are in the format of a later driver: they stay as they are, all else
// is done. Throws Failure.
bool StoreModelData(const PrinterHandle& printer, const std::string& name, const PrinterModel& model);

// Lets the driver bring the printer's stored devmode in line with its model: what the printer cannot do becomes the
// default, and the list of papers is the model's. Throws Failure, or ExceptionPrinterFailure when the driver makes
// none.
void RenewDevmode(const PrinterHandle& printer, const std::string& name);
