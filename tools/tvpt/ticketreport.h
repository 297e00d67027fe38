// What `ticket show` says about a PrintTicket.
#pragma once

#include <nlohmann/json_fwd.hpp>

#include "documenttree.h"

// "features", "parameters", "driverData" and "jobTicket". Names carry the usual prefixes (psf, psk, tk, ...) whatever
// the document calls them; names in other namespaces keep the document's own.
[[nodiscard]] nlohmann::ordered_json DescribeTicket(const SchemaElement& root);
