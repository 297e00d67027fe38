// Text to a JSON value, with the checks that the parser itself does not make: size, depth, repeated fields.
#pragma once

#include <nlohmann/json.hpp>

#include <string_view>

inline constexpr std::size_t kMaxJsonSize = 4u << 20; // bytes
inline constexpr std::size_t kMaxJsonDepth = 16;

// Throws ExceptionInvalidPrinterModel, which names the file and the JSON pointer or the line.
[[nodiscard]] nlohmann::json ParseJsonText(std::string_view text, std::string_view fileName);
