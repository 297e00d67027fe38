// Queries, their results and the properties that govern them.
#include "tests/platform/domfixture.h"

namespace
{

ComPtr<IXMLDOMNodeList> SelectAll(IXMLDOMNode* context, const WCHAR* query)
{
    ComPtr<IXMLDOMNodeList> list;
    EXPECT_EQ(S_OK, context->selectNodes(CComBSTR(query).Get(), list.Put())) << Narrow(query);
    return list;
}

// The ids of the nodes.
std::string Ids(const ComPtr<IXMLDOMNodeList>& list)
{
    std::string ids;
    EXPECT_EQ(S_OK, list->reset());
    for (DomNode node; list->nextNode(node.Put()) == S_OK;)
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
    const auto idsOf = [&document](const WCHAR* query)
    {
        return Ids(SelectAll(document.Get(), query));
    };
    EXPECT_EQ("15", idsOf(W("//x:f")));
    EXPECT_EQ("24", idsOf(W("//x:f[@name = \"k:A\"]/x:o | //x:f[@name = \"k:A\"]/x:s[@name = \"k:N\"]/x:v")));
    EXPECT_EQ("1256", idsOf(W("//x:o | //x:f | //x:o | //other:f")));
    EXPECT_EQ("457", idsOf(W("//x:f[@name = '|' or @name = \"k:B\"] | (//f | //x:v)")));
    EXPECT_EQ("135", idsOf(W("//*[x:o | x:v]")));
    EXPECT_EQ("2", Ids(SelectAll(feature.Get(), W("./x:o"))));
    EXPECT_EQ("15", Ids(SelectAll(feature.Get(), W("//x:f")))) << "the document's";

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
    EXPECT_EQ("157", Ids(children));
    ASSERT_EQ(S_OK, Append(root.Get(), Select(root.Get(), W("x:f")).Get())); // the first goes behind the others
    EXPECT_EQ("571", Ids(children));
    ASSERT_EQ(S_OK, Remove(root.Get(), Select(root.Get(), W("f")).Get()));
    EXPECT_EQ("51", Ids(children));

    EXPECT_EQ("157", Ids(list));
    DomNode item;
    for (const LONG outside : {3, -1})
        EXPECT_EQ(S_FALSE, list->get_item(outside, item.Put()));
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
