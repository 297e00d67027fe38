#include "dom/links.h"

#include "dom/nodekinds.h"

namespace winport::dom
{

namespace
{

bool IsHeldItself(const xmlNode* node) noexcept
{
    if (node->_private != nullptr)
        return true;
    if (!IsElement(node))
        return false;
    for (const xmlAttr* attribute = node->properties; attribute != nullptr; attribute = attribute->next)
    {
        if (attribute->_private != nullptr)
            return true;
        for (const xmlNode* text = attribute->children; text != nullptr; text = text->next)
        {
            if (text->_private != nullptr)
                return true;
        }
    }
    return false;
}

bool IsSubtreeHeld(xmlNode* root) noexcept
{
    for (xmlNode* node = root; node != nullptr; node = NextInSubtree(node, root))
    {
        if (IsHeldItself(node))
            return true;
    }
    return false;
}

} // namespace

void LinkChild(xmlNode* parent, xmlNode* child, xmlNode* next) noexcept
{
    xmlNode* const previous = next != nullptr ? next->prev : parent->last;
    child->parent = parent;
    child->prev = previous;
    child->next = next;
    (previous != nullptr ? previous->next : parent->children) = child;
    (next != nullptr ? next->prev : parent->last) = child;
}

void LinkAttribute(xmlNode* element, xmlAttr* attribute, xmlAttr* next) noexcept
{
    xmlAttr* previous = next != nullptr ? next->prev : element->properties;
    if (next == nullptr)
    {
        while (previous != nullptr && previous->next != nullptr)
            previous = previous->next;
    }
    attribute->parent = element;
    attribute->prev = previous;
    attribute->next = next;
    (previous != nullptr ? previous->next : element->properties) = attribute;
    if (next != nullptr)
        next->prev = attribute;
}

void Unlink(xmlNode* node) noexcept
{
    xmlNode* const parent = node->parent;
    if (parent != nullptr && IsAttribute(node))
    {
        if (parent->properties == AsAttribute(node))
            parent->properties = AsAttribute(node->next);
    }
    else if (parent != nullptr)
    {
        if (parent->children == node)
            parent->children = node->next;
        if (parent->last == node)
            parent->last = node->prev;
    }
    if (node->prev != nullptr)
        node->prev->next = node->next;
    if (node->next != nullptr)
        node->next->prev = node->prev;
    node->parent = nullptr;
    node->prev = nullptr;
    node->next = nullptr;
}

xmlNode* TopOf(xmlNode* node) noexcept
{
    while (node->parent != nullptr)
        node = node->parent;
    return node;
}

bool IsSelfOrAncestor(const xmlNode* ancestor, const xmlNode* node) noexcept
{
    while (node != nullptr && node != ancestor)
        node = node->parent;
    return node != nullptr;
}

bool IsChildOf(const xmlNode* child, const xmlNode* parent) noexcept
{
    return child->parent == parent && !IsAttribute(child);
}

void FreeIfUnheld(xmlNode* node) noexcept
{
    // The way up usually meets the holder, so that the whole subtree is looked through only for the last of them.
    xmlNode* top = node;
    while (top->_private == nullptr && top->parent != nullptr)
        top = top->parent;
    if (top->_private != nullptr || top->type == XML_DOCUMENT_NODE || IsSubtreeHeld(top))
        return;
    FreeNode()(top);
}

void RemoveChildren(xmlNode* parent) noexcept
{
    while (xmlNode* const child = parent->children)
    {
        Unlink(child);
        FreeIfUnheld(child);
    }
}

} // namespace winport::dom
