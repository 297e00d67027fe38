#include "dom/documentobject.h"

#include "dom/links.h"
#include "dom/nodekinds.h"
#include "dom/strings.h"

namespace winport::dom
{

DocumentObject::DocumentObject(const TreePtr& tree) noexcept : NodeObject(tree, tree->DocumentNode())
{
    m_outcome.code = S_OK;
}

HRESULT DocumentObject::get_doctype(IXMLDOMDocumentType**)
{
    return Call([] { return E_NOTIMPL; });
}

HRESULT DocumentObject::get_implementation(IXMLDOMImplementation**)
{
    return Call([] { return E_NOTIMPL; });
}

HRESULT DocumentObject::get_documentElement(IXMLDOMElement** element)
{
    return Call(
        [&]
        {
            if (element == nullptr)
                return E_INVALIDARG;
            *element = nullptr;
            xmlNode* const root = GetTree()->RootElement();
            if (root == nullptr)
                return S_FALSE;
            *element = ObjectOf(GetTree(), root).Detach<IXMLDOMElement>();
            return S_OK;
        });
}

HRESULT DocumentObject::putref_documentElement(IXMLDOMElement*)
{
    return Call([] { return E_NOTIMPL; });
}

HRESULT DocumentObject::getElementsByTagName(BSTR, IXMLDOMNodeList**)
{
    return Call([] { return E_NOTIMPL; });
}

HRESULT DocumentObject::nodeFromID(BSTR, IXMLDOMNode**)
{
    return Call([] { return E_NOTIMPL; });
}

// Loading is done when the call returns, nothing outside a document is read, and no document has a type: these three
// are taken because callers set them.
HRESULT DocumentObject::get_async(VARIANT_BOOL*)
{
    return Call([] { return E_NOTIMPL; });
}

HRESULT DocumentObject::put_async(VARIANT_BOOL)
{
    return Call([] { return S_OK; });
}

HRESULT DocumentObject::get_validateOnParse(VARIANT_BOOL*)
{
    return Call([] { return E_NOTIMPL; });
}

HRESULT DocumentObject::put_validateOnParse(VARIANT_BOOL)
{
    return Call([] { return S_OK; });
}

HRESULT DocumentObject::get_resolveExternals(VARIANT_BOOL*)
{
    return Call([] { return E_NOTIMPL; });
}

HRESULT DocumentObject::put_resolveExternals(VARIANT_BOOL)
{
    return Call([] { return S_OK; });
}

HRESULT DocumentObject::get_preserveWhiteSpace(VARIANT_BOOL*)
{
    return Call([] { return E_NOTIMPL; });
}

HRESULT DocumentObject::put_preserveWhiteSpace(VARIANT_BOOL isPreserving)
{
    return Call(
        [&]
        {
            GetTree()->Settings().preserveWhiteSpace = isPreserving != VARIANT_FALSE;
            return S_OK;
        });
}

HRESULT DocumentObject::setProperty(BSTR name, VARIANT value)
{
    return Call(
        [&]
        {
            const HRESULT result = GetTree()->Settings().SetProperty(Utf8Of(name), value);
            GetTree()->SelectionNamespacesChanged();
            return result;
        });
}

HRESULT DocumentObject::getProperty(BSTR, VARIANT*)
{
    return Call([] { return E_NOTIMPL; });
}

HRESULT DocumentObject::put_onreadystatechange(VARIANT)
{
    return Call([] { return E_NOTIMPL; });
}

HRESULT DocumentObject::put_ondataavailable(VARIANT)
{
    return Call([] { return E_NOTIMPL; });
}

HRESULT DocumentObject::put_ontransformnode(VARIANT)
{
    return Call([] { return E_NOTIMPL; });
}

HRESULT DocumentObject::get_namespaces(IXMLDOMSchemaCollection**)
{
    return Call([] { return E_NOTIMPL; });
}

HRESULT DocumentObject::get_schemas(VARIANT*)
{
    return Call([] { return E_NOTIMPL; });
}

HRESULT DocumentObject::putref_schemas(VARIANT)
{
    return Call([] { return E_NOTIMPL; });
}

} // namespace winport::dom
