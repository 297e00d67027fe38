// Attributes and the map of them, namespace declarations among them.
#include <set>

#include <gtest/gtest.h>

#include "tests/platform/domfixture.h"

namespace
{

using Texts = std::set<std::string>; // name=value

ComPtr<IXMLDOMElement> ElementOf(const DomNode& node)
{
    ComPtr<IXMLDOMElement> element;
    EXPECT_EQ(S_OK, node.As(element));
    return element;
}

std::string Described(const DomNode& attribute)
{
    return NameOf(attribute.Get()) + "=" + TextOf(attribute.Get());
}

Texts ByIndex(const DomNode& element)
{
    const ComPtr<IXMLDOMNamedNodeMap> map = MapOf(element.Get());
    Texts texts;
    LONG length = 0;
    EXPECT_EQ(S_OK, map->get_length(&length));
    DomNode attribute;
    for (LONG at = 0; at < length && map->get_item(at, attribute.Put()) == S_OK; ++at)
        texts.insert(Described(attribute));
    EXPECT_EQ(static_cast<std::size_t>(length), texts.size());
    EXPECT_EQ(S_FALSE, map->get_item(-1, attribute.Put()));
    EXPECT_EQ(S_FALSE, map->get_item(length, attribute.Put()));
    EXPECT_FALSE(attribute);
    return texts;
}

Texts ByNextNode(const DomNode& element)
{
    const ComPtr<IXMLDOMNamedNodeMap> map = MapOf(element.Get());
    Texts texts;
    EXPECT_EQ(S_OK, map->reset());
    DomNode attribute;
    while (map->nextNode(attribute.Put()) == S_OK)
        texts.insert(Described(attribute));
    return texts;
}

// Wine's DOM keeps declarations apart from attributes: they are not met by nextNode and cannot be removed.
bool DeclarationsAreAttributes()
{
    static const bool answer = ByNextNode(RootOf(Loaded(W("<a xmlns:p='u'/>")))).size() == 1;
    return answer;
}

} // namespace

TEST(DomAttributes, AreListedAndFoundWithTheDeclarations)
{
    const DomNode root = RootOf(Loaded(W("<a b='1' xmlns:p='u' p:c='2' xmlns:q='v'/>")));
    const Texts all = {"b=1", "p:c=2", "xmlns:p=u", "xmlns:q=v"};
    EXPECT_EQ(all, ByIndex(root));
    EXPECT_EQ(DeclarationsAreAttributes() ? all : (Texts{"b=1", "p:c=2"}), ByNextNode(root));
    EXPECT_EQ(Texts(), ByIndex(RootOf(Loaded(W("<a/>")))));

    const ComPtr<IXMLDOMNamedNodeMap> map = MapOf(root.Get());
    DomNode node;
    for (const auto& [name, value] :
         {std::pair(W("b"), "1"), std::pair(W("p:c"), "2"), std::pair(W("xmlns:p"), "u"), std::pair(W("z"), "")})
    {
        SCOPED_TRACE(Narrow(name));
        const HRESULT expected = *value != '\0' ? S_OK : S_FALSE;
        Variant found;
        EXPECT_EQ(expected, ElementOf(root)->getAttribute(CComBSTR(name).Get(), found.Put()));
        EXPECT_EQ(expected == S_OK ? VT_BSTR : VT_NULL, found.Get().vt);
        EXPECT_EQ(value, expected == S_OK ? Narrow(found.Get().bstrVal) : "");
        if (name != WStringView(W("xmlns:p")) || DeclarationsAreAttributes())
        {
            EXPECT_EQ(expected, map->getNamedItem(CComBSTR(name).Get(), node.Put()));
        }
    }
    EXPECT_EQ(S_OK, map->getQualifiedItem(CComBSTR(W("c")).Get(), CComBSTR(W("u")).Get(), node.Put()));
    EXPECT_EQ(S_FALSE, map->getQualifiedItem(CComBSTR(W("c")).Get(), CComBSTR(W("v")).Get(), node.Put()));
    EXPECT_EQ(E_INVALIDARG, map->getNamedItem(nullptr, node.Put()));
}

TEST(DomAttributes, AreSetAndRemoved)
{
    const DomDocument document = Loaded(W("<a b='1' xmlns:p='u'/>"));
    const DomNode root = RootOf(document);
    const ComPtr<IXMLDOMElement> element = ElementOf(root);
    EXPECT_EQ(S_OK, element->setAttribute(CComBSTR(W("b")).Get(), Variant(W("2")).Get()));
    EXPECT_EQ(S_OK, element->setAttribute(CComBSTR(W("n")).Get(), Variant(LONG{-5}).Get()));
    AddAttribute(document, root.Get(), W("p:c"), W("u"), W("<3>"));
    EXPECT_EQ("{}a(@{u}c=<3> @{}b=2 @{}n=-5)[]", MeaningOfText(XmlOf(document.Get())));

    DomNode removed;
    EXPECT_EQ(S_OK, MapOf(root.Get())->removeNamedItem(CComBSTR(W("b")).Get(), removed.Put()));
    EXPECT_EQ("b=2", Described(removed));
    EXPECT_EQ(S_FALSE, RemoveAttribute(root.Get(), W("b")));
    EXPECT_EQ(S_OK, element->removeAttribute(CComBSTR(W("n")).Get()));
    EXPECT_EQ(S_FALSE, element->removeAttribute(CComBSTR(W("n")).Get()));
    EXPECT_EQ("{}a(@{u}c=<3>)[]", MeaningOfText(XmlOf(document.Get())));
}

TEST(DomAttributes, ADeclarationCanBeAddedAsAnAttribute)
{
    const DomDocument document = Loaded(W("<a xmlns:ns1='u' name='ns1:x'/>"));
    const DomNode root = RootOf(document);
    AddAttribute(document, root.Get(), W("xmlns:tk"), W(""), W("u"));
    EXPECT_EQ((Texts{"name=ns1:x", "xmlns:ns1=u", "xmlns:tk=u"}), ByIndex(root));
    EXPECT_EQ(DeclarationsAreAttributes() ? S_OK : S_FALSE, RemoveAttribute(root.Get(), W("xmlns:ns1")));
    if (DeclarationsAreAttributes())
    {
        EXPECT_EQ((Texts{"name=ns1:x", "xmlns:tk=u"}), ByIndex(root));
    }
    EXPECT_EQ(Meaning(document.Get()), MeaningOfText(XmlOf(document.Get())));
}
