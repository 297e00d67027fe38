// The owners of COM resources: strings and interfaces.
#include <utility>

#include "tests/platform/domfixture.h"

TEST(CComBstr, CopiesMovesAndHandsOver)
{
    const CComBSTR original(WStringView(W("a\0b"), 3));
    CComBSTR copy(original);
    EXPECT_NE(copy.Get(), original.Get());
    CComBSTR target(W("freed by what follows"));
    target = CComBSTR(std::move(copy));
    const CComBSTR& same = target;
    target = same;
    CComBSTR receiver(W("freed by Put"));
    *receiver.Put() = target.Detach();
    EXPECT_EQ(receiver.View(), original.View());
    // Null and empty differ by the pointer only, and copies keep that.
    EXPECT_TRUE(CComBSTR(target).Get() == nullptr && CComBSTR(CComBSTR(W(""))).Get() != nullptr);
}

TEST(ComPtr, GivesBackEveryReferenceItTook)
{
    const DomDocument object = NewDocument();
    const auto references = [&object]
    {
        object->AddRef();
        return object->Release();
    };
    const ULONG before = references();
    {
        const ComPtr<IUnknown> first(object.Get());
        ComPtr<IUnknown> second = first;
        ComPtr<IUnknown> third = std::move(second);
        const ComPtr<IUnknown>& same = third;
        third = same;
        IUnknown* handedOut = nullptr;
        EXPECT_EQ(third.CopyTo(&handedOut), S_OK);
        ComPtr<IUnknown> fourth;
        fourth.Attach(handedOut);
        fourth.Attach(third.Detach());
        EXPECT_EQ(references(), before + 2);
        *fourth.Put() = nullptr;
        DomNode found;
        DomElement missing;
        EXPECT_EQ(first.As(found), S_OK);
        EXPECT_EQ(first.As(missing), E_NOINTERFACE);
        EXPECT_EQ(ComPtr<IUnknown>().As(missing), E_POINTER);
    }
    EXPECT_EQ(references(), before);
}
