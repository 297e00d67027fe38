// The two kinds of node lists: the children of a node as they are at each moment, and the result of a query.
#pragma once

#include <vector>

#include "dom/collection.h"

namespace winport::dom
{

using NodeList = Collection<IXMLDOMNodeList, IID_IXMLDOMNodeList>;

// Live: it shows insertions and removals.
class ChildList final : public NodeList
{
public:
    explicit ChildList(NodeRef parent) noexcept;

private:
    NodeRef At(std::size_t index) override;
    std::size_t Count() override;

    NodeRef m_parent;
    WalkedChain<xmlNode> m_children;
};

// Fixed: a node that is removed from the document afterwards stays in the list.
class SnapshotList final : public NodeList
{
public:
    explicit SnapshotList(std::vector<NodeRef> nodes) noexcept;

private:
    NodeRef At(std::size_t index) override;
    std::size_t Count() override;

    std::vector<NodeRef> m_nodes;
};

} // namespace winport::dom
