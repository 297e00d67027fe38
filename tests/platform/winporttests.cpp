// What the portability layer has beyond Windows: fault injection, another version, debug output on request.
#include <windows.h>

#include <objbase.h>
#include <oleauto.h>

#include <memory>
#include <new>
#include <string>
#include <thread>

#include <gtest/gtest.h>

#include "utilitiesstaticlib/ccombstr.h"
#include "winport/faultinjection.h"
#include "winport/versionoverride.h"

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
}

TEST(FaultInjection, ReachesTheLanguagesOwnAllocations)
{
    if (TVPT_ALLOCATION_FAULTS == 0)
        GTEST_SKIP() << "this program has the sanitizer's allocation functions";
    const auto isRefused = [](const auto& allocate)
    {
        winport::ArmFault(FaultKind::Allocation, 1);
        bool thrown = false;
        try
        {
            allocate();
        }
        catch (const std::bad_alloc&)
        {
            thrown = true;
        }
        EXPECT_TRUE(winport::DisarmFault(FaultKind::Allocation));
        return thrown;
    };
    EXPECT_TRUE(isRefused([] { const std::wstring text(1000, L'x'); }));
    EXPECT_TRUE(isRefused([] { const auto bytes = std::make_unique<char[]>(10); }));
    EXPECT_FALSE(isRefused([] { EXPECT_EQ(new (std::nothrow) int, nullptr); }));
}

// Each allocation and each platform call of loading a module fails in turn; the next try always works.
TEST(FaultInjection, LoadingFailsCleanlyAndThenWorksAgain)
{
    for (const FaultKind kind : {FaultKind::PlatformCall, FaultKind::Allocation})
    {
        if (kind == FaultKind::Allocation && TVPT_ALLOCATION_FAULTS == 0)
            GTEST_SKIP() << "this program has the sanitizer's allocation functions";
        bool fired = true;
        unsigned nth = 1;
        for (; fired; ++nth)
        {
            ASSERT_LT(nth, 200u);
            winport::ArmFault(kind, nth);
            HMODULE const module = LoadLibraryW(W("platform_sample.dll"));
            const DWORD error = GetLastError();
            fired = winport::DisarmFault(kind);
            EXPECT_EQ(module == nullptr, fired) << nth;
            if (module != nullptr)
                EXPECT_TRUE(FreeLibrary(module));
            else
                EXPECT_EQ(error, ERROR_NOT_ENOUGH_MEMORY) << nth;
            EXPECT_EQ(GetModuleHandleW(W("platform_sample.dll")), nullptr) << nth;
        }
        EXPECT_GT(nth, 2u);
    }
}

TEST(VersionOverride, AnswersUntilItIsReset)
{
    const auto version = []
    {
        OSVERSIONINFOW answer = {};
        answer.dwOSVersionInfoSize = sizeof(answer);
        EXPECT_TRUE(GetVersionExW(&answer));
        return answer.dwMajorVersion * 100 + answer.dwMinorVersion;
    };
    winport::SetVersion(5, 2);
    EXPECT_EQ(version(), 502u);
    winport::ResetVersion();
    EXPECT_EQ(version(), 1000u);
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
    std::string expected;
    for (int count = 0; count < 600; ++count)
        expected += "\xE2\x82\xAC";
    EXPECT_EQ(capture(), expected + "\xEF\xBF\xBD end\n");
    ASSERT_TRUE(SetEnvironmentVariableW(W("WINPORT_DEBUG_OUTPUT"), nullptr));
}
