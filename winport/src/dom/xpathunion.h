// Unions of node-sets, A | B, done here: libxml2 compares every node of one with every node of the other and counts
// through siblings to sort them, which takes seconds on a large document with many equal features.
#pragma once

#include <libxml/tree.h>

#include <string>
#include <string_view>
#include <vector>

namespace winport::dom
{

// The parts between the outermost bars of an expression; one part when there are none. Bars in brackets and literals
// stay. A part of a union of node-sets is a node-set expression by itself, and the other way round.
std::vector<std::string> SplitUnion(std::string_view expression);

// All nodes of the lists, each once, in document order. The lists are in document order.
std::vector<xmlNode*> UniteInDocumentOrder(const std::vector<std::vector<xmlNode*>>& lists);

} // namespace winport::dom
