#include "dom/insertion.h"

#include "dom/failure.h"
#include "dom/links.h"
#include "dom/nodekinds.h"

namespace winport::dom
{

namespace
{

bool MayContain(const xmlNode* parent, const xmlNode* child)
{
    switch (parent->type)
    {
    case XML_ELEMENT_NODE:
        return IsElement(child) || IsText(child) || child->type == XML_COMMENT_NODE || child->type == XML_PI_NODE;
    case XML_DOCUMENT_NODE:
        return IsElement(child) || child->type == XML_COMMENT_NODE || child->type == XML_PI_NODE;
    case XML_ATTRIBUTE_NODE:
    case kDeclarationType:
        return child->type == XML_TEXT_NODE;
    default:
        return false;
    }
}

bool HasOtherElement(const xmlNode* parent, const xmlNode* leftOut)
{
    const xmlNode* node = parent->children;
    while (node != nullptr && (!IsElement(node) || node == leftOut))
        node = node->next;
    return node != nullptr;
}

void Check(const xmlNode* parent, const xmlNode* child)
{
    // The XML declaration is the very start of a document or nowhere.
    const bool isMisplaced =
        IsXmlDeclaration(child) && (parent->type != XML_DOCUMENT_NODE || parent->children != nullptr);
    const bool isSecondRoot = parent->type == XML_DOCUMENT_NODE && IsElement(child) && HasOtherElement(parent, child);
    if (IsSelfOrAncestor(child, parent) || !MayContain(parent, child) || isMisplaced || isSecondRoot)
        throw Failure{E_FAIL};
}

} // namespace

void AppendChild(NodeCore& parent, NodeCore& child)
{
    RequireSameTree(parent, child);
    Check(parent.Node(), child.Node());
    parent.GetTree()->CountChange();
    Unlink(child.Node());
    LinkChild(parent.Node(), child.Node(), nullptr);
}

void RequireSameTree(const NodeCore& parent, const NodeCore& node)
{
    if (node.GetTree() != parent.GetTree())
        throw Failure{E_INVALIDARG};
}

} // namespace winport::dom
