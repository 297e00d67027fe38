// BSTRs, variants, task memory and a thread's COM.
#include <windows.h>

#include <objbase.h>
#include <oleauto.h>

#include <cstdint>
#include <cstring>
#include <thread>

#include <gtest/gtest.h>

#include "tests/platform/countingunknown.h"
#include "utilitiesstaticlib/wideliteral.h"

namespace
{

std::uint32_t LengthPrefix(BSTR string)
{
    std::uint32_t prefix = 0;
    std::memcpy(&prefix, reinterpret_cast<const char*>(string) - sizeof(prefix), sizeof(prefix));
    return prefix;
}

} // namespace

TEST(Bstr, CarriesItsLengthBeforeAndATerminatorBehindItsCharacters)
{
    const WCHAR withZero[] = {'a', 0, 'b'};
    struct Case
    {
        const char* name;
        BSTR string;
        UINT byteLength;
    };
    const Case cases[] = {
        {"text", SysAllocString(W("Letter")), 12},           {"empty", SysAllocString(W("")), 0},
        {"zero inside", SysAllocStringLen(withZero, 3), 6},  {"no text given", SysAllocStringLen(nullptr, 5), 10},
        {"even bytes", SysAllocStringByteLen("abcd", 4), 4}, {"odd bytes", SysAllocStringByteLen("abc", 3), 3},
        {"no bytes", SysAllocStringByteLen(nullptr, 0), 0},
    };
    for (const Case& test : cases)
    {
        SCOPED_TRACE(test.name);
        ASSERT_NE(test.string, nullptr);
        EXPECT_EQ(LengthPrefix(test.string), test.byteLength);
        EXPECT_EQ(SysStringByteLen(test.string), test.byteLength);
        EXPECT_EQ(SysStringLen(test.string), test.byteLength / 2);
        EXPECT_EQ(test.string[(test.byteLength + 1) / 2], 0);
        SysFreeString(test.string);
    }
    EXPECT_EQ(SysAllocString(nullptr), nullptr);
    EXPECT_EQ(SysStringLen(nullptr), 0u);
    EXPECT_EQ(SysStringByteLen(nullptr), 0u);
    SysFreeString(nullptr);
}

TEST(Bstr, RefusesLengthsBeyondTheByteCount)
{
    for (const UINT length : {0x7FFFFFFFu, 0x80000000u, 0x80000001u, 0xFFFFFFFEu, 0xFFFFFFFFu})
        EXPECT_EQ(SysAllocStringLen(nullptr, length), nullptr) << length;
    EXPECT_EQ(SysAllocStringByteLen(nullptr, 0xFFFFFFFFu), nullptr);

    BSTR string = SysAllocString(W("kept"));
    EXPECT_FALSE(SysReAllocStringLen(&string, nullptr, 0xFFFFFFFFu));
    EXPECT_EQ(WStringView(string, SysStringLen(string)), W("kept"));
    SysFreeString(string);
}

TEST(Bstr, ReallocatesFromTheTextOrKeepsWhatWasThere)
{
    BSTR string = SysAllocString(W("PageMediaSize"));
    ASSERT_TRUE(SysReAllocStringLen(&string, string + 4, 5));
    EXPECT_EQ(WStringView(string, SysStringLen(string)), W("Media"));
    ASSERT_TRUE(SysReAllocStringLen(&string, nullptr, 3));
    EXPECT_EQ(WStringView(string, SysStringLen(string)), W("Med"));
    ASSERT_TRUE(SysReAllocStringLen(&string, nullptr, 70));
    EXPECT_EQ(SysStringLen(string), 70u);
    EXPECT_EQ(WStringView(string, 3), W("Med"));
    EXPECT_EQ(string[70], 0);
    SysFreeString(string);
}

TEST(Variant, CopyOwnsWhatItHoldsAndClearGivesItBack)
{
    CountingUnknown object;
    VARIANT source = {};
    VARIANT copy = {};
    VariantInit(&source);
    VariantInit(&copy);

    source.vt = VT_UNKNOWN;
    source.punkVal = &object;
    ASSERT_EQ(VariantCopy(&copy, &source), S_OK);
    EXPECT_EQ(object.References(), 2u);

    // The copy gives its reference back when something else takes its place.
    source.vt = VT_BSTR;
    source.bstrVal = SysAllocStringLen(W("a\0b"), 3);
    ASSERT_EQ(VariantCopy(&copy, &source), S_OK);
    EXPECT_EQ(object.References(), 1u);
    ASSERT_EQ(copy.vt, VT_BSTR);
    EXPECT_NE(copy.bstrVal, source.bstrVal);
    EXPECT_EQ(WStringView(copy.bstrVal, SysStringLen(copy.bstrVal)), WStringView(W("a\0b"), 3));
    ASSERT_EQ(VariantCopy(&copy, &copy), S_OK);
    EXPECT_EQ(SysStringLen(copy.bstrVal), 3u);

    EXPECT_EQ(VariantClear(&source), S_OK);
    EXPECT_EQ(source.vt, VT_EMPTY);
    EXPECT_EQ(VariantClear(&copy), S_OK);
    EXPECT_EQ(copy.vt, VT_EMPTY);
}

TEST(Variant, ReferencesOwnNothing)
{
    BSTR string = SysAllocString(W("A4"));
    VARIANT reference = {};
    VariantInit(&reference);
    reference.vt = static_cast<VARTYPE>(VT_BYREF | VT_BSTR);
    reference.pbstrVal = &string;
    VARIANT copy = {};
    VariantInit(&copy);
    ASSERT_EQ(VariantCopy(&copy, &reference), S_OK);
    EXPECT_EQ(copy.pbstrVal, &string);
    EXPECT_EQ(VariantClear(&copy), S_OK);
    EXPECT_EQ(VariantClear(&reference), S_OK);
    EXPECT_EQ(SysStringLen(string), 2u);
    SysFreeString(string);
}

TEST(Variant, RefusesTypesThatDoNotExist)
{
    for (const int type : {15, 0x0FFF, VT_BYREF | VT_EMPTY, VT_BYREF | VT_NULL})
    {
        VARIANT variant = {};
        VariantInit(&variant);
        variant.vt = static_cast<VARTYPE>(type);
        EXPECT_EQ(VariantClear(&variant), DISP_E_BADVARTYPE) << type;
        EXPECT_EQ(variant.vt, type);
    }
}

TEST(TaskMemory, GrowsKeepingItsContentAndFreesAtSizeNought)
{
    auto* memory = static_cast<char*>(CoTaskMemAlloc(4));
    ASSERT_NE(memory, nullptr);
    std::memcpy(memory, "abc", 4);
    memory = static_cast<char*>(CoTaskMemRealloc(memory, 100000));
    ASSERT_NE(memory, nullptr);
    EXPECT_STREQ(memory, "abc");
    EXPECT_EQ(CoTaskMemRealloc(memory, 0), nullptr);

    void* const nothing = CoTaskMemAlloc(0);
    EXPECT_NE(nothing, nullptr);
    CoTaskMemFree(nothing);
    CoTaskMemFree(nullptr);

    void* const fresh = CoTaskMemRealloc(nullptr, 8);
    EXPECT_NE(fresh, nullptr);
    CoTaskMemFree(fresh);
}

TEST(ComThread, CountsItsInitialisationsAndKeepsItsModel)
{
    std::thread(
        []
        {
            EXPECT_EQ(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED), S_OK);
            EXPECT_EQ(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED), S_FALSE);
            EXPECT_EQ(CoInitializeEx(nullptr, COINIT_MULTITHREADED), RPC_E_CHANGED_MODE);
            CoUninitialize();
            EXPECT_EQ(CoInitializeEx(nullptr, COINIT_MULTITHREADED), RPC_E_CHANGED_MODE);
            CoUninitialize();
            EXPECT_EQ(CoInitializeEx(nullptr, COINIT_MULTITHREADED), S_OK);
            CoUninitialize();
        })
        .join();
}
