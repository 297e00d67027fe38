// How long nodes live, and what happens to them when trees are taken apart. The sanitizers are the judges.
#include <thread>
#include <vector>

#include <gtest/gtest.h>
#include <objbase.h>

#include "tests/platform/domfixture.h"

namespace
{

ULONG References(IUnknown* object)
{
    object->AddRef();
    return object->Release();
}

HRESULT Append(IXMLDOMNode* parent, IXMLDOMNode* child)
{
    DomNode appended;
    return parent->appendChild(child, appended.Put());
}

HRESULT Remove(IXMLDOMNode* parent, IXMLDOMNode* child)
{
    DomNode removed;
    return parent->removeChild(child, removed.Put());
}

} // namespace

TEST(DomLifetime, EveryAnswerIsOneReference)
{
    const DomDocument document = Loaded(W("<a><b c='1'/></a>"));
    const DomNode node = Select(document.Get(), W("//b"));
    EXPECT_EQ(1u, References(node.Get()));
    {
        const DomNode again = Select(document.Get(), W("//b"));
        EXPECT_EQ(node.Get(), again.Get()) << "one object per node";
        EXPECT_EQ(2u, References(node.Get()));
        DomNode parent, removed, appended;
        ASSERT_EQ(S_OK, node->get_parentNode(parent.Put()));
        ASSERT_EQ(S_OK, parent->removeChild(node.Get(), removed.Put()));
        ASSERT_EQ(S_OK, parent->appendChild(removed.Get(), appended.Put()));
        EXPECT_EQ(4u, References(node.Get()));
    }
    EXPECT_EQ(1u, References(node.Get()));
    EXPECT_EQ(1u, References(document.Get()));
}

TEST(DomLifetime, HeldNodesSurviveWhateverHappensAround)
{
    DomDocument document = Loaded(W("<a><b c='1'>t<d><e/></d></b></a>"));
    const DomNode root = RootOf(document);
    const DomNode inner = Select(root.Get(), W("b/d/e"));
    const DomNode attribute = Select(root.Get(), W("b/@c"));
    const DomNode text = Select(root.Get(), W("b/text()"));
    DomNode value;
    ASSERT_EQ(S_OK, attribute->get_firstChild(value.Put()));
    ASSERT_EQ(S_OK, root->put_text(CComBSTR(W("all gone")).Get()));
    ASSERT_EQ(S_OK, attribute->put_text(CComBSTR(W("2")).Get()));
    EXPECT_EQ("1", TextOf(value.Get()));
    DomNode parent, top, none;
    ASSERT_EQ(S_OK, text->get_parentNode(parent.Put()));
    EXPECT_EQ("{}b(@{}c=2)[t{}d()[{}e()[]]]", Meaning(parent.Get()));
    parent.Reset();
    ASSERT_EQ(S_OK, inner->get_parentNode(parent.Put()));
    ASSERT_EQ(S_OK, parent->get_parentNode(top.Put()));
    EXPECT_EQ(S_FALSE, top->get_parentNode(none.Put()));

    ASSERT_EQ(S_OK, LoadText(document, W("<new/>")));
    EXPECT_EQ("{}a()[all gone]", Meaning(root.Get()));
    ComPtr<IXMLDOMDocument> owner;
    ASSERT_EQ(S_OK, root->get_ownerDocument(owner.Put()));
    EXPECT_EQ("{}a()[all gone]", Meaning(owner.Get())) << "the old document, not the new one";
    document.Reset();
    EXPECT_EQ("{}b(@{}c=2)[t{}d()[{}e()[]]]", Meaning(top.Get()));
}

TEST(DomLifetime, NothingMayContainItself)
{
    const DomDocument document = Loaded(W("<a><b><c/></b></a>"));
    const DomNode root = RootOf(document);
    const DomNode inner = Select(root.Get(), W("b/c"));
    EXPECT_EQ(E_FAIL, Append(root.Get(), root.Get()));
    EXPECT_EQ(E_FAIL, Append(inner.Get(), root.Get()));
    EXPECT_EQ(E_FAIL, Append(inner.Get(), document.Get()));
    EXPECT_EQ(E_INVALIDARG, Append(root.Get(), nullptr));
    EXPECT_EQ(E_FAIL, Append(document.Get(), Created(document, NODE_ELEMENT, W("second")).Get()));
    EXPECT_EQ(E_FAIL, Append(document.Get(), Created(document, NODE_TEXT, W("")).Get()));
    EXPECT_EQ("{}a()[{}b()[{}c()[]]]", Meaning(document.Get()));
}

TEST(DomLifetime, FragmentsEmptyThemselvesIntoTheTree)
{
    const DomDocument document = Loaded(W("<a><z/></a>"));
    ComPtr<IXMLDOMDocumentFragment> fragment;
    ASSERT_EQ(S_OK, document->createDocumentFragment(fragment.Put()));
    ASSERT_EQ(S_OK, Append(fragment.Get(), Created(document, NODE_ELEMENT, W("x")).Get()));
    ASSERT_EQ(S_OK, Append(fragment.Get(), Created(document, NODE_ELEMENT, W("y")).Get()));
    DomNode inserted;
    const DomNode root = RootOf(document);
    ASSERT_EQ(S_OK, root->insertBefore(fragment.Get(), Variant(Select(root.Get(), W("z"))).Get(), inserted.Put()));
    EXPECT_EQ("{}a()[{}x()[]{}y()[]{}z()[]]", Meaning(document.Get()));
    VARIANT_BOOL hasChildren = VARIANT_TRUE;
    EXPECT_EQ(S_FALSE, fragment->hasChildNodes(&hasChildren));
}

TEST(DomLifetime, ListsNoticeThatTheirNodeMovedBetweenDocuments)
{
    // Each document counts its changes. With one of these numbers of changes before the move, the count of the second
    // document is what the lists remember of the first, whose nodes at that place are freed by then.
    for (int changes = 0; changes < 20; ++changes)
    {
        DomDocument first = Loaded(W("<a><b x='1' y='2'><c/><d/></b></a>"));
        const DomDocument second = Loaded(W("<s/>"));
        const DomNode moving = Select(first.Get(), W("//b"));
        ComPtr<IXMLDOMNamedNodeMap> map;
        ComPtr<IXMLDOMNodeList> children;
        DomNode item, removed;
        for (int change = 0; change < 10; ++change)
            ASSERT_EQ(S_OK, Select(moving.Get(), W("c"))->put_text(CComBSTR(W("t")).Get()));
        ASSERT_EQ(S_OK, moving->get_attributes(map.Put()));
        ASSERT_EQ(S_OK, moving->get_childNodes(children.Put()));
        ASSERT_EQ(S_OK, map->get_item(1, item.Put()));
        ASSERT_EQ(S_OK, children->get_item(1, item.Put()));
        item.Reset();
        ASSERT_EQ(S_OK, map->removeNamedItem(CComBSTR(W("y")).Get(), removed.Put()));
        ASSERT_EQ(S_OK, Remove(moving.Get(), Select(moving.Get(), W("*[2]")).Get()));
        removed.Reset();
        for (int change = 0; change < changes; ++change)
            ASSERT_EQ(S_OK, RootOf(second)->put_text(CComBSTR(W("t")).Get()));
        ASSERT_EQ(S_OK, Append(RootOf(second).Get(), moving.Get()));
        EXPECT_EQ(S_FALSE, map->get_item(1, item.Put()));
        EXPECT_EQ(S_FALSE, children->get_item(1, item.Put()));
    }
}

TEST(DomLifetime, MovedNodesNeedNothingOfTheirOldDocument)
{
    DomDocument source = Loaded(W("<s xmlns:p='u'><p:x p:q='v'>t</p:x></s>"));
    DomNode moving = Select(source.Get(), W("/s/*"));
    const DomDocument target = Loaded(W("<t/>"));
    ASSERT_EQ(S_OK, Append(RootOf(target).Get(), moving.Get()));
    moving.Reset();
    source.Reset();
    EXPECT_EQ("{}t()[{u}x(@{u}q=v)[t]]", Meaning(target.Get()));
}

TEST(DomLifetime, TreesOfAnyDepthAreWrittenCopiedAndFreed)
{
    constexpr int kLevels = 50'000;
    const DomDocument document = Loaded(W("<a/>"));
    DomNode inner = Created(document, NODE_ELEMENT, W("a"));
    for (int level = 1; level < kLevels; ++level)
    {
        const DomNode outer = Created(document, NODE_ELEMENT, W("a"));
        ASSERT_EQ(S_OK, Append(outer.Get(), inner.Get()));
        inner = outer;
    }
    EXPECT_EQ(static_cast<std::size_t>(kLevels - 1) * 7 + 4, XmlOf(inner.Get()).size());
    DomNode copy;
    ASSERT_EQ(S_OK, inner->cloneNode(VARIANT_TRUE, copy.Put()));
    ASSERT_EQ(S_OK, copy->put_text(CComBSTR(W("x")).Get()));
    EXPECT_EQ("", TextOf(inner.Get()));
}

TEST(DomLifetime, CharacterDataIsEdited)
{
    const DomDocument document = Loaded(W("<a>\U0001F600bc</a>"));
    DomNode node;
    ASSERT_EQ(S_OK, RootOf(document)->get_firstChild(node.Put()));
    ComPtr<IXMLDOMText> text, right;
    ASSERT_EQ(S_OK, node.As(text));
    LONG length = 0;
    EXPECT_EQ(S_OK, text->get_length(&length));
    EXPECT_EQ(4, length) << "in UTF-16 characters";
    EXPECT_EQ(E_INVALIDARG, text->deleteData(1, 1)) << "half a character";
    EXPECT_EQ(E_INVALIDARG, text->insertData(5, CComBSTR(W("x")).Get()));
    EXPECT_EQ(E_INVALIDARG, text->deleteData(-1, 1));
    EXPECT_EQ(S_OK, text->insertData(2, CComBSTR(W("-")).Get()));
    EXPECT_EQ(S_OK, text->replaceData(3, 99, CComBSTR(W("yz")).Get()));
    EXPECT_EQ(S_OK, text->appendData(CComBSTR(W("!")).Get()));
    ASSERT_EQ(S_OK, text->splitText(3, right.Put()));
    EXPECT_EQ("yz!", TextOf(right.Get()));
    EXPECT_EQ("\xF0\x9F\x98\x80-yz!", TextOf(RootOf(document).Get()));
    ComPtr<IXMLDOMElement> root;
    ASSERT_EQ(S_OK, document->get_documentElement(root.Put()));
    EXPECT_EQ(S_OK, root->normalize());
    DomNode none;
    EXPECT_EQ(S_FALSE, node->get_nextSibling(none.Put()));
    EXPECT_EQ("yz!", TextOf(right.Get())) << "held, so still there";
}

TEST(DomLifetime, ThreadsWorkOnDocumentsOfTheirOwn)
{
    std::vector<std::thread> threads;
    for (int number = 0; number < 4; ++number)
        threads.emplace_back(
            []
            {
                EXPECT_EQ(S_OK, CoInitializeEx(nullptr, COINIT_MULTITHREADED));
                for (int turn = 0; turn < 20; ++turn)
                {
                    const DomDocument document = Loaded(W("<p:a xmlns:p='u'><p:b>t</p:b></p:a>"));
                    SetProperty(document, W("SelectionNamespaces"), W("xmlns:x='u'"));
                    EXPECT_EQ("t", TextOf(Select(document.Get(), W("//x:b")).Get()));
                    EXPECT_EQ(S_FALSE, LoadText(document, W("<a>")));
                    EXPECT_FALSE(XmlOf(RootOf(Loaded(W("<a b='c'/>"))).Get()).empty());
                }
                CoUninitialize();
            });
    for (std::thread& thread : threads)
        thread.join();
}
