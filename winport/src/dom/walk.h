// A walk over a subtree that tells when an element is left, without recursion: trees that callers build have no
// bound on their depth.
#pragma once

#include <libxml/tree.h>

namespace winport::dom
{

// enter(node) for every node of the subtree in document order, leave(node) after its children; attributes are left out.
template <class Enter, class Leave>
void WalkSubtree(xmlNode* root, Enter&& enter, Leave&& leave)
{
    xmlNode* node = root;
    for (;;)
    {
        enter(node);
        if (node->children != nullptr)
        {
            node = node->children;
            continue;
        }
        leave(node);
        while (node != root && node->next == nullptr)
        {
            node = node->parent;
            leave(node);
        }
        if (node == root)
            return;
        node = node->next;
    }
}

} // namespace winport::dom
