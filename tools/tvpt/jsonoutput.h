// What commands print: JSON for scripts, the same content as plain lines for people.
#pragma once

#include <cstdint>
#include <nlohmann/json_fwd.hpp>
#include <string>

// Indented, one line feed at the end.
[[nodiscard]] std::string JsonText(const nlohmann::ordered_json& value);
// "name: value" lines, nested content indented, list items behind a dash.
[[nodiscard]] std::string PlainText(const nlohmann::ordered_json& value);

// "0x888"
[[nodiscard]] std::string HexText(std::uint64_t word);
