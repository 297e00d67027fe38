// How long nodes live, and what happens to them when trees are taken apart. The sanitizers are the judges.
#include <thread>

#include <gtest/gtest.h>
#include <objbase.h>

#include "tests/platform/domfixture.h"

TEST(DomLifetime, EveryAnswerIsOneReference)
{
    const DomDocument document = Loaded(W("<a><b c='1'/></a>"));
    const DomNode node = Select(document.Get(), W("//b"));
    {
        const DomNode again = Select(document.Get(), W("//b"));
        EXPECT_EQ(node.Get(), again.Get()) << "one object per node";
        DomNode parent, removed, appended;
        ASSERT_EQ(S_OK, node->get_parentNode(parent.Put()));
        ASSERT_EQ(S_OK, parent->removeChild(node.Get(), removed.Put()));
        ASSERT_EQ(S_OK, parent->appendChild(removed.Get(), appended.Put()));
        EXPECT_EQ(4u, ReferencesOf(node.Get()));
    }
    EXPECT_EQ(1u, ReferencesOf(node.Get()));
    EXPECT_EQ(1u, ReferencesOf(document.Get()));
}

TEST(DomLifetime, HeldNodesSurviveWhateverHappensAround)
{
    DomDocument document = Loaded(W("<a><b c='1'>t<d><e/></d></b></a>"));
    const DomElement root = RootOf(document);
    const DomNode inner = Select(root.Get(), W("b/d/e"));
    const DomNode attribute = Select(root.Get(), W("b/@c"));
    const DomNode text = Select(root.Get(), W("b/text()"));
    DomNode value, parent, top, none;
    ASSERT_EQ(S_OK, attribute->get_firstChild(value.Put()));
    ASSERT_EQ(S_OK, PutText(root.Get(), W("all gone")));
    ASSERT_EQ(S_OK, PutText(attribute.Get(), W("2")));
    EXPECT_EQ("1", TextOf(value.Get()));
    ASSERT_EQ(S_OK, inner->get_parentNode(parent.Put()));
    ASSERT_EQ(S_OK, parent->get_parentNode(top.Put()));
    EXPECT_EQ(S_FALSE, top->get_parentNode(none.Put()));

    ASSERT_EQ(S_OK, LoadText(document, W("<new/>")));
    ComPtr<IXMLDOMDocument> owner;
    ASSERT_EQ(S_OK, root->get_ownerDocument(owner.Put()));
    EXPECT_EQ("{}a()[all gone]", Meaning(owner.Get())) << "the old document, not the new one";
    document.Reset();
    ASSERT_EQ(S_OK, text->get_parentNode(parent.Put()));
    EXPECT_EQ("{}b(@{}c=2)[t{}d()[{}e()[]]]", Meaning(parent.Get()));
}

TEST(DomLifetime, NothingMayContainItself)
{
    const DomDocument document = Loaded(W("<a><b><c/></b></a>"));
    const DomElement root = RootOf(document);
    const DomNode inner = Select(root.Get(), W("b/c"));
    EXPECT_EQ(E_FAIL, Append(root.Get(), root.Get()));
    EXPECT_EQ(E_FAIL, Append(inner.Get(), root.Get()));
    EXPECT_EQ(E_FAIL, Append(inner.Get(), document.Get()));
    EXPECT_EQ(E_INVALIDARG, Append(root.Get(), nullptr));
    EXPECT_EQ(E_FAIL, Append(document.Get(), Created(document, NODE_ELEMENT, W("second")).Get()));
    EXPECT_EQ(E_FAIL, Append(document.Get(), Created(document, NODE_TEXT, W("")).Get()));
    EXPECT_EQ("{}a()[{}b()[{}c()[]]]", Meaning(document.Get()));
}

TEST(DomLifetime, ListsNoticeThatTheirNodeMovedBetweenDocuments)
{
    // Each document counts its changes. With one of these numbers of changes before the move, the count of the second
    // document is what the lists remember of the first, whose nodes at that place are freed by then.
    for (int changes = 0; changes < 20; ++changes)
    {
        const DomDocument first = Loaded(W("<a><b x='1' y='2'><c/><d/></b></a>"));
        const DomDocument second = Loaded(W("<s/>"));
        const DomNode moving = Select(first.Get(), W("//b"));
        const ComPtr<IXMLDOMNamedNodeMap> map = MapOf(moving.Get());
        ComPtr<IXMLDOMNodeList> children;
        DomNode item;
        for (int change = 0; change < 10; ++change)
            ASSERT_EQ(S_OK, PutText(Select(moving.Get(), W("c")).Get(), W("t")));
        ASSERT_EQ(S_OK, moving->get_childNodes(children.Put()));
        ASSERT_EQ(S_OK, map->get_item(1, item.Put()));
        ASSERT_EQ(S_OK, children->get_item(1, item.Put()));
        item.Reset();
        ASSERT_EQ(S_OK, RemoveAttribute(moving.Get(), W("y")));
        ASSERT_EQ(S_OK, Remove(moving.Get(), Select(moving.Get(), W("*[2]")).Get()));
        for (int change = 0; change < changes; ++change)
            ASSERT_EQ(S_OK, PutText(RootOf(second).Get(), W("t")));
        ASSERT_EQ(S_OK, Append(RootOf(second).Get(), moving.Get()));
        EXPECT_EQ(S_FALSE, map->get_item(1, item.Put()));
        EXPECT_EQ(S_FALSE, children->get_item(1, item.Put()));
    }
}

TEST(DomLifetime, TreesOfAnyDepthAreWrittenAndFreed)
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
    EXPECT_EQ("", TextOf(inner.Get()));
}

TEST(DomLifetime, ThreadsWorkOnDocumentsOfTheirOwn)
{
    const auto work = []
    {
        EXPECT_EQ(S_OK, CoInitializeEx(nullptr, COINIT_MULTITHREADED));
        for (int turn = 0; turn < 40; ++turn)
        {
            const DomDocument document = Loaded(W("<p:a xmlns:p='u'><p:b>t</p:b></p:a>"));
            SetProperty(document, W("SelectionNamespaces"), W("xmlns:x='u'"));
            EXPECT_EQ("t", TextOf(Select(document.Get(), W("//x:b")).Get()));
            EXPECT_EQ(S_FALSE, LoadText(document, W("<a>")));
        }
        CoUninitialize();
    };
    std::thread first(work);
    std::thread second(work);
    first.join();
    second.join();
}
