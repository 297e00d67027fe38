// Calls of delay-loaded functions: the linker's stubs, the helper and the hook together. Windows only: elsewhere
// nothing is delayed.
#include <windows.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include <tvutil/exceptions.h>

#include "utilitiesstaticlib/wideliteral.h"

namespace
{

using Sum = int(int, int, int, int, int);

constexpr WCHAR kNear[] = W("delayload_near.dll");
constexpr WCHAR kThird[] = W("delayload_third.dll");

// The path of a module's file, with slashes; empty when there is no such module.
WideString PathOf(HMODULE module)
{
    std::array<WCHAR, 4096> path{};
    const DWORD length = GetModuleFileNameW(module, path.data(), static_cast<DWORD>(path.size()));
    WideString name(path.data(), length);
    std::ranges::replace(name, W('\\'), W('/'));
    return name;
}

// The folder of delayload_user, with the separator at the end.
WideString Folder()
{
    const WideString program = PathOf(nullptr);
    return program.substr(0, program.find_last_of(W('/')) + 1) + W("delayload/");
}

HMODULE LoadFrom(WideString file)
{
    std::ranges::replace(file, W('/'), W('\\'));
    return LoadLibraryExW(file.c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH);
}

// With delayload_user loaded.
class DelayedCall : public testing::Test
{
protected:
    void SetUp() override
    {
        m_module = LoadFrom(Folder() + W("delayload_user.dll"));
        ASSERT_NE(m_module, nullptr);
    }

    void TearDown() override
    {
        Unload();
    }

    void Unload()
    {
        if (m_module != nullptr)
            FreeLibrary(m_module);
        m_module = nullptr;
    }

    template <class Function>
    [[nodiscard]] Function* Find(const char* name) const
    {
        return reinterpret_cast<Function*>(reinterpret_cast<void*>(GetProcAddress(m_module, name)));
    }

private:
    HMODULE m_module = nullptr;
};

} // namespace

TEST_F(DelayedCall, LoadsAtTheFirstUseAndFreesWithTheModule)
{
    EXPECT_EQ(GetModuleHandleW(kNear), nullptr) << "loaded before its first use";
    EXPECT_EQ(Find<Sum>("UserNearSum")(1, 2, 3, 4, 5), 54321) << "arguments of the first call";
    EXPECT_EQ(PathOf(GetModuleHandleW(kNear)), Folder() + kNear);
    EXPECT_EQ(Find<Sum>("UserNearSum")(6, 7, 8, 9, 0), 9876) << "arguments of a later call";

    EXPECT_EQ(GetModuleHandleW(kThird), nullptr) << "loaded before its first use";
    EXPECT_EQ(Find<int()>("UserThirdAnswer")(), 3);
    EXPECT_EQ(PathOf(GetModuleHandleW(kThird)), Folder() + W("3/") + kThird);

    Unload();
    EXPECT_EQ(GetModuleHandleW(kNear), nullptr);
    EXPECT_EQ(GetModuleHandleW(kThird), nullptr);
}

TEST_F(DelayedCall, FailsByExceptionAsOftenAsItIsTried)
{
    const auto absentAnswer = Find<int(bool*)>("UserAbsentAnswer");
    for (int attempt = 0; attempt < 2; ++attempt)
    {
        SCOPED_TRACE(attempt);
        bool unwound = false;
        EXPECT_THROW(absentAnswer(&unwound), ExceptionDelayLoadDllLoadFailure);
        EXPECT_TRUE(unwound);
    }
    EXPECT_EQ(Find<Sum>("UserNearSum")(1, 0, 0, 0, 0), 1) << "another module after a failure";
    Unload();
    EXPECT_EQ(GetModuleHandleW(kNear), nullptr);
}

// Threads race for the first call: some load the module more than once, and every reference is given back once.
TEST_F(DelayedCall, CountsReferencesRightWhenThreadsRace)
{
    constexpr int kThreads = 8;
    for (int round = 0; round < 20; ++round, SetUp())
    {
        const auto sum = Find<Sum>("UserNearSum");
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

        HMODULE const ours = LoadFrom(Folder() + kNear);
        Unload();
        ASSERT_EQ(GetModuleHandleW(kNear), ours) << "freed once too often";
        FreeLibrary(ours);
        ASSERT_EQ(GetModuleHandleW(kNear), nullptr) << "a reference is left";
    }
}
