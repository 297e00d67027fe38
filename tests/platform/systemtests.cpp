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

TEST(CodePages, IllFormedTextIsRefusedWhenThatIsAskedFor)
{
    // A continuation alone, overlong ones, a surrogate, one above U+10FFFF, one cut short.
    for (const std::string_view bad :
         {"\x80", "\xC0\x80", "\xE0\x9F\xBF", "\xED\xA0\x80", "\xF4\x90\x80\x80", "\xE2\x82"})
        EXPECT_EQ(WithLastError(
                      [&] { return MultiByteToWideChar(CP_UTF8, MB_ERR_INVALID_CHARS, bad.data(), -1, nullptr, 0); }),
                  std::pair(0, DWORD{ERROR_NO_UNICODE_TRANSLATION}))
            << testing::PrintToString(bad);
}

TEST_F(Registry, HandlesKnowTheirRightsAndThatTheirKeyIsDeleted)
{
    constexpr const WCHAR* kRoot = W("Software\\TavlenPlatformTests");
    RegDeleteTreeW(HKEY_CURRENT_USER, kRoot);
    const auto create = [](const WCHAR* path, HKEY& key)
    {
        DWORD disposition = 0;
        EXPECT_EQ(RegCreateKeyExW(HKEY_CURRENT_USER, (WideString(kRoot) + path).c_str(), 0, nullptr, 0, KEY_ALL_ACCESS,
                                  nullptr, &key, &disposition),
                  ERROR_SUCCESS);
        return disposition;
    };
    DWORD value = 1;
    const auto set = [&value](HKEY key)
    {
        return RegSetValueExW(key, W("v"), 0, REG_DWORD, reinterpret_cast<const BYTE*>(&value), sizeof value);
    };
    HKEY made = nullptr;
    HKEY other = nullptr;
    EXPECT_EQ(create(W("\\a\\b"), made), DWORD{REG_CREATED_NEW_KEY});
    EXPECT_EQ(create(W("\\A\\B\\"), other), DWORD{REG_OPENED_EXISTING_KEY});
    EXPECT_EQ(set(other), ERROR_SUCCESS);
    EXPECT_EQ(RegCloseKey(other), ERROR_SUCCESS);
    EXPECT_EQ(RegCloseKey(other), LSTATUS{ERROR_INVALID_HANDLE});

    ASSERT_EQ(RegOpenKeyExW(made, W(""), 0, KEY_READ, &other), ERROR_SUCCESS);
    EXPECT_EQ(set(other), LSTATUS{ERROR_ACCESS_DENIED});
    DWORD size = 3;
    EXPECT_EQ(RegQueryValueExW(other, W("V"), nullptr, nullptr, reinterpret_cast<BYTE*>(&value), &size),
              LSTATUS{ERROR_MORE_DATA});
    EXPECT_EQ(size, 4u) << "what is needed";
    EXPECT_EQ(RegCloseKey(other), ERROR_SUCCESS);

    EXPECT_EQ(RegDeleteTreeW(HKEY_CURRENT_USER, kRoot), ERROR_SUCCESS);
    EXPECT_EQ(set(made), LSTATUS{ERROR_KEY_DELETED});
    EXPECT_EQ(RegCloseKey(made), ERROR_SUCCESS);
    EXPECT_EQ(RegOpenKeyExW(HKEY_CURRENT_USER, kRoot, 0, KEY_READ, &other), LSTATUS{ERROR_FILE_NOT_FOUND});
}

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
