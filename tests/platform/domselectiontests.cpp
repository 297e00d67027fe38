// Queries, their results and the properties that govern them.
#include <gtest/gtest.h>

#include "tests/platform/domfixture.h"

namespace
{

ComPtr<IXMLDOMNodeList> SelectAll(IXMLDOMNode* context, const WCHAR* query)
{
    ComPtr<IXMLDOMNodeList> list;
    EXPECT_EQ(S_OK, context->selectNodes(CComBSTR(query).Get(), list.Put())) << Narrow(query);
    return list;
}

// The ids of the nodes from where the list stands.
std::string Ids(const ComPtr<IXMLDOMNodeList>& list)
{
    std::string ids;
    DomNode node;
    while (list->nextNode(node.Put()) == S_OK)
        ids += TextOf(Select(node.Get(), W("@id")).Get());
    return ids;
}

DomDocument Ticket()
{
    const DomDocument document = Loaded(W("<p:t xmlns:p='u' id='0'><p:f id='1' name='k:A'><p:o id='2'/>"
                                          "<p:s id='3' name='k:N'><p:v id='4'/></p:s></p:f><p:f id='5' name='k:B'>"
                                          "<p:o id='6'/></p:f><f id='7'/></p:t>"));
    EXPECT_EQ(S_OK, SetProperty(document, W("SelectionLanguage"), W("XPath")));
    EXPECT_EQ(S_OK, SetProperty(document, W("SelectionNamespaces"), W("xmlns:x='u' xmlns:other=\"v\"")));
    return document;
}

} // namespace

TEST(DomSelection, FindsNodesInDocumentOrder)
{
    const DomDocument document = Ticket();
    const DomNode feature = Select(document.Get(), W("//x:f"));
    struct Case
    {
        IXMLDOMNode* context;
        const WCHAR* query;
        const char* ids;
    };
    const Case cases[] = {
        {document.Get(), W("//x:f"), "15"},
        {document.Get(), W("//f"), "7"},
        {document.Get(), W("//other:f"), ""},
        {document.Get(), W("//x:f[@name = \"k:A\"]/x:o | //x:f[@name = \"k:A\"]/x:s[@name = \"k:N\"]/x:v"), "24"},
        {document.Get(), W("//x:o | //x:f | //x:o | //other:f"), "1256"},
        {document.Get(), W("//x:f[@name = '|' or @name = \"k:B\"] | (//f | //x:v)"), "457"},
        {document.Get(), W("//*[x:o | x:v]"), "135"},
        {document.Get(), W("//x:f[2]"), "5"},
        {feature.Get(), W("./x:o"), "2"},
        {feature.Get(), W(".//x:v"), "4"},
        {feature.Get(), W("//x:f"), "15"}, // the document's
    };
    for (const Case& test : cases)
        EXPECT_EQ(test.ids, Ids(SelectAll(test.context, test.query))) << Narrow(test.query);

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

TEST(DomSelection, ListsStayAsTheyWereFoundAndChildListsFollowTheTree)
{
    const DomDocument document = Ticket();
    const DomElement root = RootOf(document);
    const ComPtr<IXMLDOMNodeList> list = SelectAll(document.Get(), W("//x:f | //f"));
    ComPtr<IXMLDOMNodeList> children;
    ASSERT_EQ(S_OK, root->get_childNodes(children.Put()));
    const auto child = [&children](LONG at)
    {
        DomNode node;
        return children->get_item(at, node.Put()) == S_OK ? TextOf(Select(node.Get(), W("@id")).Get()) : "none";
    };
    EXPECT_EQ("5", child(1));
    ASSERT_EQ(S_OK, Append(root.Get(), Select(root.Get(), W("x:f")).Get())); // the first goes behind the others
    EXPECT_EQ("7", child(1));
    ASSERT_EQ(S_OK, Remove(root.Get(), Select(root.Get(), W("f")).Get()));
    EXPECT_EQ("1", child(1));
    EXPECT_EQ("none", child(2));

    LONG length = 0;
    EXPECT_EQ(S_OK, list->get_length(&length));
    EXPECT_EQ(3, length);
    DomNode none;
    for (const LONG outside : {3, -1})
        EXPECT_EQ(S_FALSE, list->get_item(outside, none.Put()));
    for (int turn = 0; turn < 2; ++turn)
    {
        EXPECT_EQ(S_OK, list->reset());
        EXPECT_EQ("157", Ids(list));
    }
}

TEST(DomSelection, PropertiesTakeWhatTheyCanUseAndOutlastLoading)
{
    for (const auto& [name, value] :
         {std::pair(W("SelectionLanguage"), W("Prolog")), std::pair(W("SelectionNamespaces"), W("a='u'")),
          std::pair(W("SelectionNamespaces"), W("xmlns:a=u")), std::pair(W("SelectionNamespaces"), W("xmlns:a='u' b")),
          std::pair(W("NoSuchProperty"), W("x"))})
        EXPECT_EQ(E_FAIL, SetProperty(NewDocument(), name, value)) << Narrow(value);
    const DomDocument document = Ticket();
    ASSERT_EQ(S_OK, LoadText(document, W("<p:f xmlns:p='u' id='9'/>")));
    EXPECT_EQ("9", Ids(SelectAll(document.Get(), W("//x:f"))));
    EXPECT_EQ(S_OK, SetProperty(document, W("SelectionNamespaces"), W("xmlns:y='u'")));
    EXPECT_EQ("9", Ids(SelectAll(document.Get(), W("//y:f"))));
}
