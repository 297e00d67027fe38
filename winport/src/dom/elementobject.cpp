#include "dom/elementobject.h"

#include "dom/attributes.h"
#include "dom/nodekinds.h"
#include "dom/strings.h"
#include "dom/variants.h"

namespace winport::dom
{

HRESULT ElementObject::get_tagName(BSTR*)
{
    return Call([] { return E_NOTIMPL; });
}

HRESULT ElementObject::getAttribute(BSTR name, VARIANT* value)
{
    return Call(
        [&]
        {
            if (name == nullptr || value == nullptr)
                return E_INVALIDARG;
            SetEmpty(*value, VT_NULL);
            const xmlAttr* const attribute = FindAttribute(Node(), Utf8Of(name));
            if (attribute == nullptr)
                return S_FALSE;
            SetString(*value, NewBstr(ValueOf(attribute)));
            return S_OK;
        });
}

HRESULT ElementObject::setAttribute(BSTR, VARIANT)
{
    return Call([] { return E_NOTIMPL; });
}

HRESULT ElementObject::removeAttribute(BSTR)
{
    return Call([] { return E_NOTIMPL; });
}

HRESULT ElementObject::getAttributeNode(BSTR, IXMLDOMAttribute**)
{
    return Call([] { return E_NOTIMPL; });
}

HRESULT ElementObject::setAttributeNode(IXMLDOMAttribute* attribute, IXMLDOMAttribute** replaced)
{
    return Call(
        [&]
        {
            if (replaced != nullptr)
                *replaced = nullptr;
            const NodeRef added = CoreOf(attribute);
            if (!added)
                return E_INVALIDARG;
            NodeRef old = PutAttribute(*this, *added.Get());
            if (replaced != nullptr && old)
                *replaced = old.Detach<IXMLDOMAttribute>();
            return S_OK;
        });
}

HRESULT ElementObject::removeAttributeNode(IXMLDOMAttribute*, IXMLDOMAttribute**)
{
    return Call([] { return E_NOTIMPL; });
}

HRESULT ElementObject::getElementsByTagName(BSTR, IXMLDOMNodeList**)
{
    return Call([] { return E_NOTIMPL; });
}

HRESULT ElementObject::normalize()
{
    return Call([] { return E_NOTIMPL; });
}

} // namespace winport::dom
