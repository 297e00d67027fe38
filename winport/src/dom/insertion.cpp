#include "dom/insertion.h"

#include <utility>
#include <vector>

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
    Check(parent.Node(), child.Node());
    // Objects that move change their tree; this one must last until the end.
    const TreePtr source = child.GetTree();
    source->CountChange();
    parent.GetTree()->CountChange();
    if (source != parent.GetTree())
        MoveSubtree(child.Node(), parent.GetTree());
    Unlink(child.Node());
    LinkChild(parent.Node(), child.Node(), nullptr);
}

void MoveSubtree(xmlNode* root, const TreePtr& target)
{
    // All that can fail comes first.
    std::vector<std::pair<xmlNode*, xmlNs*>> moves;
    const auto collect = [&](xmlNode* node)
    {
        moves.emplace_back(node, target->Namespaces().Get(PrefixOf(node), NamespaceOf(node)));
    };
    for (xmlNode* node = root; node != nullptr; node = NextInSubtree(node, root))
    {
        collect(node);
        for (xmlAttr* attribute = IsElement(node) ? node->properties : nullptr; attribute != nullptr;
             attribute = attribute->next)
        {
            collect(AsNode(attribute));
            for (xmlNode* text = attribute->children; text != nullptr; text = text->next)
                collect(text);
        }
    }
    for (const auto& [node, name] : moves)
    {
        node->doc = target->Document();
        if (IsElement(node) || IsAttribute(node))
            node->ns = name;
        if (node->_private != nullptr)
            static_cast<NodeCore*>(node->_private)->MoveTo(target);
    }
}

} // namespace winport::dom
