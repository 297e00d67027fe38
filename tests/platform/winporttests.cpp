// What the portability layer has beyond Windows: fault injection, debug output on request.
#include <windows.h>

#include <objbase.h>
#include <oleauto.h>

#include <memory>
#include <new>
#include <string>
#include <thread>

#include <gtest/gtest.h>

#include "utilitiesstaticlib/wideliteral.h"
#include "winport/faultinjection.h"

using winport::FaultKind;

TEST(FaultInjection, FailsTheNthAllocationOnceAndOnThisThreadOnly)
{
    std::thread([] { winport::ArmFault(FaultKind::Allocation, 1); }).join();
    winport::ArmFault(FaultKind::Allocation, 3);
    void* const first = CoTaskMemAlloc(1);
    BSTR const second = SysAllocString(W("x"));
    BSTR const third = SysAllocString(W("x"));
    BSTR const fourth = SysAllocString(W("x"));
    const bool fired = winport::DisarmFault(FaultKind::Allocation);
    EXPECT_TRUE(first != nullptr && second != nullptr && third == nullptr && fourth != nullptr);
    EXPECT_TRUE(fired);
    EXPECT_FALSE(winport::DisarmFault(FaultKind::Allocation));
    CoTaskMemFree(first);
    SysFreeString(second);
    SysFreeString(fourth);

    if (TVPT_ALLOCATION_FAULTS == 0)
        GTEST_SKIP() << "this program has the sanitizer's allocation functions";
    winport::ArmFault(FaultKind::Allocation, 1);
    EXPECT_THROW(std::make_unique<char[]>(10), std::bad_alloc);
    EXPECT_TRUE(winport::DisarmFault(FaultKind::Allocation));
    winport::ArmFault(FaultKind::Allocation, 1);
    const std::unique_ptr<int> none(new (std::nothrow) int);
    EXPECT_TRUE(winport::DisarmFault(FaultKind::Allocation));
    EXPECT_EQ(none, nullptr);
}

// Each allocation and each platform call of loading a module fails in turn; the next try always works.
TEST(FaultInjection, LoadingFailsCleanlyAndThenWorksAgain)
{
    for (const FaultKind kind : {FaultKind::PlatformCall, FaultKind::Allocation})
    {
        bool fired = kind == FaultKind::PlatformCall || TVPT_ALLOCATION_FAULTS != 0;
        for (unsigned nth = 1; fired; ++nth)
        {
            ASSERT_LT(nth, 200u);
            winport::ArmFault(kind, nth);
            HMODULE const module = LoadLibraryW(W("platform_sample.dll"));
            const DWORD error = GetLastError();
            fired = winport::DisarmFault(kind);
            EXPECT_EQ(module == nullptr, fired) << nth;
            EXPECT_TRUE(module == nullptr ? error == ERROR_NOT_ENOUGH_MEMORY : FreeLibrary(module) != FALSE) << nth;
            EXPECT_EQ(GetModuleHandleW(W("platform_sample.dll")), nullptr) << nth;
            EXPECT_TRUE(fired || nth > 1) << "nothing of it can fail";
        }
    }
}

TEST(DebugOutput, GoesToStandardErrorOnRequestWithoutAllocating)
{
    const std::u16string text = std::u16string(600, u'\u20AC') + u"\xD800 end\n";
    const auto capture = [&text]
    {
        testing::internal::CaptureStderr();
        winport::ArmFault(FaultKind::Allocation, 1);
        OutputDebugStringW(text.c_str());
        OutputDebugStringW(nullptr);
        EXPECT_FALSE(winport::DisarmFault(FaultKind::Allocation)) << "it allocates";
        return testing::internal::GetCapturedStderr();
    };
    EXPECT_EQ(capture(), "");
    ASSERT_TRUE(SetEnvironmentVariableW(W("WINPORT_DEBUG_OUTPUT"), W("1")));
    const std::string written = capture();
    EXPECT_EQ(written.size(), 3u * 600 + 8);
    EXPECT_TRUE(written.starts_with("\xE2\x82\xAC") && written.ends_with("\xE2\x82\xAC\xEF\xBF\xBD end\n"));
    ASSERT_TRUE(SetEnvironmentVariableW(W("WINPORT_DEBUG_OUTPUT"), nullptr));
}
