// Insertion of children: what may stand where, and the move itself.
#pragma once

#include "dom/nodecore.h"

namespace winport::dom
{

// Puts the child into the parent, behind its children. A child that hangs elsewhere is taken out there; one of another
// document moves into this one.
//
// Throws Failure(E_FAIL) for what may not stand there: attributes, documents, the parent itself and what is above it,
// a second root element or text in a document. Nothing is changed by a failure.
void AppendChild(NodeCore& parent, NodeCore& child);

// Moves a detached subtree, with its objects, into another tree.
void MoveSubtree(xmlNode* root, const TreePtr& target);

} // namespace winport::dom
