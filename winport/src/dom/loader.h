// Reads text into a tree, over libxml2's event interface.
//
// Our own handler builds the tree, so that declarations keep their place among the attributes (nodekinds.h), blanks
// between elements are dropped and every prefix is resolved. The parser reads the text in small pieces; after the
// first fault there are no more of them, so it cannot spend time on the rest of a bad text. Nothing outside the text
// is ever read and no entity but the five of XML is known.
#pragma once

#include <optional>
#include <string_view>

#include "dom/loaderror.h"
#include "dom/tree.h"

namespace winport::dom
{

// Fills an empty tree; blanks are dropped unless the tree's settings preserve them. After an error the tree holds
// parts of the text and is to be thrown away. Throws std::bad_alloc.
std::optional<LoadError> LoadText(std::string_view utf8, Tree& tree);

// An error with its place in the text.
LoadError ErrorAt(std::string_view utf8, std::size_t offset, std::string reason);

} // namespace winport::dom
