// BSTRs, a thread's COM and the classes that it makes objects of.
#include <windows.h>

#include <objbase.h>
#include <oleauto.h>

#include <cstdint>
#include <cstring>
#include <thread>

#include "tests/platform/domfixture.h"
#include "utilitiesstaticlib/domclassid.h"

TEST(Bstr, CarriesItsLengthBeforeAndATerminatorBehindItsCharacters)
{
    for (const auto& [string, length] :
         {std::pair(SysAllocString(W("Letter")), 6u), std::pair(SysAllocString(W("")), 0u),
          std::pair(SysAllocStringLen(W("a\0b"), 3), 3u), std::pair(SysAllocStringLen(nullptr, 5), 5u)})
    {
        ASSERT_NE(string, nullptr);
        std::uint32_t prefix = 0;
        std::memcpy(&prefix, reinterpret_cast<const char*>(string) - sizeof(prefix), sizeof(prefix));
        EXPECT_EQ(prefix, length * sizeof(OLECHAR));
        EXPECT_EQ(SysStringLen(string), length);
        EXPECT_EQ(string[length], 0);
        SysFreeString(string);
    }
    for (const UINT length : {0x7FFFFFFFu, 0x80000001u, 0xFFFFFFFFu})
        EXPECT_EQ(SysAllocStringLen(nullptr, length), nullptr) << "does not fit the count of bytes: " << length;
    EXPECT_EQ(SysStringLen(nullptr), 0u);
}

TEST(ClassObjects, AreMadeForTheDocumentWhereComIsStarted)
{
    constexpr CLSID kUnknown = {0x12345678, 0x1234, 0x1234, {1, 2, 3, 4, 5, 6, 7, 8}};
    const auto create = [](REFCLSID classId, REFIID riid)
    {
        ComPtr<IUnknown> object;
        const HRESULT result = CoCreateInstance(classId, nullptr, CLSCTX_INPROC_SERVER, riid, object.PutVoid());
        EXPECT_EQ(bool(object), SUCCEEDED(result));
        return result;
    };
    EXPECT_EQ(create(kDomDocumentClassId, kUnknown), E_NOINTERFACE);
    EXPECT_EQ(create(kUnknown, IID_IUnknown), REGDB_E_CLASSNOTREG);

    // The test program's own thread is multithreaded, and lends its apartment to threads that have none.
    std::thread([&] { EXPECT_EQ(create(kDomDocumentClassId, IID_IUnknown), S_OK); }).join();
    CoUninitialize();
    EXPECT_EQ(create(kDomDocumentClassId, IID_IUnknown), CO_E_NOTINITIALIZED);
    EXPECT_EQ(CoInitializeEx(nullptr, COINIT_MULTITHREADED), S_OK);
}
