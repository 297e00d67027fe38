// Namespaces under change: declarations that are removed, moved away from or contradicted. What is written must read
// back as the same names.
#include "tests/platform/domfixture.h"

TEST(DomNamespaces, ALostDeclarationIsReplacedByOneInScope)
{
    // A text, and its root element without the declaration of p.
    const std::pair<const WCHAR*, const char*> cases[] = {
        {W("<a xmlns:p='u' xmlns:tk='u'><p:b p:c='1'/></a>"), "<a xmlns:tk=\"u\"><tk:b tk:c=\"1\"/></a>"},
        {W("<a xmlns:p='u'><b><p:c/></b></a>"), "<a><b><p:c xmlns:p=\"u\"/></b></a>"},
        {W("<p:a xmlns:p='u' xmlns:tk='u'/>"), "<tk:a xmlns:tk=\"u\"/>"},
        {W("<a xmlns:p='u' xmlns:tk='u'><b xmlns:p='v'><p:c/></b></a>"),
         "<a xmlns:tk=\"u\"><b xmlns:p=\"v\"><p:c/></b></a>"},
        {W("<a xmlns:p='u' xmlns:tk='u'><b xmlns:tk='v'><p:c/></b></a>"),
         "<a xmlns:tk=\"u\"><b xmlns:tk=\"v\"><p:c xmlns:p=\"u\"/></b></a>"},
        {W("<a xmlns:p='u' xmlns='u'><b p:c='1'/></a>"), // a default is no help to attributes
         "<a xmlns=\"u\"><b xmlns:p=\"u\" p:c=\"1\"/></a>"},
    };
    for (const auto& [text, written] : cases)
    {
        const DomDocument document = Loaded(text);
        const std::string meaning = Meaning(document.Get());
        ASSERT_EQ(S_OK, RemoveAttribute(RootOf(document).Get(), W("xmlns:p")));
        EXPECT_EQ(written, XmlOf(RootOf(document).Get()));
        EXPECT_EQ(meaning, Meaning(document.Get()));
    }
}

TEST(DomNamespaces, NamesWithoutADeclarationGetOne)
{
    const DomDocument document = Loaded(W("<a xmlns:p='u' xmlns:q='v'/>"));
    const DomElement root = RootOf(document);
    AddAttribute(document, root.Get(), W("type"), kInstanceUri, W("xsd:integer")); // no prefix is known for it
    AddAttribute(document, root.Get(), W("p:n"), W("w"), W("1"));                  // its prefix is taken
    AddAttribute(document, root.Get(), W("n"), W("v"), W("2"));                    // another prefix is at hand
    const DomNode child = Created(document, NODE_ELEMENT, W("p:b"), W("x"));
    AddAttribute(document, child.Get(), W("p:n"), W("u"), W("3")); // contradicts its element's prefix
    AddAttribute(document, child.Get(), W("xmlns:p"), W(""), W("y"));
    ASSERT_EQ(S_OK, Append(root.Get(), child.Get()));
    const DomNode other = Created(document, NODE_ELEMENT, W("p:c"), W("u")); // in its parent's sense of the prefix,
    AddAttribute(document, other.Get(), W("p:n"), W("w"), W("4"));           // which its attribute may not take from it
    ASSERT_EQ(S_OK, Append(root.Get(), other.Get()));
    const std::string meaning = "{}a(@{http://www.w3.org/2001/XMLSchema-instance}type=xsd:integer @{v}n=2 @{w}n=1)"
                                "[{x}b(@{u}n=3)[]{u}c(@{w}n=4)[]]";
    EXPECT_EQ(meaning, Meaning(document.Get()));
    EXPECT_EQ(meaning, MeaningOfText(document.Get())) << XmlOf(document.Get());
    EXPECT_NE(std::string::npos, XmlOf(document.Get()).find("xsi:type=\"xsd:integer\""));

    // What is in no namespace stays there.
    const DomDocument inside = Loaded(W("<a xmlns='u' d='1'/>"));
    const DomNode plain = Created(inside, NODE_ELEMENT, W("b"));
    AddAttribute(inside, plain.Get(), W("xmlns"), W(""), W("v")); // cannot hold on an element without a namespace
    ASSERT_EQ(S_OK, Append(plain.Get(), Created(inside, NODE_ELEMENT, W("c"), W("v")).Get()));
    ASSERT_EQ(S_OK, Append(RootOf(inside).Get(), plain.Get()));
    EXPECT_EQ("{u}a(@{}d=1)[{}b()[{v}c()[]]]", MeaningOfText(inside.Get())) << XmlOf(inside.Get());
}

TEST(DomNamespaces, ADeclarationInUseKeepsItsMeaningAndIsNoAttributeForXPath)
{
    const DomDocument document = Loaded(W("<p:a xmlns:p='u' b='1'/>"));
    DomNode declaration;
    ASSERT_EQ(S_OK, MapOf(RootOf(document).Get())->getNamedItem(CComBSTR(W("xmlns:p")).Get(), declaration.Put()));
    EXPECT_EQ(E_INVALIDARG, PutText(declaration.Get(), W("v")));
    EXPECT_EQ("{u}a(@{}b=1)[]", MeaningOfText(document.Get()));
    EXPECT_EQ("b", NameOf(Select(document.Get(), W("//@*")).Get()));
    EXPECT_FALSE(Select(document.Get(), W("//@*[2] | //@p | //@xmlns")));
}

// The sanitizers are the judges.
TEST(DomLifetime, HeldNodesSurviveWhateverHappensAround)
{
    DomDocument document = Loaded(W("<a><b c='1'>t<d><e/></d></b></a>"));
    DomNode value, item, parent;
    ComPtr<IXMLDOMNodeList> children;
    {
        const DomElement root = RootOf(document);
        const DomNode inner = Select(root.Get(), W("b/d/e"));
        const DomNode attribute = Select(root.Get(), W("b/@c"));
        ASSERT_EQ(S_OK, attribute->get_firstChild(value.Put()));
        ASSERT_EQ(S_OK, PutText(attribute.Get(), W("2")));
        EXPECT_EQ("1", TextOf(value.Get()));
        ASSERT_EQ(S_OK, PutText(root.Get(), W("all gone")));
        ASSERT_EQ(S_OK, inner->get_parentNode(parent.Put()));
        ASSERT_EQ(S_OK, DomNode(parent)->get_parentNode(parent.Put()));
        EXPECT_EQ("{}b(@{}c=2)[t{}d()[{}e()[]]]", Meaning(parent.Get()));
        EXPECT_EQ(S_FALSE, parent->get_parentNode(item.Put()));
        ASSERT_EQ(S_OK, document->get_childNodes(children.Put()));
        ASSERT_EQ(S_OK, children->get_item(0, item.Put()));
    }
    item.Reset();
    ASSERT_EQ(S_OK, LoadText(document, W("<new/>")));
    ASSERT_EQ(S_OK, children->get_item(0, item.Put()));
    EXPECT_EQ("new", NameOf(item.Get())) << "the place in the old tree is not remembered";
    children.Reset();
    item.Reset();
    document.Reset();
    EXPECT_EQ("{}b(@{}c=2)[t{}d()[{}e()[]]]", Meaning(parent.Get()));
}
