// Mutexes by name, between threads and between handles; that the store's processes share them is their purpose
// (tests/tvpt).
#include <windows.h>

#include <algorithm>
#include <atomic>
#include <thread>
#include <vector>

#include "tests/platform/spoolerfixture.h"
#include "tests/platform/withlasterror.h"
#include "utilitiesstaticlib/wideliteral.h"

namespace
{

class NamedMutexes : public SpoolerTest
{
};

TEST_F(NamedMutexes, BelongToOneAtATime)
{
    constexpr int kThreads = 4;
    constexpr int kRounds = 50;
    std::atomic<int> inside = 0;
    std::atomic<int> most = 0;
    std::atomic<int> rounds = 0;
    std::vector<std::thread> threads;
    for (int at = 0; at < kThreads; ++at)
        threads.emplace_back(
            [&]
            {
                HANDLE const mutex = CreateMutexW(nullptr, FALSE, W("Local\\Tavlen platform tests"));
                ASSERT_NE(mutex, nullptr);
                for (int round = 0; round < kRounds; ++round)
                {
                    EXPECT_EQ(WaitForSingleObject(mutex, INFINITE), DWORD{WAIT_OBJECT_0});
                    most = std::max<int>(most, ++inside);
                    ++rounds;
                    std::this_thread::yield();
                    --inside;
                    EXPECT_TRUE(ReleaseMutex(mutex));
                }
                EXPECT_TRUE(CloseHandle(mutex));
            });
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(most, 1);
    EXPECT_EQ(rounds, kThreads * kRounds);

    HANDLE const closed = CreateMutexW(nullptr, FALSE, W("Local\\Tavlen platform tests"));
    EXPECT_TRUE(CloseHandle(closed));
    const auto [waited, error] = WithLastError([closed] { return WaitForSingleObject(closed, INFINITE); });
    EXPECT_EQ(waited, DWORD{WAIT_FAILED});
    EXPECT_EQ(error, DWORD{ERROR_INVALID_HANDLE});
}

} // namespace
