#include "dom/nodelists.h"

#include <utility>

namespace winport::dom
{

HRESULT NodeList::get_item(LONG index, IXMLDOMNode** item)
{
    return Call([&] { return HandOutAt(index, item); });
}

HRESULT NodeList::get_length(LONG* length)
{
    return Call(
        [&]
        {
            if (length == nullptr)
                return E_INVALIDARG;
            *length = static_cast<LONG>(Count());
            return S_OK;
        });
}

HRESULT NodeList::nextNode(IXMLDOMNode** next)
{
    return Call(
        [&]
        {
            const HRESULT result = HandOutAt(m_next, next);
            if (result == S_OK)
                ++m_next;
            return result;
        });
}

HRESULT NodeList::reset()
{
    return Call(
        [&]
        {
            m_next = 0;
            return S_OK;
        });
}

HRESULT NodeList::get__newEnum(IUnknown**)
{
    return Call([] { return E_NOTIMPL; });
}

HRESULT NodeList::HandOutAt(LONG index, IXMLDOMNode** item)
{
    if (item == nullptr)
        return E_INVALIDARG;
    *item = nullptr;
    NodeRef node = index >= 0 ? At(static_cast<std::size_t>(index)) : NodeRef();
    if (!node)
        return S_FALSE;
    *item = node.Detach<IXMLDOMNode>();
    return S_OK;
}

ChildList::ChildList(NodeRef parent) noexcept : m_parent(std::move(parent))
{
}

NodeRef ChildList::At(std::size_t index)
{
    const TreePtr& tree = m_parent->GetTree();
    if (m_last == nullptr || !m_mark.IsPresent(tree) || index < m_lastIndex)
    {
        m_last = m_parent->Node()->children;
        m_lastIndex = 0;
        m_mark.SetPresent(tree);
    }
    xmlNode* node = m_last;
    std::size_t at = m_lastIndex;
    for (; node != nullptr && at < index; ++at)
        node = node->next;
    if (node == nullptr)
        return NodeRef();
    m_last = node;
    m_lastIndex = at;
    return ObjectOf(tree, node);
}

std::size_t ChildList::Count()
{
    std::size_t count = 0;
    for (const xmlNode* node = m_parent->Node()->children; node != nullptr; node = node->next)
        ++count;
    return count;
}

SnapshotList::SnapshotList(std::vector<NodeRef> nodes) noexcept : m_nodes(std::move(nodes))
{
}

NodeRef SnapshotList::At(std::size_t index)
{
    return index < m_nodes.size() ? m_nodes[index] : NodeRef();
}

std::size_t SnapshotList::Count()
{
    return m_nodes.size();
}

} // namespace winport::dom
