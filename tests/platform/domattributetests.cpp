// Attributes and the map of them, namespace declarations among them.
#include <set>

#include "tests/platform/domfixture.h"
#include "tests/platform/wine.h"

namespace
{

using Texts = std::set<std::string>; // name=value

Texts TextsOf(const DomElement& element)
{
    Texts texts;
    for (const DomNode& attribute : AttributesOf(element.Get()))
        texts.insert(NameOf(attribute.Get()) + "=" + TextOf(attribute.Get()));
    return texts;
}

} // namespace

TEST(DomAttributes, AreListedAndFoundWithTheDeclarations)
{
    const DomElement root = RootOf(Loaded(W("<a b='1' xmlns:p='u' p:c='2' xmlns:q='v'/>")));
    EXPECT_EQ((Texts{"b=1", "p:c=2", "xmlns:p=u", "xmlns:q=v"}), TextsOf(root));
    for (const auto& [name, value] :
         {std::pair(W("b"), "1"), std::pair(W("p:c"), "2"), std::pair(W("xmlns:p"), "u"), std::pair(W("z"), "-")})
    {
        SCOPED_TRACE(Narrow(name));
        const HRESULT expected = *value != '-' ? S_OK : S_FALSE;
        Variant found;
        DomNode node;
        EXPECT_EQ(expected, root->getAttribute(CComBSTR(name).Get(), found.Put()));
        EXPECT_EQ(value, found.Text());
        if (name != WStringView(W("xmlns:p")) || !IsWine()) // whose maps find no declaration by its name
        {
            EXPECT_EQ(expected, MapOf(root.Get())->getNamedItem(CComBSTR(name).Get(), node.Put()));
        }
    }
}

TEST(DomAttributes, AreSetAndRemovedAndSoAreDeclarations)
{
    const DomDocument document = Loaded(W("<a b='1' xmlns:p='u'/>"));
    const DomElement root = RootOf(document);
    AddAttribute(document, root.Get(), W("b"), W(""), W("2"));
    AddAttribute(document, root.Get(), W("p:c"), W("u"), W("<3>"));
    EXPECT_EQ("{}a(@{u}c=<3> @{}b=2)[]", MeaningOfText(document.Get()));
    EXPECT_EQ(S_OK, RemoveAttribute(root.Get(), W("b")));
    EXPECT_EQ(S_FALSE, RemoveAttribute(root.Get(), W("b")));

    AddAttribute(document, root.Get(), W("xmlns:tk"), W(""), W("u"));
    EXPECT_EQ((Texts{"p:c=<3>", "xmlns:p=u", "xmlns:tk=u"}), TextsOf(root));
    if (!IsWine()) // which cannot remove declarations
    {
        EXPECT_EQ(S_OK, RemoveAttribute(root.Get(), W("xmlns:p")));
        EXPECT_EQ((Texts{"tk:c=<3>", "xmlns:tk=u"}), TextsOf(root));
    }
    EXPECT_EQ("{}a(@{u}c=<3>)[]", MeaningOfText(document.Get()));
}
