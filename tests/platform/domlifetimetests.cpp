// How long nodes live, and what happens to them when trees are taken apart. The sanitizers are the judges.
#include "tests/platform/domfixture.h"

TEST(DomLifetime, EveryAnswerIsOneReference)
{
    const DomDocument document = Loaded(W("<a><b c='1'/></a>"));
    const DomNode node = Select(document.Get(), W("//b"));
    EXPECT_EQ(node.Get(), Select(document.Get(), W("//b")).Get()) << "one object per node";
    {
        DomNode parent, removed, appended;
        ASSERT_EQ(S_OK, node->get_parentNode(parent.Put()));
        ASSERT_EQ(S_OK, parent->removeChild(node.Get(), removed.Put()));
        ASSERT_EQ(S_OK, parent->appendChild(removed.Get(), appended.Put()));
        EXPECT_EQ(3u, ReferencesOf(node.Get()));
    }
    EXPECT_EQ(1u, ReferencesOf(node.Get()));
}

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

TEST(DomLifetime, NothingMayContainItselfOrWhatAnotherDocumentHas)
{
    const DomDocument document = Loaded(W("<a><b><c/></b></a>"));
    const DomDocument other = NewDocument();
    const DomElement root = RootOf(document);
    const DomNode inner = Select(root.Get(), W("b/c"));
    ComPtr<IXMLDOMAttribute> foreign, replaced;
    EXPECT_EQ(E_FAIL, Append(root.Get(), root.Get()));
    EXPECT_EQ(E_FAIL, Append(inner.Get(), root.Get()));
    EXPECT_EQ(E_FAIL, Append(document.Get(), Created(document, NODE_ELEMENT, W("second")).Get()));
    EXPECT_EQ(E_INVALIDARG, Append(root.Get(), nullptr));
    EXPECT_EQ(E_INVALIDARG, Append(root.Get(), Created(other, NODE_ELEMENT, W("d")).Get()));
    ASSERT_EQ(S_OK, Created(other, NODE_ATTRIBUTE, W("d")).As(foreign));
    EXPECT_EQ(E_INVALIDARG, root->setAttributeNode(foreign.Get(), replaced.Put()));
    EXPECT_EQ("{}a()[{}b()[{}c()[]]]", Meaning(document.Get()));
}

TEST(DomLifetime, TreesOfAnyDepthAreWrittenAndFreed)
{
    constexpr int kLevels = 50'000;
    const DomDocument document = NewDocument();
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
