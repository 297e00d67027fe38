// Conversion between UTF-16 and UTF-8. What is no valid sequence becomes U+FFFD, one for each maximal part of a
// sequence, in both directions; the result is always valid.
#pragma once

#include <string>
#include <string_view>

#include "utilitiesstaticlib/wideliteral.h"

namespace utf
{

std::string ToUtf8(WStringView text);
WideString ToUtf16(std::string_view text);

// Writes as many whole characters as fit, and a terminator; returns the length without it. For places that must not
// allocate. The room must not be empty.
std::size_t ToUtf16Bounded(std::string_view text, WCHAR* room, std::size_t roomLength) noexcept;

} // namespace utf
