// Writes trees as text.
//
// As MSXML writes them: empty elements as <a/>, attributes and declarations in their order, double quotes, each
// node of a document on a line of its own. Names decide: a prefix that is not declared where it is used (a created
// element, a moved one, one whose declaration was removed) gets a declaration there; a name in a namespace that has
// no usable prefix gets one. So the text always reads back as the same tree.
#pragma once

#include <libxml/tree.h>

#include <string>
#include <string_view>

namespace winport::dom
{

// The encoding of an XML declaration's text; empty when it names none.
std::string_view DeclaredEncoding(std::string_view declaration);

// The node with its subtree, in UTF-8. A document's XML declaration names the given encoding, or none when it is empty.
std::string Serialize(xmlNode* node, std::string_view encoding = {});

} // namespace winport::dom
