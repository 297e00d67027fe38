// The removal of namespace declarations.
#pragma once

#include <libxml/tree.h>

#include "dom/namespacepool.h"

namespace winport::dom
{

// To be called before an element loses the declaration: names in its subtree that were written with the prefix get
// another prefix in scope with the same URI. Where there is none they keep theirs, and it is declared where it is
// needed when the tree is written (serializer.h).
void RenamePrefixOfLostDeclaration(xmlAttr* declaration, NamespacePool& names);

} // namespace winport::dom
