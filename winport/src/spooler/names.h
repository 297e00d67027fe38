// Names as the callers give them, and as the store keeps and compares them.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include <windef.h>

namespace winport::spooler
{

// A null text is empty.
std::u16string_view ViewOf(LPCWSTR text) noexcept;

// What two names that differ only in case have in common: Latin, Greek and Cyrillic letters become small.
std::u16string FoldCase(std::u16string_view text);
bool EqualIgnoringCase(std::u16string_view left, std::u16string_view right);

// There is one machine: a server's name must be null or empty, else ERROR_INVALID_NAME.
void RequireLocalServer(LPCWSTR server);
// "Windows x64", or null for this machine's own; else ERROR_INVALID_ENVIRONMENT.
void RequireOwnEnvironment(LPCWSTR environment);
inline constexpr const WCHAR* kEnvironment = u"Windows x64";

// Zero-terminated texts, one after the other, up to an empty one. Null is an empty list.
std::vector<std::u16string> ListOf(LPCWSTR multiString);
// With both terminators. An empty list is two of them.
std::u16string MultiStringOf(const std::vector<std::u16string>& list);

} // namespace winport::spooler
