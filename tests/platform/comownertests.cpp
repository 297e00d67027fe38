// The owners of COM resources: strings, interfaces, task memory.
#include <windows.h>

#include <cstring>
#include <utility>

#include <gtest/gtest.h>

#include "tests/platform/domfixture.h"
#include "utilitiesstaticlib/cotaskmemptr.h"

TEST(CComBstr, CopiesMovesAndHandsOver)
{
    const CComBSTR original(WStringView(W("a\0b"), 3));
    CComBSTR copy(original);
    EXPECT_NE(copy.Get(), original.Get());
    BSTR const place = copy.Get();
    CComBSTR target(W("freed by what follows"));
    target = CComBSTR(std::move(copy));
    EXPECT_EQ(target.Get(), place);
    const CComBSTR& same = target;
    target = same;
    CComBSTR receiver(W("freed by Put"));
    *receiver.Put() = target.Detach();
    EXPECT_EQ(receiver.View(), original.View());
    EXPECT_EQ(target.Get(), nullptr);
    // Null and empty differ by the pointer only, and copies keep that.
    const CComBSTR empty(W(""));
    EXPECT_TRUE(CComBSTR(target).Get() == nullptr && CComBSTR(empty).Get() != nullptr && empty.IsEmpty());
}

TEST(ComPtr, GivesBackEveryReferenceItTook)
{
    const DomDocument object = NewDocument();
    const ULONG before = ReferencesOf(object.Get());
    {
        const ComPtr<IUnknown> first(object.Get());
        ComPtr<IUnknown> second = first;
        ComPtr<IUnknown> third = std::move(second);
        const ComPtr<IUnknown>& same = third;
        third = same;
        EXPECT_EQ(ReferencesOf(object.Get()), before + 2);
        IUnknown* handedOut = nullptr;
        EXPECT_EQ(third.CopyTo(&handedOut), S_OK);
        ComPtr<IUnknown> fourth;
        fourth.Attach(handedOut);
        fourth.Attach(third.Detach());
        EXPECT_EQ(ReferencesOf(object.Get()), before + 2);
        *fourth.Put() = nullptr;
        DomNode found;
        DomElement missing;
        EXPECT_EQ(first.As(found), S_OK);
        EXPECT_EQ(ReferencesOf(object.Get()), before + 2);
        EXPECT_EQ(first.As(missing), E_NOINTERFACE);
        EXPECT_EQ(ComPtr<IUnknown>().As(found), E_POINTER);
        EXPECT_FALSE(found || missing);
    }
    EXPECT_EQ(ReferencesOf(object.Get()), before);
}

TEST(CoTaskMemPtr, TakesOverWhatACallHandsOut)
{
    const auto handOut = [](WCHAR** text)
    {
        *text = static_cast<WCHAR*>(CoTaskMemAlloc(2 * sizeof(WCHAR)));
        std::memcpy(*text, W("x"), 2 * sizeof(WCHAR));
    };
    CoTaskMemPtr<WCHAR[]> text;
    handOut(TaskMemoryOut(text));
    handOut(TaskMemoryOut(text)); // the first memory is freed: the address sanitizer would tell
    ASSERT_NE(text, nullptr);
    EXPECT_EQ(text[0], W('x'));
}
