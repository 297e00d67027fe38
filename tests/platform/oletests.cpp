// BSTRs, variants, task memory, a thread's COM and the classes that it makes objects of.
#include <windows.h>

#include <objbase.h>
#include <oleauto.h>

#include <cstdint>
#include <cstring>
#include <thread>

#include <gtest/gtest.h>

#include "tests/platform/countingunknown.h"
#include "utilitiesstaticlib/domclassid.h"
#include "utilitiesstaticlib/wideliteral.h"

TEST(Bstr, CarriesItsLengthBeforeAndATerminatorBehindItsCharacters)
{
    struct Case
    {
        const char* name;
        BSTR string;
        UINT byteLength;
    };
    const Case cases[] = {
        {"text", SysAllocString(W("Letter")), 12},           {"empty", SysAllocString(W("")), 0},
        {"zero inside", SysAllocStringLen(W("a\0b"), 3), 6}, {"no text given", SysAllocStringLen(nullptr, 5), 10},
        {"odd bytes", SysAllocStringByteLen("abc", 3), 3},
    };
    for (const Case& test : cases)
    {
        SCOPED_TRACE(test.name);
        ASSERT_NE(test.string, nullptr);
        std::uint32_t prefix = 0;
        std::memcpy(&prefix, reinterpret_cast<const char*>(test.string) - sizeof(prefix), sizeof(prefix));
        EXPECT_EQ(prefix, test.byteLength);
        EXPECT_EQ(SysStringByteLen(test.string), test.byteLength);
        EXPECT_EQ(SysStringLen(test.string), test.byteLength / 2);
        EXPECT_EQ(test.string[(test.byteLength + 1) / 2], 0);
        SysFreeString(test.string);
    }
    EXPECT_EQ(SysAllocString(nullptr), nullptr);
    EXPECT_EQ(SysStringLen(nullptr) + SysStringByteLen(nullptr), 0u);
    SysFreeString(nullptr);
}

TEST(Bstr, RefusesLengthsBeyondTheByteCountAndKeepsWhatWasThere)
{
    for (const UINT length : {0x7FFFFFFFu, 0x80000000u, 0x80000001u, 0xFFFFFFFEu, 0xFFFFFFFFu})
        EXPECT_EQ(SysAllocStringLen(nullptr, length), nullptr) << length;
    EXPECT_EQ(SysAllocStringByteLen(nullptr, 0xFFFFFFFFu), nullptr);

    BSTR string = SysAllocString(W("PageMediaSize"));
    EXPECT_FALSE(SysReAllocStringLen(&string, nullptr, 0xFFFFFFFFu));
    ASSERT_TRUE(SysReAllocStringLen(&string, string + 4, 5)) << "from its own text";
    EXPECT_EQ(WStringView(string, SysStringLen(string)), W("Media"));
    ASSERT_TRUE(SysReAllocStringLen(&string, nullptr, 70));
    EXPECT_EQ(WStringView(string, 5), W("Media"));
    EXPECT_EQ(string[70], 0);
    SysFreeString(string);
}

TEST(Variant, CopiesOwnWhatTheyHoldUnlessItIsAReference)
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
    EXPECT_NE(copy.bstrVal, source.bstrVal);
    EXPECT_EQ(WStringView(copy.bstrVal, SysStringLen(copy.bstrVal)), WStringView(W("a\0b"), 3));
    ASSERT_EQ(VariantCopy(&copy, &copy), S_OK);
    EXPECT_EQ(SysStringLen(copy.bstrVal), 3u);

    VARIANT reference = {};
    reference.vt = static_cast<VARTYPE>(VT_BYREF | VT_BSTR);
    reference.pbstrVal = &source.bstrVal;
    ASSERT_EQ(VariantCopy(&copy, &reference), S_OK);
    EXPECT_EQ(copy.pbstrVal, &source.bstrVal);
    EXPECT_EQ(VariantClear(&copy), S_OK);
    EXPECT_EQ(copy.vt, VT_EMPTY);
    EXPECT_EQ(SysStringLen(source.bstrVal), 3u);
    EXPECT_EQ(VariantClear(&source), S_OK);

    for (const int type : {15, 0x0FFF, VT_BYREF | VT_EMPTY, VT_BYREF | VT_NULL})
    {
        source.vt = static_cast<VARTYPE>(type);
        EXPECT_EQ(VariantClear(&source), DISP_E_BADVARTYPE) << type;
        EXPECT_EQ(source.vt, type);
    }
}

TEST(ComThread, CountsItsInitialisationsAndKeepsItsModel)
{
    std::thread(
        []
        {
            EXPECT_EQ(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED), S_OK);
            EXPECT_EQ(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED), S_FALSE);
            CoUninitialize();
            EXPECT_EQ(CoInitializeEx(nullptr, COINIT_MULTITHREADED), RPC_E_CHANGED_MODE);
            CoUninitialize();
            EXPECT_EQ(CoInitializeEx(nullptr, COINIT_MULTITHREADED), S_OK);
            CoUninitialize();
        })
        .join();
}

TEST(ClassObjects, AreMadeForTheDocumentWhereComIsStarted)
{
    constexpr CLSID kUnknown = {0x12345678, 0x1234, 0x1234, {1, 2, 3, 4, 5, 6, 7, 8}};
    const auto create = [](REFCLSID classId, REFIID riid)
    {
        int placeholder = 0;
        void* object = &placeholder;
        const HRESULT result = CoCreateInstance(classId, nullptr, CLSCTX_INPROC_SERVER, riid, &object);
        EXPECT_EQ(object != nullptr, SUCCEEDED(result));
        if (object != nullptr)
            static_cast<IUnknown*>(object)->Release();
        return result;
    };
    EXPECT_EQ(create(kDomDocumentClassId, IID_IUnknown), S_OK);
    EXPECT_EQ(create(kDomDocumentClassId, kUnknown), E_NOINTERFACE);
    EXPECT_EQ(create(kUnknown, IID_IUnknown), REGDB_E_CLASSNOTREG);
    EXPECT_EQ(CoCreateInstance(kUnknown, nullptr, CLSCTX_INPROC_SERVER, IID_IUnknown, nullptr), E_POINTER);

    // The test program's own thread is multithreaded, and lends its apartment to threads that have none.
    const auto createElsewhere = [&create]
    {
        HRESULT result = S_OK;
        std::thread([&] { result = create(kDomDocumentClassId, IID_IUnknown); }).join();
        return result;
    };
    EXPECT_EQ(createElsewhere(), S_OK);
    CoUninitialize();
    EXPECT_EQ(createElsewhere(), CO_E_NOTINITIALIZED);
    EXPECT_EQ(CoInitializeEx(nullptr, COINIT_MULTITHREADED), S_OK);
}
