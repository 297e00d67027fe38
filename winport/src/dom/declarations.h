// Namespace declarations of a tree: what a prefix means at an element, and the removal of a declaration.
#pragma once

#include <libxml/tree.h>

#include <optional>
#include <string>
#include <string_view>

#include "dom/namespacepool.h"

namespace winport::dom
{

// The URI that the prefix is bound to at the element, by its own declarations and those above it.
std::optional<std::string> DeclaredUri(xmlNode* element, std::string_view prefix);

// To be called before an element loses the declaration: names in its subtree that were written with the prefix get
// another prefix in scope with the same URI. Where there is none they keep theirs, and it is declared where it is
// needed when the tree is written (serializer.h).
void RenamePrefixOfLostDeclaration(xmlAttr* declaration, NamespacePool& names);

} // namespace winport::dom
