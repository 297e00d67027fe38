// The maker's part of a devmode, as `devmode show` and `ticket show` describe it.
#pragma once

#include <nlohmann/json_fwd.hpp>
#include <string>

#include "oempart.h"

// A text, or null for an empty one.
[[nodiscard]] nlohmann::ordered_json FaultJson(const std::string& fault);

// Its fault, version, CRC, size and entries.
[[nodiscard]] nlohmann::ordered_json DescribeOemContent(const OemContent& content);

// What is to be said of the settings as a whole; the features are DescribeFeatures'.
[[nodiscard]] nlohmann::ordered_json DescribeSettings(const StoredSettings& settings);
