// Attributes and the map of them, namespace declarations among them.
#include <algorithm>

#include <gtest/gtest.h>

#include "tests/platform/domfixture.h"

namespace
{

ComPtr<IXMLDOMNamedNodeMap> MapOf(const DomNode& element)
{
    ComPtr<IXMLDOMNamedNodeMap> map;
    EXPECT_EQ(S_OK, element->get_attributes(map.Put()));
    return map;
}

ComPtr<IXMLDOMElement> ElementOf(const DomNode& node)
{
    ComPtr<IXMLDOMElement> element;
    EXPECT_EQ(S_OK, node.As(element));
    return element;
}

std::vector<std::string> ByIndex(const DomNode& element)
{
    const ComPtr<IXMLDOMNamedNodeMap> map = MapOf(element);
    std::vector<std::string> names;
    LONG length = 0;
    EXPECT_EQ(S_OK, map->get_length(&length));
    for (LONG at = 0; at < length; ++at)
    {
        DomNode attribute;
        EXPECT_EQ(S_OK, map->get_item(at, attribute.Put()));
        names.push_back(NameOf(attribute.Get()) + "=" + TextOf(attribute.Get()));
    }
    std::sort(names.begin(), names.end());
    return names;
}

std::vector<std::string> ByNextNode(const DomNode& element)
{
    const ComPtr<IXMLDOMNamedNodeMap> map = MapOf(element);
    std::vector<std::string> names;
    EXPECT_EQ(S_OK, map->reset());
    DomNode attribute;
    while (map->nextNode(attribute.Put()) == S_OK)
        names.push_back(NameOf(attribute.Get()) + "=" + TextOf(attribute.Get()));
    std::sort(names.begin(), names.end());
    return names;
}

// Wine's DOM keeps declarations apart from attributes: they are not met by nextNode and cannot be removed.
bool DeclarationsAreAttributes()
{
    static const bool answer = ByNextNode(RootOf(Loaded(W("<a xmlns:p='u'/>")))).size() == 1;
    return answer;
}

} // namespace

TEST(DomAttributes, AreListedWithTheDeclarations)
{
    const DomNode root = RootOf(Loaded(W("<a b='1' xmlns:p='u' p:c='2' xmlns:q='v'/>")));
    const std::vector<std::string> all = {"b=1", "p:c=2", "xmlns:p=u", "xmlns:q=v"};
    EXPECT_EQ(all, ByIndex(root));
    const std::vector<std::string> withoutDeclarations = {"b=1", "p:c=2"};
    EXPECT_EQ(DeclarationsAreAttributes() ? all : withoutDeclarations, ByNextNode(root));

    const ComPtr<IXMLDOMNamedNodeMap> map = MapOf(root);
    DomNode none;
    EXPECT_EQ(S_FALSE, map->get_item(-1, none.Put()));
    EXPECT_EQ(S_FALSE, map->get_item(4, none.Put()));
    EXPECT_FALSE(none);
    EXPECT_EQ(std::vector<std::string>(), ByIndex(RootOf(Loaded(W("<a/>")))));
}

TEST(DomAttributes, AreFoundByName)
{
    const DomNode root = RootOf(Loaded(W("<a b='1' xmlns:p='u' p:c='2'/>")));
    const ComPtr<IXMLDOMNamedNodeMap> map = MapOf(root);
    struct Case
    {
        const WCHAR* name;
        const char* value;
    };
    for (const Case& test : {Case{W("b"), "1"}, Case{W("p:c"), "2"}, Case{W("xmlns:p"), "u"}, Case{W("z"), nullptr}})
    {
        SCOPED_TRACE(Narrow(test.name));
        const HRESULT expected = test.value != nullptr ? S_OK : S_FALSE;
        Variant value;
        EXPECT_EQ(expected, ElementOf(root)->getAttribute(CComBSTR(test.name).Get(), value.Put()));
        EXPECT_EQ(test.value != nullptr ? VT_BSTR : VT_NULL, value.Get().vt);
        if (test.value != nullptr)
        {
            EXPECT_EQ(test.value, Narrow(value.Get().bstrVal));
        }
        DomNode node;
        if (test.name != WStringView(W("xmlns:p")) || DeclarationsAreAttributes())
        {
            EXPECT_EQ(expected, map->getNamedItem(CComBSTR(test.name).Get(), node.Put()));
        }
    }
    DomNode node;
    EXPECT_EQ(S_OK, map->getQualifiedItem(CComBSTR(W("c")).Get(), CComBSTR(W("u")).Get(), node.Put()));
    EXPECT_EQ(S_FALSE, map->getQualifiedItem(CComBSTR(W("c")).Get(), CComBSTR(W("v")).Get(), node.Put()));
    EXPECT_EQ(E_INVALIDARG, map->getNamedItem(nullptr, node.Put()));
}

TEST(DomAttributes, AreSetAndRemoved)
{
    const DomDocument document =
        Loaded(W("<a b='1' xmlns:p='u' xmlns:xsi='http://www.w3.org/2001/XMLSchema-instance'/>"));
    const DomNode root = RootOf(document);
    const ComPtr<IXMLDOMElement> element = ElementOf(root);
    EXPECT_EQ(S_OK, element->setAttribute(CComBSTR(W("b")).Get(), Variant(W("2")).Get()));
    EXPECT_EQ(S_OK, element->setAttribute(CComBSTR(W("n")).Get(), Variant(LONG{-5}).Get()));
    AddAttribute(document, root.Get(), W("p:c"), W("u"), W("<3>"));
    AddAttribute(document, root.Get(), W("xsi:type"), kInstanceUri, W("xsd:integer"));
    EXPECT_EQ("{}a(@{http://www.w3.org/2001/XMLSchema-instance}type=xsd:integer @{u}c=<3> @{}b=2 @{}n=-5)[]",
              MeaningOfText(XmlOf(document.Get())));

    const ComPtr<IXMLDOMNamedNodeMap> map = MapOf(root);
    DomNode removed;
    EXPECT_EQ(S_OK, map->removeNamedItem(CComBSTR(W("b")).Get(), removed.Put()));
    EXPECT_EQ("2", TextOf(removed.Get()));
    EXPECT_EQ(S_FALSE, map->removeNamedItem(CComBSTR(W("b")).Get(), removed.Put()));
    EXPECT_EQ(S_OK, element->removeAttribute(CComBSTR(W("n")).Get()));
    EXPECT_EQ(S_FALSE, element->removeAttribute(CComBSTR(W("n")).Get()));
    EXPECT_EQ("{}a(@{http://www.w3.org/2001/XMLSchema-instance}type=xsd:integer @{u}c=<3>)[]",
              MeaningOfText(XmlOf(document.Get())));
}

TEST(DomAttributes, AnAttributeStandsOnOneElement)
{
    const DomDocument document = Loaded(W("<a><b/></a>"));
    const ComPtr<IXMLDOMElement> first = ElementOf(RootOf(document));
    const ComPtr<IXMLDOMElement> second = ElementOf(Select(document.Get(), W("//b")));
    ComPtr<IXMLDOMAttribute> attribute, replaced;
    ASSERT_EQ(S_OK, document->createAttribute(CComBSTR(W("c")).Get(), attribute.Put()));
    EXPECT_EQ(S_OK, first->setAttributeNode(attribute.Get(), replaced.Put()));
    EXPECT_FALSE(replaced);
    EXPECT_EQ(E_FAIL, second->setAttributeNode(attribute.Get(), replaced.Put()));
    DomNode node, none;
    ASSERT_EQ(S_OK, attribute.As(node));
    EXPECT_EQ(S_FALSE, node->get_parentNode(none.Put())) << "an element is no parent of its attributes";
    EXPECT_EQ(S_FALSE, node->get_nextSibling(none.Put()));
}

TEST(DomAttributes, ADeclarationCanBeAddedAsAnAttribute)
{
    const DomDocument document = Loaded(W("<a xmlns:ns1='u' name='ns1:x'/>"));
    const DomNode root = RootOf(document);
    AddAttribute(document, root.Get(), W("xmlns:tk"), W(""), W("u"));
    EXPECT_EQ((std::vector<std::string>{"name=ns1:x", "xmlns:ns1=u", "xmlns:tk=u"}), ByIndex(root));

    DomNode removed;
    const HRESULT result = MapOf(root)->removeNamedItem(CComBSTR(W("xmlns:ns1")).Get(), removed.Put());
    EXPECT_EQ(DeclarationsAreAttributes() ? S_OK : S_FALSE, result);
    if (DeclarationsAreAttributes())
    {
        EXPECT_EQ((std::vector<std::string>{"name=ns1:x", "xmlns:tk=u"}), ByIndex(root));
    }
    EXPECT_EQ(Meaning(document.Get()), MeaningOfText(XmlOf(document.Get())));
}
