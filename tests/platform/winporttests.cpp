// What the portability layer has beyond Windows: fault injection, debug output on request.
#include <windows.h>

#include <oleauto.h>

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
    winport::ArmFault(FaultKind::Allocation, 2);
    BSTR const first = SysAllocString(W("x"));
    BSTR const second = SysAllocString(W("x"));
    BSTR const third = SysAllocString(W("x"));
    const bool fired = winport::DisarmFault(FaultKind::Allocation);
    EXPECT_TRUE(fired && first != nullptr && second == nullptr && third != nullptr);
    SysFreeString(first);
    SysFreeString(third);

    if (TVPT_ALLOCATION_FAULTS == 0)
        GTEST_SKIP() << "this program has the sanitizer's allocation functions";
    winport::ArmFault(FaultKind::Allocation, 1);
    EXPECT_THROW(std::string(100, 'x'), std::bad_alloc);
    EXPECT_TRUE(winport::DisarmFault(FaultKind::Allocation));
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
    for (const WCHAR* const request : {static_cast<const WCHAR*>(nullptr), W("1")})
    {
        SetEnvironmentVariableW(W("WINPORT_DEBUG_OUTPUT"), request);
        testing::internal::CaptureStderr();
        winport::ArmFault(FaultKind::Allocation, 1);
        OutputDebugStringW(text.c_str());
        EXPECT_FALSE(winport::DisarmFault(FaultKind::Allocation)) << "it allocates";
        const std::string written = testing::internal::GetCapturedStderr();
        EXPECT_EQ(written.size(), request == nullptr ? 0 : 3u * 600 + 8);
        EXPECT_TRUE(request == nullptr || written.ends_with("\xE2\x82\xAC\xEF\xBF\xBD end\n"));
    }
    SetEnvironmentVariableW(W("WINPORT_DEBUG_OUTPUT"), nullptr);
}
