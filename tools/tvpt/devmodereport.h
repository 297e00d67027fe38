// What `devmode show` says about a devmode.
#pragma once

#include <nlohmann/json_fwd.hpp>

#include "devmode.h"

// "public", "core", "oem" and "features".
[[nodiscard]] nlohmann::ordered_json DescribeDevmode(const Devmode& devmode);
