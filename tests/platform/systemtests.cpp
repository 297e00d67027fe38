// Environment, code pages, registry (what handles may do; values are tested with the caches there) and mutexes by name
// (between threads and handles; that processes share them is tested with the caches, too).
#include <algorithm>
#include <atomic>
#include <string_view>
#include <thread>

#include "tests/platform/spoolerfixture.h"
#include "tests/platform/withlasterror.h"

using NamedMutexes = SpoolerTest;
using Registry = SpoolerTest;

HANDLE MakeMutex()
{
    return CreateMutexExW(nullptr, W("Local\\Tavlen platform tests"), 0, SYNCHRONIZE | MUTEX_MODIFY_STATE);
}

TEST_F(NamedMutexes, BelongToOneAtATime)
{
    constexpr int kThreads = 4;
    constexpr int kRounds = 50;
    std::atomic<int> inside = 0;
    std::atomic<int> most = 0;
    std::vector<std::thread> threads;
    for (int at = 0; at < kThreads; ++at)
        threads.emplace_back(
            [&]
            {
                HANDLE const mutex = MakeMutex();
                ASSERT_NE(mutex, nullptr);
                for (int round = 0; round < kRounds; ++round)
                {
                    EXPECT_EQ(WaitForSingleObject(mutex, INFINITE), DWORD{WAIT_OBJECT_0});
                    most = std::max<int>(most, ++inside);
                    std::this_thread::yield();
                    --inside;
                    EXPECT_TRUE(ReleaseMutex(mutex));
                }
                EXPECT_TRUE(CloseHandle(mutex));
            });
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(most, 1);

    HANDLE const held = MakeMutex();
    HANDLE const closed = MakeMutex();
    EXPECT_EQ(WaitForSingleObject(held, 10), DWORD{WAIT_OBJECT_0});
    std::thread([closed] { EXPECT_EQ(WaitForSingleObject(closed, 10), DWORD{WAIT_TIMEOUT}); }).join();
    EXPECT_TRUE(ReleaseMutex(held));
    EXPECT_TRUE(CloseHandle(held));
    EXPECT_TRUE(CloseHandle(closed));
    EXPECT_EQ(WithLastError([closed] { return WaitForSingleObject(closed, INFINITE); }),
              std::pair(DWORD{WAIT_FAILED}, DWORD{ERROR_INVALID_HANDLE}));
}
