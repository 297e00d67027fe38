// Nodes: what they are called, what they hold, where they stand, how they are made and moved.
#include <tuple>

#include "tests/platform/domfixture.h"

TEST(DomNode, TellsItsNamesAndValue)
{
    const DomDocument document = Loaded(W("<p:e xmlns:p='u' q='v' p:r='w'>t<![CDATA[c]]><!--m--><?i d?></p:e>"));
    SetProperty(document, W("SelectionNamespaces"), W("xmlns:x='u'"));
    // With what a query's node answers: kind; name, base name, namespace, value.
    const std::tuple<const WCHAR*, DOMNodeType, const char*> cases[] = {
        {W("/x:e"), NODE_ELEMENT, "p:e e u -"},
        {W("/x:e/@q"), NODE_ATTRIBUTE, "q q - v"},
        {W("/x:e/@x:r"), NODE_ATTRIBUTE, "p:r r u w"},
        {W("/x:e/text()[1]"), NODE_TEXT, "#text - - t"},
        {W("/x:e/text()[2]"), NODE_CDATA_SECTION, "#cdata-section - - c"},
        {W("/x:e/comment()"), NODE_COMMENT, "#comment - - m"},
        {W("//processing-instruction()"), NODE_PROCESSING_INSTRUCTION, "i i - d"},
        {W("/"), NODE_DOCUMENT, "#document - - -"},
    };
    for (const auto& [query, expectedKind, answers] : cases)
    {
        SCOPED_TRACE(Narrow(query));
        const DomNode node = Select(document.Get(), query);
        ASSERT_TRUE(node);
        DOMNodeType kind = NODE_INVALID;
        EXPECT_EQ(S_OK, node->get_nodeType(&kind));
        EXPECT_EQ(expectedKind, kind);
        Variant value;
        node->get_nodeValue(value.Put());
        EXPECT_EQ(answers, NameOf(node.Get()) + " " + Ask(node.Get(), &IXMLDOMNode::get_baseName) + " " +
                               Ask(node.Get(), &IXMLDOMNode::get_namespaceURI) + " " + value.Text());
    }
}

TEST(DomNode, TextIsTrimmedUnlessWhiteSpaceIsKept)
{
    // A document, its text when blanks are trimmed, and when they are kept.
    const std::tuple<const WCHAR*, const char*, const char*> cases[] = {
        {W("<a>\n <b>5</b>\n</a>"), "5", "\n 5\n"},
        {W("<a> <b> y </b> <b> z </b> </a>"), "y   z", "  y   z  "},
        {W("<a> x<![CDATA[ y ]]> z </a>"), "x y  z", " x y  z "},
        {W("<a><![CDATA[ x ]]></a>"), " x ", " x "},
        {W("<a>x<!-- c -->y<?p q?>z</a>"), "xyz", "xyz"},
        {W("<a xml:space='preserve'> x </a>"), " x ", " x "},
        {W("<a>\u00A0x\r\ny\u00A0</a>"), "\xC2\xA0x\ny\xC2\xA0", "\xC2\xA0x\ny\xC2\xA0"},
        {W("<a>  </a>"), "", "  "},
    };
    for (const auto& [text, trimmed, kept] : cases)
    {
        SCOPED_TRACE(Narrow(text));
        const DomDocument document = Loaded(text);
        EXPECT_EQ(trimmed, TextOf(RootOf(document).Get()));
        Variant typed; // no data type is declared, so the typed value is the text
        EXPECT_EQ(S_OK, RootOf(document)->get_nodeTypedValue(typed.Put()));
        EXPECT_EQ(trimmed, typed.Text());
        document->put_preserveWhiteSpace(VARIANT_TRUE);
        ASSERT_EQ(S_OK, LoadText(document, text));
        EXPECT_EQ(kept, TextOf(RootOf(document).Get()));
    }
}

TEST(DomNode, TextThatIsPutComesBack)
{
    for (const WCHAR* const text : {W("<b>&amp;\"'"), W("]]>"), W("a\tb\n\r\nc"), W("\u00E9\u4E2D\U0001F600"), W("")})
    {
        SCOPED_TRACE(Narrow(text));
        const DomDocument document = Loaded(W("<a b='old'><c/>old</a>"));
        const DomElement root = RootOf(document);
        ASSERT_EQ(S_OK, PutText(Select(root.Get(), W("@b")).Get(), text));
        ASSERT_EQ(S_OK, PutText(root.Get(), text));
        EXPECT_EQ("{}a(@{}b=" + Narrow(text) + ")[" + Narrow(text) + "]", MeaningOfText(document.Get()));
    }
}

TEST(DomNode, ChildrenAreAppendedMovedAndRemoved)
{
    const DomDocument document = Loaded(W("<a><b/><c><d/></c></a>"));
    const DomElement root = RootOf(document);
    const DomNode first = Select(root.Get(), W("b"));
    ASSERT_EQ(S_OK, Append(root.Get(), first.Get())); // it moves
    ASSERT_EQ(S_OK, Append(first.Get(), Select(root.Get(), W("c/d")).Get()));
    EXPECT_EQ("{}a()[{}c()[]{}b()[{}d()[]]]", Meaning(root.Get()));
    ASSERT_EQ(S_OK, Remove(root.Get(), first.Get()));
    EXPECT_EQ(E_INVALIDARG, Remove(root.Get(), first.Get())) << "no longer a child";
    EXPECT_TRUE(FAILED(Append(root.Get(), Created(document, NODE_ATTRIBUTE, W("q")).Get())));
    EXPECT_EQ("{}a()[{}c()[]]", Meaning(root.Get()));
    DomNode none;
    EXPECT_EQ(S_FALSE, first->get_parentNode(none.Put()));
}

TEST(DomNode, IsMadeByNameOrRefused)
{
    const DomDocument document = NewDocument();
    EXPECT_EQ("p:q", NameOf(Created(document, NODE_ATTRIBUTE, W("p:q"), W("u")).Get()));
    EXPECT_EQ("xmlns:tk", NameOf(Created(document, NODE_ATTRIBUTE, W("xmlns:tk")).Get()));
    DomNode none;
    const CComBSTR empty(W(""));
    EXPECT_EQ(E_FAIL, document->createNode(Variant(LONG{NODE_ELEMENT}).Get(), empty.Get(), nullptr, none.Put()));
    EXPECT_EQ(E_INVALIDARG, document->createNode(Variant(LONG{NODE_DOCUMENT}).Get(), empty.Get(), nullptr, none.Put()));
}
