// Every DOM call and every allocation on the way of one life of a document fails in turn: nothing is lost, and the
// same steps work afterwards.
#include <functional>

#include <gtest/gtest.h>
#include <objbase.h>
#include <winport/faultinjection.h>

#include "tests/platform/domfixture.h"
#include "utilitiesstaticlib/domclassid.h"

namespace
{

// Strings are made beforehand, so that only the DOM's own work is counted.
struct Strings
{
    CComBSTR text{W("<a xmlns:p='u' xmlns:t='u' p:x='1'><p:b>one</p:b><c> <d/> </c></a>")};
    CComBSTR namespaces{W("xmlns:q='u'")};
    CComBSTR property{W("SelectionNamespaces")};
    CComBSTR query{W("//q:b | //d")};
    CComBSTR created{W("p:n")};
    CComBSTR uri{W("u")};
    CComBSTR attribute{W("xsi:type")};
    CComBSTR instance{kInstanceUri};
    CComBSTR value{W("<\u00E9>")};
    CComBSTR lost{W("xmlns:p")};
};

HRESULT Build(const Strings& strings, const DomDocument& document, IXMLDOMNode* parent)
{
    VARIANT kind = Variant(LONG{NODE_ELEMENT}).Get();
    DomNode element, attribute, appended;
    ComPtr<IXMLDOMNamedNodeMap> map;
    HRESULT result = document->createNode(kind, strings.created.Get(), strings.uri.Get(), element.Put());
    kind.lVal = NODE_ATTRIBUTE;
    if (result == S_OK)
        result = document->createNode(kind, strings.attribute.Get(), strings.instance.Get(), attribute.Put());
    if (result == S_OK)
        result = attribute->put_text(strings.value.Get());
    if (result == S_OK)
        result = element->get_attributes(map.Put());
    if (result == S_OK)
        result = map->setNamedItem(attribute.Get(), appended.Put());
    if (result == S_OK)
        result = element->put_text(strings.value.Get());
    if (result == S_OK)
        result = parent->appendChild(element.Get(), appended.Put());
    return result;
}

HRESULT RemoveFound(const Strings& strings, const DomDocument& document)
{
    ComPtr<IXMLDOMNodeList> list;
    HRESULT result = document->selectNodes(strings.query.Get(), list.Put());
    DomNode node, parent, removed;
    if (result == S_OK)
        result = list->get_item(1, node.Put());
    if (result == S_OK)
        result = node->get_parentNode(parent.Put());
    return result == S_OK ? parent->removeChild(node.Get(), removed.Put()) : result;
}

HRESULT LoseDeclaration(const Strings& strings, IXMLDOMNode* root)
{
    ComPtr<IXMLDOMNamedNodeMap> map;
    DomNode removed;
    const HRESULT result = root->get_attributes(map.Put());
    return result == S_OK ? map->removeNamedItem(strings.lost.Get(), removed.Put()) : result;
}

// The first result that is not S_OK; the text at the end.
HRESULT Live(const Strings& strings, CComBSTR& written)
{
    DomDocument document;
    ComPtr<IXMLDOMElement> root;
    VARIANT namespaces{};
    VariantInit(&namespaces);
    namespaces.vt = VT_BSTR;
    namespaces.bstrVal = strings.namespaces.Get();
    VARIANT_BOOL isLoaded = VARIANT_FALSE;
    HRESULT result = CoCreateInstance(kDomDocumentClassId, nullptr, CLSCTX_INPROC_SERVER,
                                      IidOf<IXMLDOMDocument2>::Value(), document.PutVoid());
    if (result == S_OK)
        result = document->loadXML(strings.text.Get(), &isLoaded);
    if (result == S_OK)
        result = document->setProperty(strings.property.Get(), namespaces);
    if (result == S_OK)
        result = document->get_documentElement(root.Put());
    if (result == S_OK)
        result = Build(strings, document, root.Get());
    if (result == S_OK)
        result = RemoveFound(strings, document);
    if (result == S_OK)
        result = LoseDeclaration(strings, root.Get());
    return result == S_OK ? document->get_xml(written.Put()) : result;
}

void FailEachInTurn(winport::FaultKind kind, unsigned atLeast)
{
    const Strings strings;
    CComBSTR expected;
    ASSERT_EQ(S_OK, Live(strings, expected));
    unsigned faults = 0;
    for (bool hasFired = true; hasFired; ++faults)
    {
        SCOPED_TRACE(faults + 1);
        CComBSTR written;
        winport::ArmFault(kind, faults + 1);
        const HRESULT result = Live(strings, written);
        hasFired = winport::DisarmFault(kind);
        EXPECT_EQ(hasFired, FAILED(result)) << result;
        if (hasFired)
        {
            EXPECT_TRUE(written.Get() == nullptr);
            EXPECT_EQ(S_OK, Live(strings, written));
        }
        EXPECT_EQ(expected.View(), written.View());
        ASSERT_LT(faults, 5'000u);
    }
    EXPECT_GT(faults, atLeast);
}

} // namespace

TEST(DomFaults, EveryCallMayFail)
{
    FailEachInTurn(winport::FaultKind::PlatformCall, 15);
}

TEST(DomFaults, EveryAllocationMayFail)
{
    if (!TVPT_ALLOCATION_FAULTS)
        GTEST_SKIP() << "allocations cannot be made to fail in this build";
    FailEachInTurn(winport::FaultKind::Allocation, 40);
}
