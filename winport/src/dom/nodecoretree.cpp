// NodeCore: the place in the tree and its changes.
#include "dom/attributemap.h"
#include "dom/documentobject.h"
#include "dom/failure.h"
#include "dom/insertion.h"
#include "dom/links.h"
#include "dom/nodecopy.h"
#include "dom/nodecore.h"
#include "dom/nodekinds.h"
#include "dom/nodelists.h"
#include "dom/variants.h"

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

HRESULT NodeCore::GetLastChild(IXMLDOMNode** child) const
{
    return HandOut(m_tree, m_node->last, child);
}

HRESULT NodeCore::GetPreviousSibling(IXMLDOMNode** sibling) const
{
    return HandOut(m_tree, IsAttribute(m_node) ? nullptr : m_node->prev, sibling);
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

HRESULT NodeCore::HasChildren(VARIANT_BOOL* hasChildren) const
{
    if (hasChildren == nullptr)
        return E_INVALIDARG;
    *hasChildren = m_node->children != nullptr ? VARIANT_TRUE : VARIANT_FALSE;
    return m_node->children != nullptr ? S_OK : S_FALSE;
}

HRESULT NodeCore::GetOwner(IXMLDOMDocument** document) const
{
    if (document == nullptr)
        return E_INVALIDARG;
    *document = nullptr;
    if (m_node->type == XML_DOCUMENT_NODE)
        return S_FALSE;
    *document = ObjectOf(m_tree, m_tree->DocumentNode()).Detach<IXMLDOMDocument>();
    return S_OK;
}

HRESULT NodeCore::Clone(bool deep, IXMLDOMNode** clone) const
{
    if (clone == nullptr)
        return E_INVALIDARG;
    *clone = nullptr;
    if (m_node->type != XML_DOCUMENT_NODE)
        return HandOutNew(m_tree, CopyNode(m_node, deep, *m_tree), clone);
    const TreePtr copy = Tree::Create(m_tree->Settings());
    for (xmlNode* child = deep ? m_node->children : nullptr; child != nullptr; child = child->next)
        LinkChild(copy->DocumentNode(), CopyNode(child, true, *copy).release(), nullptr);
    return HandOut(copy, copy->DocumentNode(), clone);
}

HRESULT NodeCore::InsertBefore(IXMLDOMNode* child, const VARIANT& reference, IXMLDOMNode** inserted)
{
    const NodeRef newChild = CoreOf(child);
    const NodeRef next = CoreOf(InterfaceOf(reference));
    if (!newChild || (next && !IsChildOf(next->Node(), m_node)))
        return E_INVALIDARG;
    InsertChild(*this, *newChild.Get(), next ? next->Node() : nullptr);
    if (inserted != nullptr)
        *inserted = NodeRef(newChild).Detach<IXMLDOMNode>();
    return S_OK;
}

HRESULT NodeCore::Append(IXMLDOMNode* child, IXMLDOMNode** appended)
{
    VARIANT atEnd{};
    SetEmpty(atEnd, VT_NULL);
    return InsertBefore(child, atEnd, appended);
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

HRESULT NodeCore::Replace(IXMLDOMNode* newChild, IXMLDOMNode* oldChild, IXMLDOMNode** replaced)
{
    if (replaced != nullptr)
        *replaced = nullptr;
    const NodeRef added = CoreOf(newChild);
    NodeRef removed = CoreOf(oldChild);
    if (!added || !removed || !IsChildOf(removed->Node(), m_node))
        return E_INVALIDARG;
    if (added.Get() != removed.Get())
    {
        InsertChild(*this, *added.Get(), removed->Node()->next, removed->Node());
        Unlink(removed->Node());
        m_tree->CountChange();
    }
    if (replaced != nullptr)
        *replaced = removed.Detach<IXMLDOMNode>();
    return S_OK;
}

} // namespace winport::dom
