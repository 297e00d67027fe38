// Form lists, as commands show them.
#pragma once

#include <nlohmann/json_fwd.hpp>
#include <span>
#include <string>

#include "complugins/formsinforecord.h"

// An array of "paperId", "name", "width", "length", "units", "type", "valueId".
[[nodiscard]] nlohmann::ordered_json DescribeForms(std::span<const FormsInfoRecord> forms);
// The same as a table with a line of titles.
[[nodiscard]] std::string FormTable(std::span<const FormsInfoRecord> forms);
// "100", "139.7": millimetres of tenths.
[[nodiscard]] std::string MillimetersText(std::int32_t tenths);
