#include "dom/attributemap.h"

#include <utility>

#include "dom/attributes.h"
#include "dom/nodekinds.h"
#include "dom/strings.h"

namespace winport::dom
{

AttributeMap::AttributeMap(NodeRef element) noexcept : m_element(std::move(element))
{
}

HRESULT AttributeMap::getNamedItem(BSTR name, IXMLDOMNode** item)
{
    return Call(
        [&]
        {
            if (name == nullptr)
                return E_INVALIDARG;
            return HandOutAttribute(FindAttribute(m_element->Node(), Utf8Of(name)), item);
        });
}

HRESULT AttributeMap::setNamedItem(IXMLDOMNode* newItem, IXMLDOMNode** item)
{
    return Call(
        [&]
        {
            if (item != nullptr)
                *item = nullptr;
            NodeRef attribute = CoreOf(newItem);
            if (!attribute)
                return E_INVALIDARG;
            PutAttribute(*m_element.Get(), *attribute.Get());
            if (item != nullptr)
                *item = attribute.Detach<IXMLDOMNode>();
            return S_OK;
        });
}

HRESULT AttributeMap::removeNamedItem(BSTR name, IXMLDOMNode** item)
{
    return Call(
        [&]
        {
            if (name == nullptr)
                return E_INVALIDARG;
            return Take(FindAttribute(m_element->Node(), Utf8Of(name)), item);
        });
}

HRESULT AttributeMap::get_item(LONG index, IXMLDOMNode** item)
{
    return Call([&] { return HandOutAt(index, item); });
}

HRESULT AttributeMap::get_length(LONG* length)
{
    return Call(
        [&]
        {
            if (length == nullptr)
                return E_INVALIDARG;
            *length = 0;
            for (const xmlAttr* attribute = m_element->Node()->properties; attribute != nullptr;
                 attribute = attribute->next)
                ++*length;
            return S_OK;
        });
}

HRESULT AttributeMap::getQualifiedItem(BSTR baseName, BSTR namespaceUri, IXMLDOMNode** item)
{
    return Call(
        [&]
        {
            if (baseName == nullptr)
                return E_INVALIDARG;
            return HandOutAttribute(FindAttribute(m_element->Node(), Utf8Of(baseName), Utf8Of(namespaceUri)), item);
        });
}

HRESULT AttributeMap::removeQualifiedItem(BSTR baseName, BSTR namespaceUri, IXMLDOMNode** item)
{
    return Call(
        [&]
        {
            if (baseName == nullptr)
                return E_INVALIDARG;
            return Take(FindAttribute(m_element->Node(), Utf8Of(baseName), Utf8Of(namespaceUri)), item);
        });
}

HRESULT AttributeMap::nextNode(IXMLDOMNode** next)
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

HRESULT AttributeMap::reset()
{
    return Call(
        [&]
        {
            m_next = 0;
            return S_OK;
        });
}

HRESULT AttributeMap::get__newEnum(IUnknown**)
{
    return Call([] { return E_NOTIMPL; });
}

HRESULT AttributeMap::HandOutAt(LONG index, IXMLDOMNode** item)
{
    if (index < 0)
        return HandOutAttribute(nullptr, item);
    const TreePtr& tree = m_element->GetTree();
    if (m_last == nullptr || !m_mark.IsPresent(tree) || index < m_lastIndex)
    {
        m_last = m_element->Node()->properties;
        m_lastIndex = 0;
        m_mark.SetPresent(tree);
    }
    xmlAttr* attribute = m_last;
    LONG at = m_lastIndex;
    for (; attribute != nullptr && at < index; ++at)
        attribute = attribute->next;
    if (attribute != nullptr)
    {
        m_last = attribute;
        m_lastIndex = at;
    }
    return HandOutAttribute(attribute, item);
}

HRESULT AttributeMap::HandOutAttribute(xmlAttr* attribute, IXMLDOMNode** item)
{
    return HandOut(m_element->GetTree(), AsNode(attribute), item);
}

HRESULT AttributeMap::Take(xmlAttr* attribute, IXMLDOMNode** item)
{
    if (item != nullptr)
        *item = nullptr;
    if (attribute == nullptr)
        return S_FALSE;
    NodeRef taken = TakeAttribute(*m_element.Get(), attribute);
    if (item != nullptr)
        *item = taken.Detach<IXMLDOMNode>();
    return S_OK;
}

} // namespace winport::dom
