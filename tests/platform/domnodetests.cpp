// Nodes: what they are called, what they hold, where they stand, how they are made and moved.
#include <gtest/gtest.h>

#include "tests/platform/domfixture.h"
#include "tests/platform/wine.h"

namespace
{

// A text that a node answers: "-" for none, which is S_FALSE.
using Getter = HRESULT (STDMETHODCALLTYPE IXMLDOMNode::*)(BSTR*);

std::string Ask(const DomNode& node, Getter getter)
{
    CComBSTR text;
    const HRESULT result = (node.Get()->*getter)(text.Put());
    EXPECT_EQ(text.Get() != nullptr ? S_OK : S_FALSE, result);
    return text.Get() != nullptr ? Narrow(text.View()) : "-";
}

HRESULT InsertBefore(const DomNode& parent, const DomNode& child, const DomNode& reference)
{
    DomNode inserted;
    return parent->insertBefore(child.Get(), Variant(reference).Get(), inserted.Put());
}

} // namespace

TEST(DomNode, TellsItsNamesAndValue)
{
    const DomDocument document = Loaded(W("<p:e xmlns:p='u' q='v' p:r='w'>t<![CDATA[c]]><!--m--><?i d?><n/></p:e>"));
    SetProperty(document, W("SelectionNamespaces"), W("xmlns:x='u'"));
    struct Case
    {
        const WCHAR* query;
        DOMNodeType kind;
        const char* answers; // kind, name, base name, prefix, namespace, value
    };
    const Case cases[] = {
        {W("/x:e"), NODE_ELEMENT, "element p:e e p u -"},
        {W("/x:e/n"), NODE_ELEMENT, "element n n - - -"},
        {W("/x:e/@q"), NODE_ATTRIBUTE, "attribute q q - - v"},
        {W("/x:e/@x:r"), NODE_ATTRIBUTE, "attribute p:r r p u w"},
        {W("/x:e/text()[1]"), NODE_TEXT, "text #text - - - t"},
        {W("/x:e/text()[2]"), NODE_CDATA_SECTION, "cdatasection #cdata-section - - - c"},
        {W("/x:e/comment()"), NODE_COMMENT, "comment #comment - - - m"},
        {W("//processing-instruction()"), NODE_PROCESSING_INSTRUCTION, "processinginstruction i i - - d"},
        {W("/"), NODE_DOCUMENT, "document #document - - - -"},
    };
    for (const Case& test : cases)
    {
        SCOPED_TRACE(Narrow(test.query));
        const DomNode node = Select(document.Get(), test.query);
        ASSERT_TRUE(node);
        DOMNodeType kind = NODE_INVALID;
        EXPECT_EQ(S_OK, node->get_nodeType(&kind));
        EXPECT_EQ(test.kind, kind);
        Variant value;
        const bool hasValue = node->get_nodeValue(value.Put()) == S_OK;
        EXPECT_EQ(test.answers,
                  Ask(node, &IXMLDOMNode::get_nodeTypeString) + " " + Ask(node, &IXMLDOMNode::get_nodeName) + " " +
                      Ask(node, &IXMLDOMNode::get_baseName) + " " + Ask(node, &IXMLDOMNode::get_prefix) + " " +
                      Ask(node, &IXMLDOMNode::get_namespaceURI) + " " + (hasValue ? Narrow(value.Get().bstrVal) : "-"));
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
        {W("<a> x </a>"), "x", " x "},
        {W("<a>\n <b>5</b>\n</a>"), "5", "\n 5\n"},
        {W("<a><b>1</b> <b>2</b></a>"), "1 2", "1 2"},
        {W("<a> <b> y </b> <b> z </b> </a>"), "y   z", "  y   z  "},
        {W("<a><![CDATA[ x ]]></a>"), " x ", " x "},
        {W("<a> x<![CDATA[ y ]]> z </a>"), "x y  z", " x y  z "},
        {W("<a>x<!-- c -->y<?p q?>z</a>"), "xyz", "xyz"},
        {W("<a xml:space='preserve'> x </a>"), " x ", " x "},
        {W("<a>\u00A0x\u00A0</a>"), "\xC2\xA0x\xC2\xA0", "\xC2\xA0x\xC2\xA0"},
        {W("<a>x\r\ny</a>"), "x\ny", "x\ny"},
        {W("<a>  </a>"), "", "  "},
        {W("<a b=' v '/>"), "", ""},
    };
    for (const Case& test : cases)
    {
        SCOPED_TRACE(Narrow(test.text));
        const DomNode root = RootOf(Loaded(test.text));
        EXPECT_EQ(test.trimmed, TextOf(root.Get()));
        Variant typed; // no data type is declared, so the typed value is the text
        EXPECT_EQ(S_OK, root->get_nodeTypedValue(typed.Put()));
        ASSERT_EQ(VT_BSTR, typed.Get().vt);
        EXPECT_EQ(test.trimmed, Narrow(CComBSTR(typed.Get().bstrVal).View()));

        const DomDocument keeping = NewDocument();
        keeping->put_preserveWhiteSpace(VARIANT_TRUE);
        ASSERT_EQ(S_OK, LoadText(keeping, test.text));
        EXPECT_EQ(test.kept, TextOf(RootOf(keeping).Get()));
    }
}

TEST(DomNode, TextThatIsPutComesBack)
{
    for (const WCHAR* const text : {W("<b>&amp;\"'"), W("]]>"), W("a\tb\n\r\nc"), W("\u00E9\u4E2D"), W("")})
    {
        SCOPED_TRACE(Narrow(text));
        const DomDocument document = Loaded(W("<a b='old'><c/>old</a>"));
        const DomNode root = RootOf(document);
        const DomNode attribute = Select(root.Get(), W("@b"));
        ASSERT_EQ(S_OK, root->put_text(CComBSTR(text).Get()));
        ASSERT_EQ(S_OK, attribute->put_text(CComBSTR(text).Get()));
        EXPECT_EQ("{}a(@{}b=" + Narrow(text) + ")[" + Narrow(text) + "]", MeaningOfText(XmlOf(document.Get())));
    }
}

TEST(DomNode, ChildrenAreInsertedReplacedAndRemoved)
{
    const DomDocument document = Loaded(W("<a><b/><c><d/></c></a>"));
    const DomNode root = RootOf(document);
    const DomNode first = Select(root.Get(), W("b"));
    const DomNode second = Select(root.Get(), W("c"));
    const DomNode deeper = Select(root.Get(), W("c/d"));
    const DomNode created = Created(document, NODE_ELEMENT, W("n"));
    ASSERT_EQ(S_OK, InsertBefore(root, created, second));
    EXPECT_EQ("{}a()[{}b()[]{}n()[]{}c()[{}d()[]]]", Meaning(root.Get()));
    ASSERT_EQ(S_OK, Append(root.Get(), created.Get())); // it moves
    EXPECT_EQ("{}a()[{}b()[]{}c()[{}d()[]]{}n()[]]", Meaning(root.Get()));
    DomNode replaced;
    ASSERT_EQ(S_OK, root->replaceChild(deeper.Get(), first.Get(), replaced.Put()));
    EXPECT_EQ("b", NameOf(replaced.Get()));
    ASSERT_EQ(S_OK, Remove(root.Get(), second.Get()));
    EXPECT_EQ("{}a()[{}d()[]{}n()[]]", Meaning(root.Get()));
    DomNode none, last, previous;
    EXPECT_EQ(S_OK, root->get_lastChild(last.Put()));
    EXPECT_EQ(S_OK, last->get_previousSibling(previous.Put()));
    EXPECT_EQ("nd", NameOf(last.Get()) + NameOf(previous.Get()));
    EXPECT_EQ(S_FALSE, second->get_parentNode(none.Put()));
    EXPECT_EQ(S_FALSE, last->get_nextSibling(none.Put()));
    EXPECT_EQ(S_FALSE, previous->get_previousSibling(none.Put()));
    EXPECT_FALSE(none);

    EXPECT_EQ(E_INVALIDARG, Remove(root.Get(), second.Get())) << "no longer a child";
    EXPECT_EQ(E_INVALIDARG, Remove(root.Get(), nullptr));
    EXPECT_EQ(E_INVALIDARG, root->replaceChild(created.Get(), second.Get(), replaced.Put()));
    EXPECT_EQ(E_INVALIDARG, root->replaceChild(nullptr, created.Get(), replaced.Put()));
    EXPECT_TRUE(FAILED(Append(root.Get(), Created(document, NODE_ATTRIBUTE, W("q")).Get())));
    EXPECT_EQ("{}a()[{}d()[]{}n()[]]", Meaning(root.Get()));
}

TEST(DomNode, ANodeOfAnotherDocumentMoves)
{
    DomDocument source = Loaded(W("<s xmlns:p='u'><p:x p:q='v'>t<p:y/></p:x></s>"));
    const DomDocument target = Loaded(W("<t/>"));
    const DomNode moving = Select(source.Get(), W("/s/*"));
    ASSERT_EQ(S_OK, Append(RootOf(target).Get(), moving.Get()));
    EXPECT_EQ("{}s()[]", Meaning(source.Get()));
    source.Reset(); // nothing of it is needed
    EXPECT_EQ("p:x", NameOf(moving.Get()));
    if (!IsWine()) // Wine's moved names lose their namespace
    {
        EXPECT_EQ("{}t()[{u}x(@{u}q=v)[t{u}y()[]]]", MeaningOfText(XmlOf(target.Get())));
    }
    EXPECT_EQ(XmlOf(target.Get()), OwnerOf(moving.Get()));
}

TEST(DomNode, CreateNodeMakesTheKindsThatAreAskedFor)
{
    const DomDocument document = Loaded(W("<p:a xmlns:p='u'/>"));
    struct Case
    {
        LONG kind;
        const WCHAR* name;
        const WCHAR* uri;
        HRESULT result;
        const char* createdName;
    };
    const Case cases[] = {
        {NODE_ELEMENT, W("e"), W(""), S_OK, "e"},
        {NODE_ATTRIBUTE, W("p:q"), W("u"), S_OK, "p:q"},
        {NODE_ATTRIBUTE, W("type"), kInstanceUri, S_OK, "type"},
        {NODE_ATTRIBUTE, W("xmlns:tk"), W(""), S_OK, "xmlns:tk"},
        {NODE_TEXT, W(""), W(""), S_OK, "#text"},
        {NODE_CDATA_SECTION, W(""), W(""), S_OK, "#cdata-section"},
        {NODE_COMMENT, W(""), W(""), S_OK, "#comment"},
        {NODE_PROCESSING_INSTRUCTION, W("i"), W(""), S_OK, "i"},
        {NODE_DOCUMENT_FRAGMENT, W(""), W(""), S_OK, "#document-fragment"},
        {NODE_ELEMENT, W(""), W(""), E_FAIL, ""},
        {NODE_DOCUMENT, W(""), W(""), E_INVALIDARG, ""},
        {NODE_ENTITY, W("e"), W(""), E_INVALIDARG, ""},
        {NODE_INVALID, W("e"), W(""), E_FAIL, ""},
        {99, W("e"), W(""), E_FAIL, ""},
    };
    for (const Case& test : cases)
    {
        SCOPED_TRACE(std::to_string(test.kind) + " " + Narrow(test.name));
        DomNode node;
        EXPECT_EQ(test.result, document->createNode(Variant(test.kind).Get(), CComBSTR(test.name).Get(),
                                                    CComBSTR(test.uri).Get(), node.Put()));
        EXPECT_EQ(test.createdName, node ? NameOf(node.Get()) : "");
    }

    // In the text created elements are in their namespace, and a part is complete by itself.
    const DomNode outer = Created(document, NODE_ELEMENT, W("p:b"), W("u"));
    ASSERT_EQ(S_OK, Append(RootOf(document).Get(), outer.Get()));
    for (const auto& [name, uri] : {std::pair(W("q:c"), W("v")), std::pair(W("d"), W("w")), std::pair(W("e"), W(""))})
        ASSERT_EQ(S_OK, Append(outer.Get(), Created(document, NODE_ELEMENT, name, uri).Get()));
    EXPECT_EQ("{u}a()[{u}b()[{v}c()[]{w}d()[]{}e()[]]]", MeaningOfText(XmlOf(document.Get())));
    EXPECT_EQ("{u}b()[{v}c()[]{w}d()[]{}e()[]]", MeaningOfText(XmlOf(outer.Get())));
}
