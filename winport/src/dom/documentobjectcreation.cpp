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

OwnedNode NewCheckedInstruction(Tree& tree, BSTR target, BSTR data)
{
    const std::string name = Utf8Of(target);
    const auto parts = ParseQName(name);
    const std::string content = XmlTextOf(data);
    // "xml" makes the XML declaration, whose data begin with the version; its other spellings are reserved.
    const bool isReserved = name.size() == 3 && (name[0] | 0x20) == 'x' && (name[1] | 0x20) == 'm' &&
                            (name[2] | 0x20) == 'l' && (name != "xml" || !content.starts_with("version"));
    if (!parts || !parts->prefix.empty() || isReserved)
        throw Failure{E_FAIL};
    CheckContent(XML_PI_NODE, content);
    return NewInstruction(tree.Document(), name, content);
}

OwnedNode NewCheckedComment(Tree& tree, BSTR data)
{
    const std::string content = XmlTextOf(data);
    CheckContent(XML_COMMENT_NODE, content);
    return NewComment(tree.Document(), content);
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
        return NewText(tree.Document(), {});
    case NODE_CDATA_SECTION:
        return NewCData(tree.Document(), {});
    case NODE_COMMENT:
        return NewComment(tree.Document(), {});
    case NODE_PROCESSING_INSTRUCTION:
        return NewCheckedInstruction(tree, name, nullptr);
    case NODE_DOCUMENT_FRAGMENT:
        return NewFragment(tree.Document());
    case NODE_ENTITY_REFERENCE:
    case NODE_ENTITY:
    case NODE_DOCUMENT:
    case NODE_DOCUMENT_TYPE:
    case NODE_NOTATION:
        throw Failure{E_INVALIDARG};
    default:
        throw Failure{E_FAIL};
    }
}

} // namespace

HRESULT DocumentObject::createElement(BSTR name, IXMLDOMElement** element)
{
    return Call(
        [&]
        {
            if (name == nullptr || element == nullptr)
                return E_INVALIDARG;
            *element = nullptr;
            return HandOutNew(GetTree(), NewNamedElement(*GetTree(), name, nullptr), element);
        });
}

HRESULT DocumentObject::createDocumentFragment(IXMLDOMDocumentFragment** fragment)
{
    return Call(
        [&]
        {
            if (fragment == nullptr)
                return E_INVALIDARG;
            *fragment = nullptr;
            return HandOutNew(GetTree(), NewFragment(GetTree()->Document()), fragment);
        });
}

HRESULT DocumentObject::createTextNode(BSTR data, IXMLDOMText** text)
{
    return Call(
        [&]
        {
            if (text == nullptr)
                return E_INVALIDARG;
            *text = nullptr;
            return HandOutNew(GetTree(), NewText(GetTree()->Document(), XmlTextOf(data)), text);
        });
}

HRESULT DocumentObject::createComment(BSTR data, IXMLDOMComment** comment)
{
    return Call(
        [&]
        {
            if (comment == nullptr)
                return E_INVALIDARG;
            *comment = nullptr;
            return HandOutNew(GetTree(), NewCheckedComment(*GetTree(), data), comment);
        });
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

HRESULT DocumentObject::createProcessingInstruction(BSTR target, BSTR data, IXMLDOMProcessingInstruction** instruction)
{
    return Call(
        [&]
        {
            if (target == nullptr || instruction == nullptr)
                return E_INVALIDARG;
            *instruction = nullptr;
            return HandOutNew(GetTree(), NewCheckedInstruction(*GetTree(), target, data), instruction);
        });
}

HRESULT DocumentObject::createAttribute(BSTR name, IXMLDOMAttribute** attribute)
{
    return Call(
        [&]
        {
            if (name == nullptr || attribute == nullptr)
                return E_INVALIDARG;
            *attribute = nullptr;
            return HandOutNew(GetTree(), NewNamedAttribute(*GetTree(), Utf8Of(name), {}, {}), attribute);
        });
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
