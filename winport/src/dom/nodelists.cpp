#include "dom/nodelists.h"

#include <utility>

namespace winport::dom
{

ChildList::ChildList(NodeRef parent) noexcept : m_parent(std::move(parent))
{
}

NodeRef ChildList::At(std::size_t index)
{
    const TreePtr& tree = m_parent->GetTree();
    xmlNode* const child = m_children.At(tree, m_parent->Node()->children, index);
    return child != nullptr ? ObjectOf(tree, child) : NodeRef();
}

std::size_t ChildList::Count()
{
    return m_children.Count(m_parent->Node()->children);
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
