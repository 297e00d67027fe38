// Classes, and what a thread needs to make objects of them.
#include <windows.h>

#include <objbase.h>

#include <thread>

#include <gtest/gtest.h>

#include "utilitiesstaticlib/comptr.h"
#include "utilitiesstaticlib/domclassid.h"

namespace
{

constexpr CLSID kUnknown = {0x12345678, 0x1234, 0x1234, {1, 2, 3, 4, 5, 6, 7, 8}};

HRESULT Create(REFCLSID classId, IUnknown* outer, REFIID riid)
{
    int placeholder = 0;
    void* object = &placeholder;
    const HRESULT result = CoCreateInstance(classId, outer, CLSCTX_INPROC_SERVER, riid, &object);
    if (SUCCEEDED(result))
        static_cast<IUnknown*>(object)->Release();
    else
        EXPECT_EQ(object, nullptr);
    return result;
}

HRESULT CreateOnAnotherThread(REFCLSID classId)
{
    HRESULT result = S_OK;
    std::thread([&] { result = Create(classId, nullptr, IID_IUnknown); }).join();
    return result;
}

} // namespace

TEST(ClassObjects, AreMadeForTheDocumentOnly)
{
    EXPECT_EQ(Create(kDomDocumentClassId, nullptr, IID_IUnknown), S_OK);
    EXPECT_EQ(Create(kDomDocumentClassId, nullptr, kUnknown), E_NOINTERFACE);
    EXPECT_EQ(Create(kUnknown, nullptr, IID_IUnknown), REGDB_E_CLASSNOTREG);
    EXPECT_EQ(CoCreateInstance(kUnknown, nullptr, CLSCTX_INPROC_SERVER, IID_IUnknown, nullptr), E_POINTER);
}

// The test program's own thread is multithreaded, and lends its apartment to threads that have none.
TEST(ClassObjects, NeedComOnTheThreadOrAMultithreadedProcess)
{
    EXPECT_EQ(CreateOnAnotherThread(kDomDocumentClassId), S_OK);
    CoUninitialize();
    EXPECT_EQ(CreateOnAnotherThread(kDomDocumentClassId), CO_E_NOTINITIALIZED);
    EXPECT_EQ(CoInitializeEx(nullptr, COINIT_MULTITHREADED), S_OK);
}
