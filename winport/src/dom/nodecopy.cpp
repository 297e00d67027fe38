#include "dom/nodecopy.h"

#include <vector>

#include "dom/links.h"
#include "dom/nodekinds.h"
#include "dom/strings.h"
#include "dom/walk.h"

namespace winport::dom
{

namespace
{

xmlNs* NameIn(Tree& tree, const xmlNode* node)
{
    return tree.Namespaces().Get(PrefixOf(node), NamespaceOf(node));
}

OwnedNode CopyAttribute(const xmlAttr* attribute, Tree& target)
{
    return NewAttribute(target.Document(), NameIn(target, reinterpret_cast<const xmlNode*>(attribute)),
                        View(attribute->name), ValueOf(attribute));
}

OwnedNode CopyElement(const xmlNode* element, Tree& target)
{
    OwnedNode copy = NewElement(target.Document(), NameIn(target, element), View(element->name));
    xmlAttr* last = nullptr;
    for (const xmlAttr* attribute = element->properties; attribute != nullptr; attribute = attribute->next)
    {
        xmlAttr* const added = AsAttribute(CopyAttribute(attribute, target).release());
        added->parent = copy.get();
        added->prev = last;
        (last != nullptr ? last->next : copy->properties) = added;
        last = added;
    }
    return copy;
}

// Without children.
OwnedNode CopyOne(const xmlNode* node, Tree& target)
{
    const std::string_view content = IsElement(node) || IsAttribute(node) ? std::string_view() : View(node->content);
    switch (node->type)
    {
    case XML_ELEMENT_NODE:
        return CopyElement(node, target);
    case XML_ATTRIBUTE_NODE:
    case kDeclarationType:
        return CopyAttribute(AsAttribute(node), target);
    case XML_CDATA_SECTION_NODE:
        return NewCData(target.Document(), content);
    case XML_COMMENT_NODE:
        return NewComment(target.Document(), std::string(content));
    case XML_PI_NODE:
        return NewInstruction(target.Document(), std::string(View(node->name)), std::string(content));
    case XML_DOCUMENT_FRAG_NODE:
        return NewFragment(target.Document());
    default:
        return NewText(target.Document(), content);
    }
}

} // namespace

OwnedNode CopyNode(xmlNode* node, bool deep, Tree& target)
{
    if (!deep || IsAttribute(node)) // an attribute is copied with its value in either case
        return CopyOne(node, target);
    OwnedNode root;
    xmlNode* parent = nullptr;
    WalkSubtree(
        node,
        [&](xmlNode* original)
        {
            OwnedNode copy = CopyOne(original, target);
            if (FollowsDroppedBlanks(original))
                MarkDroppedBlanks(copy.get());
            xmlNode* const added = copy.get();
            if (parent == nullptr)
                root = std::move(copy);
            else
                LinkChild(parent, copy.release(), nullptr);
            parent = added;
        },
        [&](xmlNode*) { parent = parent->parent; });
    return root;
}

} // namespace winport::dom
