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
    EXPECT_NE(first, nullptr);
    EXPECT_NE(second, nullptr);
    EXPECT_EQ(third, nullptr);
    EXPECT_NE(fourth, nullptr);
    EXPECT_TRUE(fired);
    EXPECT_FALSE(winport::DisarmFault(FaultKind::Allocation));
    CoTaskMemFree(first);
    SysFreeString(second);
    SysFreeString(fourth);
}

TEST(FaultInjection, KindsAreCountedApart)
{
    winport::ArmFault(FaultKind::PlatformCall, 1);
    BSTR const string = SysAllocString(W("x"));
    EXPECT_NE(string, nullptr);
    SysFreeString(string);
    EXPECT_EQ(LoadLibraryW(W("platform_sample.dll")), nullptr);
    EXPECT_TRUE(winport::DisarmFault(FaultKind::PlatformCall));
}

TEST(FaultInjection, ReachesTheLanguagesOwnAllocations)
{
    if (TVPT_ALLOCATION_FAULTS == 0)
        GTEST_SKIP() << "this program has the sanitizer's allocation functions";
    winport::ArmFault(FaultKind::Allocation, 1);
    bool thrown = false;
    try
    {
        const std::wstring text(1000, L'x');
    }
    catch (const std::bad_alloc&)
    {
        thrown = true;
    }
    EXPECT_TRUE(winport::DisarmFault(FaultKind::Allocation));
    EXPECT_TRUE(thrown);

    struct alignas(64) Wide
    {
        char bytes[64];
    };
    winport::ArmFault(FaultKind::Allocation, 1);
    const std::unique_ptr<Wide> none(new (std::nothrow) Wide);
    EXPECT_TRUE(winport::DisarmFault(FaultKind::Allocation));
    EXPECT_EQ(none, nullptr);
    const std::unique_ptr<Wide> some(new (std::nothrow) Wide);
    EXPECT_EQ(reinterpret_cast<ULONG_PTR>(some.get()) % 64, 0u);
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
    const auto major = []
    {
        OSVERSIONINFOW version = {};
        version.dwOSVersionInfoSize = sizeof(version);
        EXPECT_TRUE(GetVersionExW(&version));
        return version.dwMajorVersion * 100 + version.dwMinorVersion;
    };
    winport::SetVersion(5, 2);
    EXPECT_EQ(major(), 502u);
    winport::ResetVersion();
    EXPECT_EQ(major(), 1000u);
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
        const bool allocated = winport::DisarmFault(FaultKind::Allocation);
        EXPECT_FALSE(allocated);
        return testing::internal::GetCapturedStderr();
    };

    std::string expected;
    for (int count = 0; count < 600; ++count)
        expected += "\xE2\x82\xAC";
    expected += "\xEF\xBF\xBD end\n";

    EXPECT_EQ(capture(), "");
    ASSERT_TRUE(SetEnvironmentVariableW(W("WINPORT_DEBUG_OUTPUT"), W("1")));
    EXPECT_EQ(capture(), expected);
    ASSERT_TRUE(SetEnvironmentVariableW(W("WINPORT_DEBUG_OUTPUT"), nullptr));
}
