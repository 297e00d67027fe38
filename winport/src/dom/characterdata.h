// The edits of IXMLDOMCharacterData, which count in UTF-16 characters.
#pragma once

#include <libxml/tree.h>

#include <string>
#include <utility>

#include "wtypes.h"

namespace winport::dom
{

std::u16string DataOf(const xmlNode* node);

// The range cut to the text; throws Failure(E_INVALIDARG) for a negative number or an offset behind the end.
struct DataRange
{
    std::size_t offset;
    std::size_t count;
};

DataRange CheckedRange(const std::u16string& data, LONG offset, LONG count);

// UTF-8 of an edited text. Throws Failure(E_INVALIDARG) when a surrogate lost its partner.
std::string EditedText(const std::u16string& data);

// The two parts of a text at the offset.
std::pair<std::string, std::string> SplitAt(const std::u16string& data, LONG offset);

} // namespace winport::dom
