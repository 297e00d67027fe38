// Attributes and the map of them, namespace declarations among them.
#include <set>

#include <gtest/gtest.h>

#include "tests/platform/domfixture.h"
#include "tests/platform/wine.h"

namespace
{

using Texts = std::set<std::string>; // name=value

std::string Described(const DomNode& attribute)
{
    return NameOf(attribute.Get()) + "=" + TextOf(attribute.Get());
}

Texts ByIndex(IXMLDOMNode* element)
{
    const ComPtr<IXMLDOMNamedNodeMap> map = MapOf(element);
    Texts texts;
    LONG length = 0;
    EXPECT_EQ(S_OK, map->get_length(&length));
    DomNode attribute;
    for (LONG at = 0; at < length && map->get_item(at, attribute.Put()) == S_OK; ++at)
        texts.insert(Described(attribute));
    EXPECT_EQ(static_cast<std::size_t>(length), texts.size());
    for (const LONG outside : {LONG{-1}, length})
        EXPECT_EQ(S_FALSE, map->get_item(outside, attribute.Put()));
    EXPECT_FALSE(attribute);
    return texts;
}

} // namespace

TEST(DomAttributes, AreListedAndFoundWithTheDeclarations)
{
    const DomElement root = RootOf(Loaded(W("<a b='1' xmlns:p='u' p:c='2' xmlns:q='v'/>")));
    const Texts all = {"b=1", "p:c=2", "xmlns:p=u", "xmlns:q=v"};
    EXPECT_EQ(all, ByIndex(root.Get()));
    EXPECT_EQ(Texts(), ByIndex(RootOf(Loaded(W("<a/>"))).Get()));

    DomNode node;
    for (const auto& [name, value] :
         {std::pair(W("b"), "1"), std::pair(W("p:c"), "2"), std::pair(W("xmlns:p"), "u"), std::pair(W("z"), "")})
    {
        SCOPED_TRACE(Narrow(name));
        const bool isThere = *value != '\0';
        Variant found;
        EXPECT_EQ(isThere ? S_OK : S_FALSE, root->getAttribute(CComBSTR(name).Get(), found.Put()));
        EXPECT_EQ(isThere ? VT_BSTR : VT_NULL, found.Get().vt);
        EXPECT_EQ(value, isThere ? Narrow(found.Get().bstrVal) : "");
        if (name != WStringView(W("xmlns:p")) || !IsWine()) // whose maps find no declaration by its name
        {
            EXPECT_EQ(isThere ? S_OK : S_FALSE, MapOf(root.Get())->getNamedItem(CComBSTR(name).Get(), node.Put()));
        }
    }
    EXPECT_EQ(E_INVALIDARG, MapOf(root.Get())->getNamedItem(nullptr, node.Put()));
}

TEST(DomAttributes, AreSetAndRemovedAndSoAreDeclarations)
{
    const DomDocument document = Loaded(W("<a b='1' xmlns:p='u'/>"));
    const DomElement root = RootOf(document);
    AddAttribute(document, root.Get(), W("b"), W(""), W("2"));
    AddAttribute(document, root.Get(), W("p:c"), W("u"), W("<3>"));
    EXPECT_EQ("{}a(@{u}c=<3> @{}b=2)[]", MeaningOfText(document.Get()));
    DomNode removed;
    EXPECT_EQ(S_OK, MapOf(root.Get())->removeNamedItem(CComBSTR(W("b")).Get(), removed.Put()));
    EXPECT_EQ("b=2", Described(removed));
    EXPECT_EQ(S_FALSE, RemoveAttribute(root.Get(), W("b")));

    AddAttribute(document, root.Get(), W("xmlns:tk"), W(""), W("u"));
    EXPECT_EQ((Texts{"p:c=<3>", "xmlns:p=u", "xmlns:tk=u"}), ByIndex(root.Get()));
    if (!IsWine()) // which cannot remove declarations
    {
        EXPECT_EQ(S_OK, RemoveAttribute(root.Get(), W("xmlns:p")));
        EXPECT_EQ((Texts{"tk:c=<3>", "xmlns:tk=u"}), ByIndex(root.Get()));
    }
    EXPECT_EQ("{}a(@{u}c=<3>)[]", MeaningOfText(document.Get()));
}
