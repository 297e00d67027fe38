// Insertion of children: what may stand where, and the move itself.
#pragma once

#include "dom/nodecore.h"

namespace winport::dom
{

// Puts the child into the parent, behind its children. A child that hangs elsewhere in the document is taken out there.
//
// Throws Failure(E_INVALIDARG) for a node of another document and Failure(E_FAIL) for what may not stand there:
// attributes, documents, the parent itself and what is above it, a second root element or text in a document. Nothing
// is changed by a failure.
void AppendChild(NodeCore& parent, NodeCore& child);

// Throws Failure(E_INVALIDARG) for a node of another document: nodes stay in the document that made them.
void RequireSameTree(const NodeCore& parent, const NodeCore& node);

} // namespace winport::dom
