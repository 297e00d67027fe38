// Collection<Interface>: what node lists and attribute maps share: items by index and one after another.
#pragma once

#include "dom/counted.h"
#include "dom/nodecore.h"

namespace winport::dom
{

template <class Interface, const IID& InterfaceId>
class Collection : public Counted<Interface, InterfaceId>
{
public:
    HRESULT STDMETHODCALLTYPE get_item(LONG index, IXMLDOMNode** item) override
    {
        return Call([&] { return HandOutAt(index, item); });
    }

    HRESULT STDMETHODCALLTYPE get_length(LONG* length) override
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

    HRESULT STDMETHODCALLTYPE nextNode(IXMLDOMNode** next) override
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

    HRESULT STDMETHODCALLTYPE reset() override
    {
        return Call(
            [&]
            {
                m_next = 0;
                return S_OK;
            });
    }

    HRESULT STDMETHODCALLTYPE get__newEnum(IUnknown**) override
    {
        return Call([] { return E_NOTIMPL; });
    }

private:
    // The item's object, or an empty reference behind the end.
    virtual NodeRef At(std::size_t index) = 0;
    virtual std::size_t Count() = 0;

    HRESULT HandOutAt(LONG index, IXMLDOMNode** item)
    {
        if (item == nullptr)
            return E_INVALIDARG;
        *item = nullptr;
        NodeRef node = index >= 0 ? At(static_cast<std::size_t>(index)) : NodeRef();
        if (!node)
            return S_FALSE;
        *item = node.template Detach<IXMLDOMNode>();
        return S_OK;
    }

    LONG m_next = 0;
};

// The place of the last item of a chain of siblings, so that walking by index is linear as long as the tree stays.
template <class Link>
class WalkedChain
{
public:
    Link* At(const TreePtr& tree, Link* first, std::size_t index)
    {
        if (m_last == nullptr || !m_mark.IsPresent(tree) || index < m_lastIndex)
        {
            m_last = first;
            m_lastIndex = 0;
            m_mark.SetPresent(tree);
        }
        Link* link = m_last;
        std::size_t at = m_lastIndex;
        for (; link != nullptr && at < index; ++at)
            link = link->next;
        if (link != nullptr)
        {
            m_last = link;
            m_lastIndex = at;
        }
        return link;
    }

    static std::size_t Count(const Link* first)
    {
        std::size_t count = 0;
        for (; first != nullptr; first = first->next)
            ++count;
        return count;
    }

private:
    Link* m_last = nullptr;
    std::size_t m_lastIndex = 0;
    ChangeMark m_mark; // of m_last
};

} // namespace winport::dom
