// Settings of the command line, KEY=VALUE, applied to a devmode.
//
//     dmCopies=3              a public field
//     ms.10=2, ms.10=@5421    a setting of the core driver, as the devmode or as the data model has it
//     feature.46=5421         a feature of the document, as the feature catalogue knows it
//     app=excel.exe           the application that the devmode comes from
#pragma once

#include <string>
#include <vector>

#include <tvcore/printermodel.h>

#include "devmode.h"

// All of them, in their order, or none: throws UsageFailure for what is not KEY=VALUE, and Failure, which names the key
// and the limit, with the devmode unchanged.
//
// Features and the application are refused for a devmode without a maker's part, and for one whose part or settings
// cannot be read: writing them anew would lose what a better reader could still find there.
// Which settings the core driver has, its printer's model says; without one (null), the layout of its part.
void ApplySettings(const std::vector<std::string>& settings, Devmode& devmode, const PrinterModel* model);
