// Conversion between UTF-8 and UTF-16 at the edges of this layer.
//
// The lossy forms never fail: what is not well-formed becomes U+FFFD. The strict form refuses instead.
#pragma once

#include <string>
#include <string_view>

namespace winport
{

// Each maximal part of an ill-formed sequence becomes one U+FFFD, as Windows does it.
std::u16string ToUtf16(std::string_view text);

// A lone surrogate becomes one U+FFFD.
std::string ToUtf8(std::u16string_view text);

// No lone surrogates.
bool IsWellFormedUtf16(std::u16string_view text);

// False, and an untouched target, for a text that is not well-formed.
bool ToUtf8Strict(std::u16string_view text, std::string& target);

} // namespace winport
