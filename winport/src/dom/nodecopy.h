// Copies of nodes.
#pragma once

#include <libxml/tree.h>

#include "dom/newnodes.h"
#include "dom/tree.h"

namespace winport::dom
{

// A detached copy for the same tree or, when `target` is another one, for that. An element's attributes always come
// along, its children when `deep`. Not for documents.
OwnedNode CopyNode(xmlNode* node, bool deep, Tree& target);

} // namespace winport::dom
