// Every DOM call and every allocation on the way of one life of a document fails in turn: nothing is lost, and the
// same steps work afterwards.
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
    Variant namespaces{W("xmlns:q='u'")};
    CComBSTR property{W("SelectionNamespaces")};
    CComBSTR query{W("//q:b | //d")};
    CComBSTR created{W("p:n")};
    CComBSTR uri{W("u")};
    CComBSTR attribute{W("xsi:type")};
    CComBSTR instance{kInstanceUri};
    CComBSTR value{W("<\u00E9>")};
    CComBSTR lost{W("xmlns:p")};
    Variant elementKind{LONG{NODE_ELEMENT}};
    Variant attributeKind{LONG{NODE_ATTRIBUTE}};
};

void Check(HRESULT result)
{
    if (result != S_OK)
        throw result;
}

// The first result that is not S_OK; the text at the end.
HRESULT Live(const Strings& strings, CComBSTR& written)
try
{
    DomDocument document;
    DomElement root;
    VARIANT_BOOL isLoaded = VARIANT_FALSE;
    Check(CoCreateInstance(kDomDocumentClassId, nullptr, CLSCTX_INPROC_SERVER, IidOf<IXMLDOMDocument2>::Value(),
                           document.PutVoid()));
    Check(document->loadXML(strings.text.Get(), &isLoaded));
    Check(document->setProperty(strings.property.Get(), strings.namespaces.Get()));
    Check(document->get_documentElement(root.Put()));

    DomNode node, attributeNode, appended;
    DomElement element;
    ComPtr<IXMLDOMAttribute> attribute, replaced;
    Check(document->createNode(strings.elementKind.Get(), strings.created.Get(), strings.uri.Get(), node.Put()));
    Check(document->createNode(strings.attributeKind.Get(), strings.attribute.Get(), strings.instance.Get(),
                               attributeNode.Put()));
    Check(attributeNode->put_text(strings.value.Get()));
    Check(node.As(element));
    Check(attributeNode.As(attribute));
    Check(element->setAttributeNode(attribute.Get(), replaced.Put()));
    Check(element->put_text(strings.value.Get()));
    Check(root->appendChild(element.Get(), appended.Put()));

    ComPtr<IXMLDOMNodeList> list;
    ComPtr<IXMLDOMNamedNodeMap> map;
    DomNode parent, removed;
    Check(document->selectNodes(strings.query.Get(), list.Put()));
    Check(list->get_item(1, node.Put()));
    Check(node->get_parentNode(parent.Put()));
    Check(parent->removeChild(node.Get(), removed.Put()));

    Check(root->get_attributes(map.Put()));
    Check(map->removeNamedItem(strings.lost.Get(), removed.Put()));
    return document->get_xml(written.Put());
}
catch (HRESULT failure)
{
    return failure;
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

TEST(DomFaults, EveryCallAndEveryAllocationMayFail)
{
    FailEachInTurn(winport::FaultKind::PlatformCall, 15);
    if (TVPT_ALLOCATION_FAULTS)
        FailEachInTurn(winport::FaultKind::Allocation, 40);
}
