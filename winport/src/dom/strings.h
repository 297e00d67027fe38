// Text on its way between BSTRs and libxml2's UTF-8.
#pragma once

#include <libxml/xmlstring.h>

#include <string>
#include <string_view>

#include "wtypes.h"

namespace winport::dom
{

// The empty view for a null string.
std::string_view View(const xmlChar* text);
const xmlChar* XmlChars(const std::string& text);

// A new BSTR, which the caller owns. Throws std::bad_alloc.
BSTR NewBstr(std::string_view utf8);
BSTR NewBstr(std::u16string_view text);

// Zeros within the text are kept; a null BSTR is the empty text.
std::u16string_view BstrView(BSTR text);

// Throws Failure(E_INVALIDARG) for a lone surrogate.
std::string Utf8Of(BSTR text);

// The characters that an XML document may hold; others cannot be written in any way.
bool HasOnlyXmlCharacters(std::string_view utf8);
// The same, as a demand: throws Failure(E_INVALIDARG). A document that nobody can read back is not made.
std::string XmlTextOf(BSTR text);

constexpr bool IsXmlSpace(char character)
{
    return character == ' ' || character == '\t' || character == '\n' || character == '\r';
}

bool IsAllXmlSpace(std::string_view text);

} // namespace winport::dom
