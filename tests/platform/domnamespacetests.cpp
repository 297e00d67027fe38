// Trees under change: what is written reads back as the same names, and nodes that are held stay whole.
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
        ComPtr<IXMLDOMNamedNodeMap> attributes;
        DomNode removed;
        ASSERT_EQ(S_OK, RootOf(document)->get_attributes(attributes.Put()));
        ASSERT_EQ(S_OK, attributes->removeNamedItem(CComBSTR(W("xmlns:p")).Get(), removed.Put()));
        EXPECT_EQ(written, XmlOf(RootOf(document).Get()));
        EXPECT_EQ(meaning, Meaning(document.Get()));
    }
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
    EXPECT_EQ("<new/>", XmlOf(item.Get())) << "the place in the old tree is not remembered";
    children.Reset();
    item.Reset();
    document.Reset();
    EXPECT_EQ("{}b(@{}c=2)[t{}d()[{}e()[]]]", Meaning(parent.Get()));
}
