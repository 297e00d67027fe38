// The two kinds of node lists: the children of a node as they are at each moment, and the result of a query.
#pragma once

#include <vector>

#include "dom/counted.h"
#include "dom/nodecore.h"

namespace winport::dom
{

// What both do: a position for nextNode, and indexes checked.
class NodeList : public Counted<IXMLDOMNodeList, IID_IXMLDOMNodeList>
{
public:
    HRESULT STDMETHODCALLTYPE get_item(LONG index, IXMLDOMNode** item) override;
    HRESULT STDMETHODCALLTYPE get_length(LONG* length) override;
    HRESULT STDMETHODCALLTYPE nextNode(IXMLDOMNode** next) override;
    HRESULT STDMETHODCALLTYPE reset() override;
    HRESULT STDMETHODCALLTYPE get__newEnum(IUnknown** enumerator) override;

private:
    // The item's object, or an empty reference behind the end.
    virtual NodeRef At(std::size_t index) = 0;
    virtual std::size_t Count() = 0;

    HRESULT HandOutAt(LONG index, IXMLDOMNode** item);

    LONG m_next = 0;
};

// Live: it shows insertions and removals. The place of the last item is remembered, so that walking is linear.
class ChildList final : public NodeList
{
public:
    explicit ChildList(NodeRef parent) noexcept;

private:
    NodeRef At(std::size_t index) override;
    std::size_t Count() override;

    NodeRef m_parent;
    xmlNode* m_last = nullptr;
    std::size_t m_lastIndex = 0;
    ChangeMark m_mark; // of m_last
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
