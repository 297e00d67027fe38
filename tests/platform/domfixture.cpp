#include "tests/platform/domfixture.h"

#include <objbase.h>

#include "utilitiesstaticlib/domclassid.h"

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

HRESULT PutText(IXMLDOMNode* node, WStringView text)
{
    return node->put_text(CComBSTR(text).Get());
}

std::string TextOf(IXMLDOMNode* node)
{
    CComBSTR text;
    EXPECT_EQ(S_OK, node->get_text(text.Put()));
    return Narrow(text.View());
}

std::string XmlOf(IXMLDOMNode* node)
{
    CComBSTR text;
    EXPECT_EQ(S_OK, node->get_xml(text.Put()));
    return Narrow(text.View());
}

std::string ReasonOf(const DomDocument& document)
{
    ComPtr<IXMLDOMParseError> error;
    CComBSTR reason;
    if (document->get_parseError(error.Put()) == S_OK)
        error->get_reason(reason.Put());
    return Narrow(reason.View());
}
