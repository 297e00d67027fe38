// Calls of delay-loaded functions: the linker's stubs, the helper and the hook together. Windows only: elsewhere
// nothing is delayed.
#include <windows.h>

#include <atomic>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include <tvutil/exceptions.h>

#include "tests/delayload/usermodule.h"

namespace
{

using Sum = int(int, int, int, int, int);

constexpr WCHAR kNear[] = W("delayload_near.dll");
constexpr WCHAR kThird[] = W("delayload_third.dll");

} // namespace

TEST(DelayedCall, LoadsAtTheFirstUseAndFreesWithTheModule)
{
    UserModule user;
    ASSERT_NE(user.Handle(), nullptr);
    EXPECT_EQ(GetModuleHandleW(kNear), nullptr) << "loaded before its first use";
    EXPECT_EQ(user.Find<Sum>("UserNearSum")(1, 2, 3, 4, 5), 54321) << "arguments of the first call";
    EXPECT_EQ(PathOf(GetModuleHandleW(kNear)), UserModule::Folder() + kNear);
    EXPECT_EQ(user.Find<Sum>("UserNearSum")(6, 7, 8, 9, 0), 9876) << "arguments of a later call";

    EXPECT_EQ(GetModuleHandleW(kThird), nullptr) << "loaded before its first use";
    EXPECT_EQ(user.Find<int()>("UserThirdAnswer")(), 3);
    EXPECT_EQ(PathOf(GetModuleHandleW(kThird)), UserModule::Folder() + W("3/") + kThird);

    user.Unload();
    EXPECT_EQ(GetModuleHandleW(kNear), nullptr);
    EXPECT_EQ(GetModuleHandleW(kThird), nullptr);
}

TEST(DelayedCall, ConstructsAndDerivesFromClasses)
{
    const UserModule user;
    ASSERT_NE(user.Handle(), nullptr);
    EXPECT_EQ(GetModuleHandleW(kNear), nullptr) << "loaded before its first use";
    EXPECT_EQ(user.Find<int(int)>("UserNearCounter")(6), 7 + 14);
}

TEST(DelayedCall, FailsByExceptionAsOftenAsItIsTried)
{
    UserModule user;
    ASSERT_NE(user.Handle(), nullptr);
    const auto absentAnswer = user.Find<int(bool*)>("UserAbsentAnswer");
    for (int attempt = 0; attempt < 2; ++attempt)
    {
        SCOPED_TRACE(attempt);
        bool unwound = false;
        EXPECT_THROW(absentAnswer(&unwound), ExceptionDelayLoadDllLoadFailure);
        EXPECT_TRUE(unwound);
        EXPECT_TRUE(user.Find<bool()>("UserCatchesAbsence")());
    }
    EXPECT_EQ(user.Find<Sum>("UserNearSum")(1, 0, 0, 0, 0), 1) << "another module after a failure";
    user.Unload();
    EXPECT_EQ(GetModuleHandleW(kNear), nullptr);
}

TEST(DelayedCall, IsThePlatformsAloneWhenTheHookIsOff)
{
    const UserModule user;
    ASSERT_NE(user.Handle(), nullptr);
    EXPECT_THROW(user.Find<bool()>("UserSearchesAsThePlatform")(), ExceptionDelayLoadDllLoadFailure);
    user.Find<void(bool)>("UserSetEnabled")(false);
    EXPECT_TRUE(user.Find<bool()>("UserSearchesAsThePlatform")());
}

// Threads race for the first call: some load the module more than once, and every reference is given back once.
TEST(DelayedCall, CountsReferencesRightWhenThreadsRace)
{
    constexpr int kThreads = 8;
    const WideString file = UserModule::Folder() + kNear;
    for (int round = 0; round < 20; ++round)
    {
        UserModule user;
        ASSERT_NE(user.Handle(), nullptr);
        const auto sum = user.Find<Sum>("UserNearSum");
        std::atomic<int> waiting = kThreads;
        std::atomic<int> right = 0;
        std::vector<std::thread> threads;
        for (int thread = 0; thread < kThreads; ++thread)
        {
            threads.emplace_back(
                [&]
                {
                    for (--waiting; waiting != 0;)
                        std::this_thread::yield();
                    right += sum(5, 4, 3, 2, 1) == 12345;
                });
        }
        for (std::thread& thread : threads)
            thread.join();
        EXPECT_EQ(right, kThreads);

        HMODULE const ours = LoadLibraryExW(file.c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH);
        user.Unload();
        ASSERT_EQ(GetModuleHandleW(kNear), ours) << "freed once too often";
        FreeLibrary(ours);
        ASSERT_EQ(GetModuleHandleW(kNear), nullptr) << "a reference is left";
    }
}
