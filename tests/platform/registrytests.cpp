// The registry: keys and values below HKEY_CURRENT_USER\Software\TavlenPlatformTests.
#include <utility>
#include <vector>

#include "tests/platform/spoolerfixture.h"

namespace
{

constexpr const WCHAR* kRoot = W("Software\\TavlenPlatformTests");

using Bytes = std::vector<BYTE>;

DWORD Create(HKEY parent, const WCHAR* path, HKEY& key)
{
    DWORD disposition = 0;
    EXPECT_EQ(RegCreateKeyExW(parent, path, 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &key, &disposition), 0);
    return disposition;
}

LSTATUS Set(HKEY key, const WCHAR* name, DWORD type, const Bytes& bytes)
{
    return RegSetValueExW(key, name, 0, type, bytes.data(), static_cast<DWORD>(bytes.size()));
}

// The value goes into `bytes`, which is the room before.
LSTATUS Get(HKEY key, const WCHAR* name, DWORD& type, Bytes& bytes)
{
    auto size = static_cast<DWORD>(bytes.size());
    const LSTATUS error = RegQueryValueExW(key, name, nullptr, &type, bytes.data(), &size);
    bytes.resize(size);
    return error;
}

class Registry : public SpoolerTest
{
protected:
    void SetUp() override
    {
        SpoolerTest::SetUp();
        RegDeleteTreeW(HKEY_CURRENT_USER, kRoot);
        EXPECT_EQ(Create(HKEY_CURRENT_USER, kRoot, m_root), DWORD{REG_CREATED_NEW_KEY});
    }
    void TearDown() override
    {
        EXPECT_EQ(RegCloseKey(m_root), ERROR_SUCCESS);
        RegDeleteTreeW(HKEY_CURRENT_USER, kRoot);
        SpoolerTest::TearDown();
    }

    HKEY m_root = nullptr;
};

} // namespace

TEST_F(Registry, MakesThePathOfAKeyOnceAndDeletesLeavesAndTrees)
{
    HKEY made = nullptr;
    HKEY again = nullptr;
    EXPECT_EQ(Create(m_root, W("a\\b"), made), DWORD{REG_CREATED_NEW_KEY});
    EXPECT_EQ(Create(m_root, W("A\\B\\"), again), DWORD{REG_OPENED_EXISTING_KEY});
    EXPECT_EQ(RegCloseKey(again), ERROR_SUCCESS);
    EXPECT_EQ(RegCloseKey(again), LSTATUS{ERROR_INVALID_HANDLE});
    EXPECT_EQ(RegDeleteKeyW(m_root, W("a")), LSTATUS{ERROR_ACCESS_DENIED}) << "it has a key below";
    EXPECT_EQ(RegDeleteKeyW(m_root, W("a\\b")), LSTATUS{ERROR_SUCCESS});
    EXPECT_EQ(Set(made, W("v"), REG_BINARY, {1}), LSTATUS{ERROR_KEY_DELETED});
    EXPECT_EQ(RegCloseKey(made), ERROR_SUCCESS);
    EXPECT_EQ(RegOpenKeyExW(m_root, W("a\\b"), 0, KEY_READ, &again), LSTATUS{ERROR_FILE_NOT_FOUND});
}

TEST_F(Registry, GivesValuesAsTheyWereSetIntoARoomThatIsLargeEnough)
{
    const std::pair<const WCHAR*, std::pair<DWORD, Bytes>> values[] = {
        {W("binary"), {REG_BINARY, {0, 1, 255}}},
        {W("empty"), {REG_BINARY, {}}},
        {nullptr, {REG_SZ, {'x', 0, 0, 0}}},      // the key's own
        {W("BINARY"), {REG_DWORD, {1, 2, 3, 4}}}, // over the first
    };
    DWORD type = 0;
    Bytes bytes;
    for (const auto& [name, value] : values)
    {
        ASSERT_EQ(Set(m_root, name, value.first, value.second), ERROR_SUCCESS);
        bytes.assign(16, 0xEE);
        EXPECT_EQ(Get(m_root, name, type, bytes), ERROR_SUCCESS);
        EXPECT_EQ(std::pair(type, bytes), value);
    }
    bytes.assign(3, 0xEE);
    EXPECT_EQ(Get(m_root, W("binary"), type, bytes), LSTATUS{ERROR_MORE_DATA});
    EXPECT_EQ(bytes.size(), 4u) << "what is needed";

    HKEY reader = nullptr; // may only read
    ASSERT_EQ(RegOpenKeyExW(HKEY_CURRENT_USER, kRoot, 0, KEY_READ, &reader), ERROR_SUCCESS);
    EXPECT_EQ(Set(reader, W("binary"), REG_SZ, {}), LSTATUS{ERROR_ACCESS_DENIED});
    EXPECT_EQ(RegCloseKey(reader), ERROR_SUCCESS);
    for (const LSTATUS error : {LSTATUS{ERROR_SUCCESS}, LSTATUS{ERROR_FILE_NOT_FOUND}})
        EXPECT_EQ(RegDeleteValueW(m_root, W("binary")), error);
}
