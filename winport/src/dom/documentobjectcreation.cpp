// DocumentObject: new nodes.
#include "dom/attributes.h"
#include "dom/documentobject.h"
#include "dom/failure.h"
#include "dom/nodekinds.h"
#include "dom/qname.h"
#include "dom/strings.h"
#include "dom/variants.h"

namespace winport::dom
{

namespace
{

OwnedNode NewNamedElement(Tree& tree, BSTR name, BSTR namespaceUri)
{
    const std::string text = Utf8Of(name);
    const auto parts = ParseQName(text);
    if (!parts || IsDeclarationName(*parts))
        throw Failure{E_FAIL};
    return NewElement(tree.Document(), tree.Namespaces().Get(parts->prefix, XmlTextOf(namespaceUri)), parts->local);
}

OwnedNode NewNode(Tree& tree, LONG kind, BSTR name, BSTR namespaceUri)
{
    switch (kind)
    {
    case NODE_ELEMENT:
        return NewNamedElement(tree, name, namespaceUri);
    case NODE_ATTRIBUTE:
        return NewNamedAttribute(tree, Utf8Of(name), XmlTextOf(namespaceUri), std::string());
    case NODE_TEXT:
    case NODE_CDATA_SECTION:
    case NODE_COMMENT:
    case NODE_PROCESSING_INSTRUCTION:
        throw Failure{E_NOTIMPL};
    case NODE_ENTITY_REFERENCE:
    case NODE_ENTITY:
    case NODE_DOCUMENT:
    case NODE_DOCUMENT_FRAGMENT:
    case NODE_DOCUMENT_TYPE:
    case NODE_NOTATION:
        throw Failure{E_INVALIDARG};
    default:
        throw Failure{E_FAIL};
    }
}

} // namespace

HRESULT DocumentObject::createElement(BSTR, IXMLDOMElement**)
{
    return Call([] { return E_NOTIMPL; });
}

HRESULT DocumentObject::createDocumentFragment(IXMLDOMDocumentFragment**)
{
    return Call([] { return E_NOTIMPL; });
}

HRESULT DocumentObject::createTextNode(BSTR, IXMLDOMText**)
{
    return Call([] { return E_NOTIMPL; });
}

HRESULT DocumentObject::createComment(BSTR, IXMLDOMComment**)
{
    return Call([] { return E_NOTIMPL; });
}

HRESULT DocumentObject::createCDATASection(BSTR data, IXMLDOMCDATASection** section)
{
    return Call(
        [&]
        {
            if (section == nullptr)
                return E_INVALIDARG;
            *section = nullptr;
            return HandOutNew(GetTree(), NewCData(GetTree()->Document(), XmlTextOf(data)), section);
        });
}

HRESULT DocumentObject::createProcessingInstruction(BSTR, BSTR, IXMLDOMProcessingInstruction**)
{
    return Call([] { return E_NOTIMPL; });
}

HRESULT DocumentObject::createAttribute(BSTR, IXMLDOMAttribute**)
{
    return Call([] { return E_NOTIMPL; });
}

HRESULT DocumentObject::createEntityReference(BSTR, IXMLDOMEntityReference**)
{
    return Call([] { return E_NOTIMPL; });
}

HRESULT DocumentObject::createNode(VARIANT kind, BSTR name, BSTR namespaceUri, IXMLDOMNode** node)
{
    return Call(
        [&]
        {
            if (node == nullptr)
                return E_INVALIDARG;
            *node = nullptr;
            const std::optional<LONG> number = NumberOf(kind);
            if (!number)
                return E_INVALIDARG;
            return HandOutNew(GetTree(), NewNode(*GetTree(), *number, name, namespaceUri), node);
        });
}

} // namespace winport::dom
