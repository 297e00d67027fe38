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
    case XML_DOCUMENT_FRAG_NODE:
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

// The XML declaration is the very start of a document or nowhere.
bool KeepsXmlDeclarationFirst(const xmlNode* parent, const xmlNode* child, const xmlNode* next)
{
    if (IsXmlDeclaration(child))
        return parent->type == XML_DOCUMENT_NODE && next == parent->children;
    return next == nullptr || !IsXmlDeclaration(next);
}

int CountElements(const xmlNode* first, const xmlNode* leftOut, const xmlNode* leftOutToo)
{
    int count = 0;
    for (const xmlNode* node = first; node != nullptr; node = node->next)
        count += IsElement(node) && node != leftOut && node != leftOutToo ? 1 : 0;
    return count;
}

void Check(const xmlNode* parent, const xmlNode* child, const xmlNode* next, const xmlNode* replaced)
{
    const bool isFragment = child->type == XML_DOCUMENT_FRAG_NODE;
    if (IsSelfOrAncestor(child, parent))
        throw Failure{E_FAIL};
    for (const xmlNode* node = isFragment ? child->children : child; node != nullptr; node = node->next)
    {
        if (!MayContain(parent, node) || !KeepsXmlDeclarationFirst(parent, node, next))
            throw Failure{E_FAIL};
        if (!isFragment)
            break;
    }
    if (parent->type != XML_DOCUMENT_NODE)
        return;
    const int added = isFragment ? CountElements(child->children, nullptr, nullptr) : (IsElement(child) ? 1 : 0);
    if (added > 0 && added + CountElements(parent->children, child, replaced) > 1)
        throw Failure{E_FAIL};
}

void MoveOne(NodeCore& parent, const TreePtr& source, xmlNode* child, xmlNode* next)
{
    if (source != parent.GetTree())
        MoveSubtree(child, parent.GetTree());
    Unlink(child);
    LinkChild(parent.Node(), child, next);
}

} // namespace

void InsertChild(NodeCore& parent, NodeCore& child, xmlNode* next, const xmlNode* replaced)
{
    if (next == child.Node())
        next = next->next; // it already stands before what follows it
    Check(parent.Node(), child.Node(), next, replaced);
    // Objects that move change their tree; this one must last until the end.
    const TreePtr source = child.GetTree();
    source->CountChange();
    parent.GetTree()->CountChange();
    if (child.Node()->type != XML_DOCUMENT_FRAG_NODE)
        return MoveOne(parent, source, child.Node(), next);
    while (xmlNode* const first = child.Node()->children)
        MoveOne(parent, source, first, next);
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
