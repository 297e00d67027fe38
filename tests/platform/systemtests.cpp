// Version, slim locks, environment and last error.
#include <windows.h>

#include <thread>

#include <gtest/gtest.h>

#include "tests/platform/wine.h"
#include "tests/platform/withlasterror.h"
#include "utilitiesstaticlib/wideliteral.h"

TEST(Version, IsTenPointNoughtAndAsksForTheStructuresSize)
{
    OSVERSIONINFOW version = {};
    EXPECT_EQ(WithLastError([&version] { return GetVersionExW(&version); }),
              std::pair(FALSE, IsWine() ? DWORD{ERROR_SUCCESS} : DWORD{ERROR_INSUFFICIENT_BUFFER})); // Wine: no reason
    version.dwOSVersionInfoSize = 276;
    ASSERT_TRUE(GetVersionExW(&version));
    EXPECT_TRUE(version.dwMajorVersion == 10 && version.dwMinorVersion == 0 && version.dwPlatformId == 2);
}

TEST(SlimLock, IsFreeFromTheStartAndHeldByOneThread)
{
    constexpr int kRounds = 100'000;
    static SRWLOCK lock = SRWLOCK_INIT;
    int guarded = 0; // plain: the thread sanitizer sees a lock that does not hold
    const auto work = [&guarded]
    {
        for (int round = 0; round < kRounds; ++round)
        {
            AcquireSRWLockExclusive(&lock);
            ++guarded;
            ReleaseSRWLockExclusive(&lock);
        }
    };
    std::thread other(work);
    work();
    other.join();
    EXPECT_EQ(guarded, 2 * kRounds);
}

TEST(LastError, BelongsToItsThread)
{
    SetLastError(ERROR_MORE_DATA);
    std::thread([] { EXPECT_NE(GetLastError(), DWORD{ERROR_MORE_DATA}); }).join();
}

TEST(ThreadSlots, HoldAPointerForEachThread)
{
    const DWORD slot = TlsAlloc();
    ASSERT_NE(slot, TLS_OUT_OF_INDEXES);
    int value = 0;
    EXPECT_EQ(TlsGetValue(slot), nullptr);
    EXPECT_TRUE(TlsSetValue(slot, &value));
    std::thread([slot]() { EXPECT_EQ(TlsGetValue(slot), nullptr); }).join();
    SetLastError(ERROR_FILE_NOT_FOUND);
    EXPECT_EQ(TlsGetValue(slot), &value);
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_SUCCESS));
    EXPECT_TRUE(TlsFree(slot));
}

TEST(Environment, ValuesAreFetchedWithTheirSize)
{
    const WCHAR* const name = W("TVPT_PLATFORM_TEST");
    WCHAR value[4] = {};
    ASSERT_TRUE(SetEnvironmentVariableW(name, W("\u00E4\u20ACb")));
    EXPECT_EQ(GetEnvironmentVariableW(name, value, 3), 4u);
    EXPECT_EQ(GetEnvironmentVariableW(name, value, 4), 3u);
    EXPECT_EQ(WStringView(value), W("\u00E4\u20ACb"));
    ASSERT_TRUE(SetEnvironmentVariableW(name, nullptr));
    EXPECT_EQ(WithLastError([&] { return GetEnvironmentVariableW(name, value, 4); }),
              std::pair(DWORD{0}, DWORD{ERROR_ENVVAR_NOT_FOUND}));
}
