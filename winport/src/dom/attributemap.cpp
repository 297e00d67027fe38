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

HRESULT AttributeMap::setNamedItem(IXMLDOMNode*, IXMLDOMNode**)
{
    return Call([] { return E_NOTIMPL; });
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

HRESULT AttributeMap::getQualifiedItem(BSTR, BSTR, IXMLDOMNode**)
{
    return Call([] { return E_NOTIMPL; });
}

HRESULT AttributeMap::removeQualifiedItem(BSTR, BSTR, IXMLDOMNode**)
{
    return Call([] { return E_NOTIMPL; });
}

NodeRef AttributeMap::At(std::size_t index)
{
    const TreePtr& tree = m_element->GetTree();
    xmlAttr* const attribute = m_attributes.At(tree, m_element->Node()->properties, index);
    return attribute != nullptr ? ObjectOf(tree, AsNode(attribute)) : NodeRef();
}

std::size_t AttributeMap::Count()
{
    return m_attributes.Count(m_element->Node()->properties);
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
