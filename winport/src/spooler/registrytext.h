// How the registry gives texts to its callers: sizes in characters, in with the terminator, out without it.
#pragma once

#include <cstdint>
#include <string_view>

#include <windef.h>

#include "spooler/store.h"

namespace winport::spooler
{

// ERROR_MORE_DATA, and nothing changed, when text and terminator do not fit.
void GiveText(std::u16string_view text, LPWSTR target, DWORD& size);

// Classes are not kept: an empty text where one is asked for.
void GiveNoClass(LPWSTR keyClass, LPDWORD classSize);

// The length, in characters, of the longest text of a column, of the rows of one key.
std::size_t LongestText(Store& store, const char* sql, std::int64_t key);

} // namespace winport::spooler
