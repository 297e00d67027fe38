#include "tests/platform/domfixture.h"

#include <objbase.h>

#include "utilitiesstaticlib/domclassid.h"

std::string Variant::Text() const
{
    return m_value.vt == VT_BSTR ? Narrow(WStringView(m_value.bstrVal, SysStringLen(m_value.bstrVal))) : "-";
}

DomDocument NewDocument()
{
    DomDocument document;
    EXPECT_EQ(S_OK, CoCreateInstance(kDomDocumentClassId, nullptr, CLSCTX_INPROC_SERVER,
                                     IidOf<IXMLDOMDocument2>::Value(), document.PutVoid()));
    document->put_async(VARIANT_FALSE);
    return document;
}

HRESULT LoadText(const DomDocument& document, WStringView text)
{
    VARIANT_BOOL isLoaded = VARIANT_FALSE;
    const HRESULT result = document->loadXML(CComBSTR(text).Get(), &isLoaded);
    EXPECT_EQ(isLoaded == VARIANT_TRUE, result == S_OK);
    return result;
}

DomDocument Loaded(WStringView text)
{
    DomDocument document = NewDocument();
    EXPECT_EQ(S_OK, LoadText(document, text)) << Narrow(text) << "\n" << ReasonOf(document);
    return document;
}

DomElement RootOf(const DomDocument& document)
{
    DomElement root;
    const HRESULT found = document->get_documentElement(root.Put());
    EXPECT_EQ(found, root ? S_OK : S_FALSE);
    return root;
}

DomNode Select(IXMLDOMNode* context, const WCHAR* query)
{
    DomNode node;
    const HRESULT found = context->selectSingleNode(CComBSTR(query).Get(), node.Put());
    EXPECT_EQ(found, node ? S_OK : S_FALSE) << Narrow(query);
    return node;
}

HRESULT SetProperty(const DomDocument& document, const WCHAR* name, WStringView value)
{
    return document->setProperty(CComBSTR(name).Get(), Variant(value).Get());
}

DomNode Created(const DomDocument& document, DOMNodeType kind, const WCHAR* name, const WCHAR* uri)
{
    DomNode node;
    EXPECT_EQ(S_OK,
              document->createNode(Variant(LONG{kind}).Get(), CComBSTR(name).Get(), CComBSTR(uri).Get(), node.Put()))
        << Narrow(name);
    return node;
}

HRESULT Append(IXMLDOMNode* parent, IXMLDOMNode* child)
{
    DomNode appended;
    return parent->appendChild(child, appended.Put());
}

HRESULT PutText(IXMLDOMNode* node, WStringView text)
{
    return node->put_text(CComBSTR(text).Get());
}

ComPtr<IXMLDOMNamedNodeMap> MapOf(IXMLDOMNode* element)
{
    ComPtr<IXMLDOMNamedNodeMap> map;
    EXPECT_EQ(S_OK, element->get_attributes(map.Put()));
    return map;
}

void AddAttribute(const DomDocument& document, IXMLDOMNode* element, const WCHAR* name, const WCHAR* uri,
                  const WCHAR* value)
{
    const DomNode node = Created(document, NODE_ATTRIBUTE, name, uri);
    ComPtr<IXMLDOMAttribute> attribute, replaced;
    DomElement owner;
    ASSERT_EQ(S_OK, PutText(node.Get(), value));
    ASSERT_EQ(S_OK, node.As(attribute));
    ASSERT_EQ(S_OK, DomNode(element).As(owner));
    ASSERT_EQ(S_OK, owner->setAttributeNode(attribute.Get(), replaced.Put())) << Narrow(name);
}

HRESULT RemoveAttribute(IXMLDOMNode* element, const WCHAR* name)
{
    DomNode removed;
    return MapOf(element)->removeNamedItem(CComBSTR(name).Get(), removed.Put());
}

std::string Ask(IXMLDOMNode* node, TextGetter getter)
{
    CComBSTR text;
    const HRESULT found = (node->*getter)(text.Put());
    EXPECT_EQ(found, text.Get() != nullptr ? S_OK : S_FALSE);
    return text.Get() != nullptr ? Narrow(text.View()) : "-";
}

std::string NameOf(IXMLDOMNode* node)
{
    return Ask(node, &IXMLDOMNode::get_nodeName);
}

std::string TextOf(IXMLDOMNode* node)
{
    return Ask(node, &IXMLDOMNode::get_text);
}

std::string XmlOf(IXMLDOMNode* node)
{
    return Ask(node, &IXMLDOMNode::get_xml);
}

std::string ReasonOf(const DomDocument& document)
{
    ComPtr<IXMLDOMParseError> error;
    CComBSTR reason;
    if (document->get_parseError(error.Put()) == S_OK)
        error->get_reason(reason.Put());
    return Narrow(reason.View());
}

ULONG ReferencesOf(IUnknown* object)
{
    object->AddRef();
    return object->Release();
}

std::string MeaningOfText(IXMLDOMNode* node)
{
    CComBSTR xml;
    EXPECT_EQ(S_OK, node->get_xml(xml.Put()));
    return Meaning(Loaded(xml.View()).Get());
}
