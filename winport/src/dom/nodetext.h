// The text property of nodes.
#pragma once

#include <libxml/tree.h>

#include <string>

namespace winport::dom
{

// The texts of the subtree one after the other, CDATA sections as they are. Unless white space is preserved (by the
// document's setting or xml:space), blanks at the start and the end are left out and blanks that were dropped between
// two elements count as one blank, as MSXML has it.
std::string TextOf(xmlNode* node, bool preservesWhiteSpace);

} // namespace winport::dom
