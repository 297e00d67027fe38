// New nodes, in no tree yet, and their owner.
//
// Every function throws std::bad_alloc. Names and texts must be valid: the callers check what came from outside.
#pragma once

#include <libxml/tree.h>

#include <memory>
#include <string>
#include <string_view>

namespace winport::dom
{

struct FreeNode
{
    void operator()(xmlNode* node) const noexcept;
};

// Owns a node with its subtree, as long as no wrapper points into it (links.h takes over from there).
using OwnedNode = std::unique_ptr<xmlNode, FreeNode>;

OwnedNode NewElement(xmlDoc* document, xmlNs* name, std::string_view local);
// A namespace declaration is made by its name alone; the value is its text child, an empty one included.
OwnedNode NewAttribute(xmlDoc* document, xmlNs* name, std::string_view local, const std::string& value);
OwnedNode NewText(xmlDoc* document, std::string_view text);
OwnedNode NewCData(xmlDoc* document, std::string_view text);
OwnedNode NewComment(xmlDoc* document, const std::string& text);
OwnedNode NewInstruction(xmlDoc* document, const std::string& target, const std::string& data);

} // namespace winport::dom
