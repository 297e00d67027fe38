// Text to a JSON value, with the checks that the parser itself does not make: size, depth, repeated fields.
#pragma once

#include <string_view>

#include "jsonvalue.h"

inline constexpr std::size_t kMaxJsonDepth = 16;

// UTF-8, with or without a byte order mark. Throws ExceptionInvalidPrinterModel, which names the file and the JSON
// pointer or the line.
[[nodiscard]] JsonValue ParseJsonText(std::string_view text, std::string_view fileName);
