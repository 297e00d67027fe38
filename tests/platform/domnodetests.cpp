// Nodes: what they are called, what they hold, where they stand, how they are made and moved.
#include <gtest/gtest.h>

#include "tests/platform/domfixture.h"

TEST(DomNode, TellsItsNamesAndValue)
{
    const DomDocument document = Loaded(W("<p:e xmlns:p='u' q='v' p:r='w'>t<![CDATA[c]]><!--m--><?i d?></p:e>"));
    SetProperty(document, W("SelectionNamespaces"), W("xmlns:x='u'"));
    struct Case
    {
        const WCHAR* query;
        DOMNodeType kind;
        const char* answers; // name, base name, namespace, value
    };
    const Case cases[] = {
        {W("/x:e"), NODE_ELEMENT, "p:e e u -"},
        {W("/x:e/@q"), NODE_ATTRIBUTE, "q q - v"},
        {W("/x:e/@x:r"), NODE_ATTRIBUTE, "p:r r u w"},
        {W("/x:e/text()[1]"), NODE_TEXT, "#text - - t"},
        {W("/x:e/text()[2]"), NODE_CDATA_SECTION, "#cdata-section - - c"},
        {W("/x:e/comment()"), NODE_COMMENT, "#comment - - m"},
        {W("//processing-instruction()"), NODE_PROCESSING_INSTRUCTION, "i i - d"},
        {W("/"), NODE_DOCUMENT, "#document - - -"},
    };
    for (const Case& test : cases)
    {
        SCOPED_TRACE(Narrow(test.query));
        const DomNode node = Select(document.Get(), test.query);
        ASSERT_TRUE(node);
        DOMNodeType kind = NODE_INVALID;
        EXPECT_EQ(S_OK, node->get_nodeType(&kind));
        EXPECT_EQ(test.kind, kind);
        std::string answers;
        for (const TextGetter getter :
             {&IXMLDOMNode::get_nodeName, &IXMLDOMNode::get_baseName, &IXMLDOMNode::get_namespaceURI})
            answers += Ask(node.Get(), getter) + " ";
        Variant value;
        node->get_nodeValue(value.Put());
        EXPECT_EQ(test.answers, answers + value.Text());
    }
}

TEST(DomNode, TextIsTrimmedUnlessWhiteSpaceIsKept)
{
    struct Case
    {
        const WCHAR* text;
        const char* trimmed;
        const char* kept;
    };
    const Case cases[] = {
        {W("<a>\n <b>5</b>\n</a>"), "5", "\n 5\n"},
        {W("<a> <b> y </b> <b> z </b> </a>"), "y   z", "  y   z  "},
        {W("<a> x<![CDATA[ y ]]> z </a>"), "x y  z", " x y  z "},
        {W("<a><![CDATA[ x ]]></a>"), " x ", " x "},
        {W("<a>x<!-- c -->y<?p q?>z</a>"), "xyz", "xyz"},
        {W("<a xml:space='preserve'> x </a>"), " x ", " x "},
        {W("<a>\u00A0x\r\ny\u00A0</a>"), "\xC2\xA0x\ny\xC2\xA0", "\xC2\xA0x\ny\xC2\xA0"},
        {W("<a>  </a>"), "", "  "},
    };
    for (const Case& test : cases)
    {
        SCOPED_TRACE(Narrow(test.text));
        const DomDocument document = Loaded(test.text);
        EXPECT_EQ(test.trimmed, TextOf(RootOf(document).Get()));
        Variant typed; // no data type is declared, so the typed value is the text
        EXPECT_EQ(S_OK, RootOf(document)->get_nodeTypedValue(typed.Put()));
        EXPECT_EQ(test.trimmed, typed.Text());
        document->put_preserveWhiteSpace(VARIANT_TRUE);
        ASSERT_EQ(S_OK, LoadText(document, test.text));
        EXPECT_EQ(test.kept, TextOf(RootOf(document).Get()));
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
    EXPECT_EQ(S_FALSE, first->get_nextSibling(none.Put()));
}

TEST(DomNode, IsMadeByNameOrRefused)
{
    const DomDocument document = NewDocument();
    struct Case
    {
        LONG kind;
        const WCHAR* name;
        const WCHAR* uri;
        HRESULT result;
    };
    const Case cases[] = {
        {NODE_ELEMENT, W("e"), W(""), S_OK},
        {NODE_ATTRIBUTE, W("p:q"), W("u"), S_OK},
        {NODE_ATTRIBUTE, W("type"), kInstanceUri, S_OK},
        {NODE_ATTRIBUTE, W("xmlns:tk"), W(""), S_OK},
        {NODE_ELEMENT, W(""), W(""), E_FAIL},
        {NODE_DOCUMENT, W(""), W(""), E_INVALIDARG},
        {99, W("e"), W(""), E_FAIL},
    };
    for (const Case& test : cases)
    {
        SCOPED_TRACE(std::to_string(test.kind) + " " + Narrow(test.name));
        DomNode node;
        EXPECT_EQ(test.result, document->createNode(Variant(test.kind).Get(), CComBSTR(test.name).Get(),
                                                    CComBSTR(test.uri).Get(), node.Put()));
        EXPECT_EQ(test.result == S_OK ? Narrow(test.name) : "", node ? NameOf(node.Get()) : "");
    }
}
