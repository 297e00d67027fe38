// The links between nodes, and who frees what.
//
// A node belongs to its document while it hangs in it. Taken out, it is the root of a detached subtree, which lives
// as long as a wrapper holds any node of it; the wrapper that goes last frees it as a whole. So after a node was
// unlinked, or when a wrapper goes, FreeIfUnheld is asked.
#pragma once

#include <libxml/tree.h>

#include "dom/newnodes.h"

namespace winport::dom
{

// Puts the child before `next`, or last when that is null.
void LinkChild(xmlNode* parent, xmlNode* child, xmlNode* next) noexcept;
void LinkAttribute(xmlNode* element, xmlAttr* attribute, xmlAttr* next) noexcept;
// Takes a child or an attribute out of its parent; the caller answers for it from then on.
void Unlink(xmlNode* node) noexcept;

xmlNode* TopOf(xmlNode* node) noexcept;
// Whether `ancestor` is the node itself or stands above it.
bool IsSelfOrAncestor(const xmlNode* ancestor, const xmlNode* node) noexcept;
bool IsChildOf(const xmlNode* child, const xmlNode* parent) noexcept; // attributes are no children

// Frees the detached subtree that the node is in, unless a wrapper holds one of its nodes. Does nothing in a document.
void FreeIfUnheld(xmlNode* node) noexcept;

// Takes out all children; those that wrappers hold become detached subtrees, the others are freed.
void RemoveChildren(xmlNode* parent) noexcept;

} // namespace winport::dom
