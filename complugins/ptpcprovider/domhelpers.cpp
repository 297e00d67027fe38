#include "complugins/ptpcprovider/domhelpers.h"

#include <tvutil/singleline.h>
#include <tvutil/tavlencomexception.h>

#include <new>
#include <utility>

namespace
{

template <class Collection>
std::vector<ComPtr<IXMLDOMNode>> CollectNodes(Collection* collection, ThrowSite site)
{
    LONG count = 0;
    ThrowIfFailed(collection->get_length(&count), site);
    std::vector<ComPtr<IXMLDOMNode>> nodes;
    nodes.reserve(static_cast<std::size_t>(count));
    for (LONG index = 0; index < count; ++index)
    {
        ComPtr<IXMLDOMNode> node;
        ThrowIfFailed(collection->get_item(index, node.Put()), site);
        if (node)
            nodes.push_back(std::move(node));
    }
    return nodes;
}

} // namespace

CComBSTR MakeBstr(WStringView text, ThrowSite site)
{
    try
    {
        return CComBSTR(text);
    }
    catch (const std::bad_alloc&)
    {
        ThrowComException(E_OUTOFMEMORY, site);
    }
}

CXString TextForDocument(WStringView text)
{
    CXString whole = SingleLine(CXString::FromUtf8(CXString(text).ToUtf8()));
    for (const WCHAR noncharacter : {WCHAR(0xFFFE), WCHAR(0xFFFF)})
        whole.ReplaceAll(WStringView(&noncharacter, 1), W("\xFFFD"));
    return whole;
}

CXString QueryOf(const PrintTicketQueryBuilder& builder)
{
    CComBSTR query;
    builder.GetQuery(query.Put());
    return query;
}

VARIANT BorrowAsVariant(const CComBSTR& text) noexcept
{
    VARIANT variant{};
    VariantInit(&variant);
    variant.vt = VT_BSTR;
    variant.bstrVal = text.Get();
    return variant;
}

OwnedVariant::OwnedVariant() noexcept
{
    VariantInit(&m_variant);
}

OwnedVariant::~OwnedVariant()
{
    VariantClear(&m_variant);
}

VARIANT* OwnedVariant::Put() noexcept
{
    VariantClear(&m_variant);
    return &m_variant;
}

const VARIANT& OwnedVariant::Get() const noexcept
{
    return m_variant;
}

BSTR OwnedVariant::DetachString() noexcept
{
    m_variant.vt = VT_EMPTY;
    return m_variant.bstrVal;
}

std::vector<ComPtr<IXMLDOMNode>> NodesOf(IXMLDOMNodeList* list, ThrowSite site)
{
    return CollectNodes(list, site);
}

std::vector<ComPtr<IXMLDOMNode>> NodesOf(IXMLDOMNamedNodeMap* map, ThrowSite site)
{
    return CollectNodes(map, site);
}

HRESULT FindAttribute(IXMLDOMNode* node, const CXString& name, ComPtr<IXMLDOMNode>& attribute, ThrowSite site)
{
    ComPtr<IXMLDOMNamedNodeMap> attributes;
    ThrowIfFailed(node->get_attributes(attributes.Put()), site);
    if (!attributes) // only elements have a map
        return S_FALSE;
    const HRESULT result = attributes->getNamedItem(MakeBstr(name, site).Get(), attribute.Put());
    ThrowIfFailed(result, site);
    return attribute ? S_OK : S_FALSE;
}
