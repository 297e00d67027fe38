// The bytes of a document to its text.
#pragma once

#include <algorithm>
#include <string>
#include <string_view>

#include "utilitiesstaticlib/wideliteral.h"

// UTF-8 with or without a byte-order mark, UTF-16 with one, and where the document says so US-ASCII and ISO-8859-1. A
// declared encoding must fit the bytes and is blanked out, since the text has none any more. Lines stay where they are.
// Throws Failure for bytes that are no text of these encodings and for a text beyond the bounds that documents keep
// (documentlimits.h).
[[nodiscard]] WideString DecodeDocument(std::string_view bytes, std::string_view name);

// "line 3", for an error.
template <class Text>
std::string LineAt(Text text, std::size_t position)
{
    const Text before = text.substr(0, position);
    return "line " + std::to_string(1 + std::count(before.begin(), before.end(), '\n'));
}
