// The attributes of an element, namespace declarations among them: finding, putting, removing.
#pragma once

#include <string_view>

#include "dom/nodecore.h"

namespace winport::dom
{

// Null when there is none. The first form takes the name as it is written ("xmlns:psk").
xmlAttr* FindAttribute(const xmlNode* element, std::string_view qualifiedName);
xmlAttr* FindAttribute(const xmlNode* element, std::string_view local, std::string_view uri);

// Puts the attribute on the element, in the place of the one of the same name if there is one, which is answered.
// Throws Failure: E_INVALIDARG for another kind of node, E_FAIL for an attribute that an element has already.
NodeRef PutAttribute(NodeCore& element, NodeCore& attribute);

// Takes the attribute out. Names that a declaration served find another one (declarations.h).
NodeRef TakeAttribute(NodeCore& element, xmlAttr* attribute);

// A new attribute of that name. Without a URI a prefix names no namespace yet.
OwnedNode NewNamedAttribute(Tree& tree, const std::string& qualifiedName, std::string_view uri,
                            const std::string& value);

} // namespace winport::dom
