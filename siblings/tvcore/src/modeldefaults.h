// The defaults of a printer model: values of the feature catalogue.
#pragma once

#include <tvcore/featurevalues.h>

#include "jsoncursor.h"

[[nodiscard]] FeatureCatalogue::DefaultValues ReadModelDefaults(const JsonCursor& place);
