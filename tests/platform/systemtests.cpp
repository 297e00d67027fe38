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
    ASSERT_TRUE(SetEnvironmentVariableW(name, W("\x00E4\x20AC"
                                                "b")));
    EXPECT_EQ(GetEnvironmentVariableW(name, nullptr, 0), 4u);
    EXPECT_EQ(GetEnvironmentVariableW(name, value, 3), 4u);
    EXPECT_EQ(GetEnvironmentVariableW(name, value, 4), 3u);
    EXPECT_EQ(WStringView(value), W("\x00E4\x20AC"
                                    "b"));

    ASSERT_TRUE(SetEnvironmentVariableW(name, nullptr));
    const auto [length, absent] = WithLastError([&] { return GetEnvironmentVariableW(name, value, 4); });
    EXPECT_EQ(length, 0u);
    EXPECT_EQ(absent, DWORD{ERROR_ENVVAR_NOT_FOUND});

    const auto [set, badName] = WithLastError([] { return SetEnvironmentVariableW(W("A=B"), W("c")); });
    EXPECT_FALSE(set);
    EXPECT_EQ(badName, DWORD{ERROR_INVALID_PARAMETER});
}

TEST(Devmode, HasTheLayoutThatDriversExchange)
{
    struct Row
    {
        const char* field;
        std::size_t offset;
        std::size_t expected;
    };
    constexpr Row kRows[] = {
        {"dmDeviceName", offsetof(DEVMODEW, dmDeviceName), 0},
        {"dmSpecVersion", offsetof(DEVMODEW, dmSpecVersion), 64},
        {"dmDriverVersion", offsetof(DEVMODEW, dmDriverVersion), 66},
        {"dmSize", offsetof(DEVMODEW, dmSize), 68},
        {"dmDriverExtra", offsetof(DEVMODEW, dmDriverExtra), 70},
        {"dmFields", offsetof(DEVMODEW, dmFields), 72},
        {"dmOrientation", offsetof(DEVMODEW, dmOrientation), 76},
        {"dmPaperSize", offsetof(DEVMODEW, dmPaperSize), 78},
        {"dmPaperLength", offsetof(DEVMODEW, dmPaperLength), 80},
        {"dmPaperWidth", offsetof(DEVMODEW, dmPaperWidth), 82},
        {"dmScale", offsetof(DEVMODEW, dmScale), 84},
        {"dmCopies", offsetof(DEVMODEW, dmCopies), 86},
        {"dmDefaultSource", offsetof(DEVMODEW, dmDefaultSource), 88},
        {"dmPrintQuality", offsetof(DEVMODEW, dmPrintQuality), 90},
        {"dmColor", offsetof(DEVMODEW, dmColor), 92},
        {"dmDuplex", offsetof(DEVMODEW, dmDuplex), 94},
        {"dmYResolution", offsetof(DEVMODEW, dmYResolution), 96},
        {"dmTTOption", offsetof(DEVMODEW, dmTTOption), 98},
        {"dmCollate", offsetof(DEVMODEW, dmCollate), 100},
        {"dmFormName", offsetof(DEVMODEW, dmFormName), 102},
        {"dmLogPixels", offsetof(DEVMODEW, dmLogPixels), 166},
        {"dmBitsPerPel", offsetof(DEVMODEW, dmBitsPerPel), 168},
        {"dmPelsWidth", offsetof(DEVMODEW, dmPelsWidth), 172},
        {"dmPelsHeight", offsetof(DEVMODEW, dmPelsHeight), 176},
        {"dmNup", offsetof(DEVMODEW, dmNup), 180},
        {"dmDisplayFrequency", offsetof(DEVMODEW, dmDisplayFrequency), 184},
        {"dmICMMethod", offsetof(DEVMODEW, dmICMMethod), 188},
        {"dmICMIntent", offsetof(DEVMODEW, dmICMIntent), 192},
        {"dmMediaType", offsetof(DEVMODEW, dmMediaType), 196},
        {"dmDitherType", offsetof(DEVMODEW, dmDitherType), 200},
        {"dmReserved1", offsetof(DEVMODEW, dmReserved1), 204},
        {"dmPanningHeight", offsetof(DEVMODEW, dmPanningHeight), 216},
    };
    static_assert(sizeof(DEVMODEW) == 220);
    for (const Row& row : kRows)
        EXPECT_EQ(row.offset, row.expected) << row.field;
}
