// The media types of a printer model.
#pragma once

#include <vector>

#include <tvcore/printermodel.h>

#include "jsoncursor.h"

[[nodiscard]] std::vector<PrinterModel::MediaType> ReadModelMediaTypes(const JsonCursor& place);
