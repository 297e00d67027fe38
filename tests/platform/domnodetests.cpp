// The text of nodes, and how queries find them.
#include <tuple>

#include "tests/platform/domfixture.h"

namespace
{

// The ids of what the query finds.
std::string Ids(IXMLDOMNode* context, const WCHAR* query)
{
    ComPtr<IXMLDOMNodeList> list;
    EXPECT_EQ(S_OK, context->selectNodes(CComBSTR(query).Get(), list.Put())) << Narrow(query);
    std::string ids;
    for (DomNode node; list->nextNode(node.Put()) == S_OK;)
        ids += TextOf(Select(node.Get(), W("@id")).Get());
    return ids;
}

} // namespace

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
        document->put_preserveWhiteSpace(VARIANT_TRUE);
        ASSERT_EQ(S_OK, LoadText(document, text));
        EXPECT_EQ(kept, TextOf(RootOf(document).Get()));
    }
}

TEST(DomSelection, FindsNodesInDocumentOrder)
{
    const DomDocument document = Loaded(W("<p:t xmlns:p='u' id='0'><p:f id='1' name='k:A'><p:o id='2'/>"
                                          "<p:s id='3' name='k:N'><p:v id='4'/></p:s></p:f><p:f id='5' name='k:B'>"
                                          "<p:o id='6'/></p:f><f id='7'/></p:t>"));
    for (const auto& [name, setting] : {std::pair(W("SelectionLanguage"), W("XPath")),
                                        {W("SelectionNamespaces"), W("xmlns:x='u' xmlns:other=\"v\"")}})
    {
        const CComBSTR text(setting);
        VARIANT value{};
        value.vt = VT_BSTR;
        value.bstrVal = text.Get();
        EXPECT_EQ(S_OK, document->setProperty(CComBSTR(name).Get(), value));
    }
    const DomNode feature = Select(document.Get(), W("//x:f"));
    const auto idsOf = [&document](const WCHAR* query)
    {
        return Ids(document.Get(), query);
    };
    EXPECT_EQ("15", idsOf(W("//x:f")));
    EXPECT_EQ("24", idsOf(W("//x:f[@name = \"k:A\"]/x:o | //x:f[@name = \"k:A\"]/x:s[@name = \"k:N\"]/x:v")));
    EXPECT_EQ("1256", idsOf(W("//x:o | //x:f | //x:o | //other:f")));
    EXPECT_EQ("457", idsOf(W("//x:f[@name = '|' or @name = \"k:B\"] | (//f | //x:v)")));
    EXPECT_EQ("135", idsOf(W("//*[x:o | x:v]")));
    EXPECT_EQ("2", Ids(feature.Get(), W("./x:o")));
    EXPECT_EQ("15", Ids(feature.Get(), W("//x:f"))) << "the document's";

    // What is not there differs from what cannot be asked.
    DomNode node;
    EXPECT_EQ(S_FALSE, document->selectSingleNode(CComBSTR(W("//x:none")).Get(), node.Put()));
    for (const WCHAR* const query : {W("//x:f["), W(""), W("count(//x:f)"), W("//unbound:f"), W("//p:f"), W("//x:f |"),
                                     W("//x:f | 1"), W("//x:f || //x:o")})
    {
        SCOPED_TRACE(Narrow(query));
        ComPtr<IXMLDOMNodeList> list;
        EXPECT_EQ(E_FAIL, document->selectSingleNode(CComBSTR(query).Get(), node.Put()));
        EXPECT_EQ(E_FAIL, document->selectNodes(CComBSTR(query).Get(), list.Put()));
    }
}
