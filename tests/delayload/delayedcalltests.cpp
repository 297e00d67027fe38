// Calls of delay-loaded functions: the linker's stubs, the helper and the hook together. Windows only: elsewhere
// nothing is delayed. That a module is loaded at its first use and freed at the end is tested with the core library.
#include <windows.h>

#include <atomic>
#include <filesystem>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include <tvutil/exceptions.h>

#include "utilitiesstaticlib/wideliteral.h"

namespace
{

using Sum = int(int, int, int, int, int);

constexpr WCHAR kNear[] = W("delayload_near.dll");

// From the folder of the samples, beside this program.
HMODULE Load(const WCHAR* name)
{
    WCHAR program[4096] = {};
    GetModuleFileNameW(nullptr, program, 4096);
    const auto file = std::filesystem::path(program).replace_filename("delayload") / name;
    return LoadLibraryExW(file.c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH);
}

// With delayload_user loaded.
class DelayedCall : public testing::Test
{
protected:
    void SetUp() override
    {
        m_module = Load(W("delayload_user.dll"));
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

        HMODULE const ours = Load(kNear);
        Unload();
        ASSERT_EQ(GetModuleHandleW(kNear), ours) << "freed once too often";
        FreeLibrary(ours);
        ASSERT_EQ(GetModuleHandleW(kNear), nullptr) << "a reference is left";
    }
}
