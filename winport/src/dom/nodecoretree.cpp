// NodeCore: the place in the tree and its changes.
#include "dom/attributemap.h"
#include "dom/documentobject.h"
#include "dom/insertion.h"
#include "dom/links.h"
#include "dom/nodecore.h"
#include "dom/nodekinds.h"
#include "dom/nodelists.h"

namespace winport::dom
{

// An attribute has no place among children: no parent, no siblings.
HRESULT NodeCore::GetParent(IXMLDOMNode** parent) const
{
    return HandOut(m_tree, IsAttribute(m_node) ? nullptr : m_node->parent, parent);
}

HRESULT NodeCore::GetChildren(IXMLDOMNodeList** children)
{
    if (children == nullptr)
        return E_INVALIDARG;
    *children = nullptr;
    *children = new ChildList(NodeRef::Share(this));
    return S_OK;
}

HRESULT NodeCore::GetFirstChild(IXMLDOMNode** child) const
{
    return HandOut(m_tree, m_node->children, child);
}

HRESULT NodeCore::GetNextSibling(IXMLDOMNode** sibling) const
{
    return HandOut(m_tree, IsAttribute(m_node) ? nullptr : m_node->next, sibling);
}

HRESULT NodeCore::GetAttributes(IXMLDOMNamedNodeMap** attributes)
{
    if (attributes == nullptr)
        return E_INVALIDARG;
    *attributes = nullptr;
    if (!IsElement(m_node))
        return S_FALSE;
    *attributes = new AttributeMap(NodeRef::Share(this));
    return S_OK;
}

HRESULT NodeCore::Append(IXMLDOMNode* child, IXMLDOMNode** appended)
{
    NodeRef newChild = CoreOf(child);
    if (!newChild)
        return E_INVALIDARG;
    AppendChild(*this, *newChild.Get());
    if (appended != nullptr)
        *appended = newChild.Detach<IXMLDOMNode>();
    return S_OK;
}

HRESULT NodeCore::Remove(IXMLDOMNode* child, IXMLDOMNode** removed)
{
    if (removed != nullptr)
        *removed = nullptr;
    NodeRef oldChild = CoreOf(child);
    if (!oldChild || !IsChildOf(oldChild->Node(), m_node))
        return E_INVALIDARG;
    Unlink(oldChild->Node());
    m_tree->CountChange();
    if (removed != nullptr)
        *removed = oldChild.Detach<IXMLDOMNode>();
    return S_OK;
}

} // namespace winport::dom
