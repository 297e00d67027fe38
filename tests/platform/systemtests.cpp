// Version, environment, last error and the layout of DEVMODEW.
#include <windows.h>

#include <cstddef>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "tests/platform/wine.h"
#include "tests/platform/withlasterror.h"
#include "utilitiesstaticlib/wideliteral.h"

TEST(Version, IsTenPointNoughtAndAsksForTheStructuresSize)
{
    OSVERSIONINFOW version = {};
    version.dwOSVersionInfoSize = 276;
    ASSERT_TRUE(GetVersionExW(&version));
    EXPECT_EQ(version.dwMajorVersion, 10u);
    EXPECT_EQ(version.dwMinorVersion, 0u);
    EXPECT_EQ(version.dwPlatformId, 2u);

    version = {};
    const auto [answered, error] = WithLastError([&version] { return GetVersionExW(&version); });
    EXPECT_FALSE(answered);
    // Wine gives no reason.
    EXPECT_EQ(error, IsWine() ? ERROR_SUCCESS : DWORD{ERROR_INSUFFICIENT_BUFFER});
}

TEST(SlimLock, IsFreeFromTheStartAndHeldByOneThread)
{
    constexpr int kRounds = 10'000;
    static SRWLOCK lock = SRWLOCK_INIT;
    int guarded = 0; // plain: the thread sanitizer sees a lock that does not hold
    std::vector<std::thread> threads;
    for (int thread = 0; thread < 4; ++thread)
        threads.emplace_back(
            [&guarded]
            {
                for (int round = 0; round < kRounds; ++round)
                {
                    AcquireSRWLockExclusive(&lock);
                    ++guarded;
                    ReleaseSRWLockExclusive(&lock);
                }
            });
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(guarded, 4 * kRounds);
}

TEST(LastError, BelongsToItsThread)
{
    SetLastError(ERROR_MORE_DATA);
    DWORD elsewhere = ERROR_MORE_DATA;
    std::thread([&elsewhere] { elsewhere = GetLastError(); }).join();
    EXPECT_NE(elsewhere, DWORD{ERROR_MORE_DATA});
}

TEST(Environment, ValuesAreFetchedWithTheirSize)
{
    const WCHAR* const name = W("TVPT_PLATFORM_TEST");
    WCHAR value[4] = {};
    ASSERT_TRUE(SetEnvironmentVariableW(name, W("\u00E4\u20ACb")));
    EXPECT_EQ(GetEnvironmentVariableW(name, nullptr, 0), 4u);
    EXPECT_EQ(GetEnvironmentVariableW(name, value, 3), 4u);
    EXPECT_EQ(GetEnvironmentVariableW(name, value, 4), 3u);
    EXPECT_EQ(WStringView(value), W("\u00E4\u20ACb"));

    ASSERT_TRUE(SetEnvironmentVariableW(name, nullptr));
    const auto [length, absent] = WithLastError([&] { return GetEnvironmentVariableW(name, value, 4); });
    EXPECT_EQ(length, 0u);
    EXPECT_EQ(absent, DWORD{ERROR_ENVVAR_NOT_FOUND});
    const auto [set, badName] = WithLastError([] { return SetEnvironmentVariableW(W("A=B"), W("c")); });
    EXPECT_FALSE(set);
    EXPECT_EQ(badName, DWORD{ERROR_INVALID_PARAMETER});
}

// As drivers exchange it. A field at a wrong place moves those behind it, so one of each stretch is enough.
static_assert(offsetof(DEVMODEW, dmSpecVersion) == 64 && offsetof(DEVMODEW, dmDriverVersion) == 66);
static_assert(offsetof(DEVMODEW, dmSize) == 68 && offsetof(DEVMODEW, dmDriverExtra) == 70);
static_assert(offsetof(DEVMODEW, dmFields) == 72 && offsetof(DEVMODEW, dmOrientation) == 76);
static_assert(offsetof(DEVMODEW, dmPaperSize) == 78 && offsetof(DEVMODEW, dmPaperLength) == 80);
static_assert(offsetof(DEVMODEW, dmPaperWidth) == 82 && offsetof(DEVMODEW, dmScale) == 84);
static_assert(offsetof(DEVMODEW, dmCopies) == 86 && offsetof(DEVMODEW, dmDefaultSource) == 88);
static_assert(offsetof(DEVMODEW, dmPrintQuality) == 90 && offsetof(DEVMODEW, dmColor) == 92);
static_assert(offsetof(DEVMODEW, dmDuplex) == 94 && offsetof(DEVMODEW, dmYResolution) == 96);
static_assert(offsetof(DEVMODEW, dmTTOption) == 98 && offsetof(DEVMODEW, dmCollate) == 100);
static_assert(offsetof(DEVMODEW, dmFormName) == 102 && offsetof(DEVMODEW, dmLogPixels) == 166);
static_assert(offsetof(DEVMODEW, dmNup) == 180 && offsetof(DEVMODEW, dmICMMethod) == 188);
static_assert(offsetof(DEVMODEW, dmICMIntent) == 192 && offsetof(DEVMODEW, dmMediaType) == 196);
static_assert(offsetof(DEVMODEW, dmDitherType) == 200 && sizeof(DEVMODEW) == 220);
