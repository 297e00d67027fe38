// The registry: keys and values below HKEY_CURRENT_USER\Software\TavlenPlatformTests.
#include <windows.h>

#include <memory>
#include <type_traits>
#include <vector>

#include "tests/platform/spoolerfixture.h"
#include "utilitiesstaticlib/wideliteral.h"

namespace
{

constexpr const WCHAR* kRoot = W("Software\\TavlenPlatformTests");

struct KeyCloser
{
    void operator()(HKEY key) const
    {
        RegCloseKey(key);
    }
};
using Key = std::unique_ptr<std::remove_pointer_t<HKEY>, KeyCloser>;

Key Create(HKEY parent, const WCHAR* path, DWORD* disposition = nullptr)
{
    HKEY key = nullptr;
    EXPECT_EQ(RegCreateKeyExW(parent, path, 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &key, disposition), 0);
    return Key(key);
}

// Null when it does not open; then with the reason.
Key Open(HKEY parent, const WCHAR* path, DWORD error = ERROR_SUCCESS)
{
    HKEY key = nullptr;
    EXPECT_EQ(static_cast<DWORD>(RegOpenKeyExW(parent, path, 0, KEY_READ, &key)), error);
    return Key(key);
}

DWORD Set(HKEY key, const WCHAR* name, DWORD type, const std::vector<BYTE>& bytes)
{
    return static_cast<DWORD>(RegSetValueExW(key, name, 0, type, bytes.data(), static_cast<DWORD>(bytes.size())));
}

// The error, and the value in `bytes`, which is the room before.
DWORD Get(HKEY key, const WCHAR* name, DWORD& type, std::vector<BYTE>& bytes)
{
    auto size = static_cast<DWORD>(bytes.size());
    const LSTATUS error = RegQueryValueExW(key, name, nullptr, &type, bytes.data(), &size);
    bytes.resize(size);
    return static_cast<DWORD>(error);
}

class Registry : public spoolertests::StoreTest
{
protected:
    void SetUp() override
    {
        StoreTest::SetUp();
        RegDeleteTreeW(HKEY_CURRENT_USER, kRoot);
        m_root = Create(HKEY_CURRENT_USER, kRoot);
    }
    void TearDown() override
    {
        m_root.reset();
        RegDeleteTreeW(HKEY_CURRENT_USER, kRoot);
        StoreTest::TearDown();
    }

    Key m_root;
};

} // namespace

TEST_F(Registry, MakesThePathOfAKeyOnceAndDeletesLeavesAndTrees)
{
    HKEY const root = m_root.get();
    DWORD disposition = 0;
    const Key made = Create(root, W("a\\b"), &disposition);
    EXPECT_EQ(disposition, DWORD{REG_CREATED_NEW_KEY});
    Create(HKEY_CURRENT_USER, W("software\\TAVLENplatformtests\\A\\B\\"), &disposition);
    EXPECT_EQ(disposition, DWORD{REG_OPENED_EXISTING_KEY});
    EXPECT_NE(Open(root, W("a\\b")), nullptr);
    Open(root, W("a\\none"), ERROR_FILE_NOT_FOUND);
    Open(HKEY_CURRENT_USER, W("\\Software"), ERROR_BAD_PATHNAME);

    const std::pair<const WCHAR*, LSTATUS> deletions[] = {
        {W("a"), ERROR_ACCESS_DENIED}, // it has a key below
        {W("none"), ERROR_FILE_NOT_FOUND},
        {nullptr, ERROR_INVALID_PARAMETER},
        {W("a\\b"), ERROR_SUCCESS},
    };
    for (const auto& [key, error] : deletions)
        EXPECT_EQ(RegDeleteKeyW(root, key), error);
    EXPECT_EQ(Set(made.get(), W("v"), REG_BINARY, {1}), DWORD{ERROR_KEY_DELETED});
    Create(root, W("a\\b"));
    for (const LSTATUS error : {LSTATUS{ERROR_SUCCESS}, LSTATUS{ERROR_FILE_NOT_FOUND}})
        EXPECT_EQ(RegDeleteTreeW(root, W("a")), error);
}

TEST_F(Registry, GivesValuesAsTheyWereSetIntoARoomThatIsLargeEnough)
{
    struct Value
    {
        const WCHAR* name; // null: the key's own
        DWORD type;
        std::vector<BYTE> bytes;
    };
    const Value values[] = {
        {W("binary"), REG_BINARY, {0, 1, 255}}, {W("empty"), REG_BINARY, {}},
        {W("number"), REG_DWORD, {1, 2, 3, 4}}, {nullptr, REG_SZ, {'x', 0, 0, 0}},
        {W("BINARY"), REG_SZ, {'y', 0, 0, 0}}, // over the first
    };
    HKEY const root = m_root.get();
    DWORD type = 0;
    std::vector<BYTE> bytes;
    for (const Value& value : values)
    {
        ASSERT_EQ(Set(root, value.name, value.type, value.bytes), ERROR_SUCCESS);
        bytes.assign(16, 0xEE);
        EXPECT_EQ(Get(root, value.name, type, bytes), ERROR_SUCCESS);
        EXPECT_TRUE(bytes == value.bytes && type == value.type) << value.bytes.size();
    }
    bytes.assign(3, 0xEE);
    bytes.reserve(4);
    EXPECT_EQ(Get(root, W("number"), type, bytes), DWORD{ERROR_MORE_DATA});
    EXPECT_EQ(bytes.size(), 4u) << "what is needed";
    EXPECT_EQ(Get(root, W("none"), type, bytes), DWORD{ERROR_FILE_NOT_FOUND});
    EXPECT_NE(RegSetValueExW(root, W("w"), 0, REG_BINARY, nullptr, 4), 0);

    const Key reader = Open(HKEY_CURRENT_USER, kRoot); // may only read
    EXPECT_EQ(Set(reader.get(), W("number"), REG_SZ, {}), DWORD{ERROR_ACCESS_DENIED});
    EXPECT_EQ(RegDeleteValueW(reader.get(), W("number")), LSTATUS{ERROR_ACCESS_DENIED});
    for (const LSTATUS error : {LSTATUS{ERROR_SUCCESS}, LSTATUS{ERROR_FILE_NOT_FOUND}})
        EXPECT_EQ(RegDeleteValueW(root, W("number")), error);

    HKEY const closed = m_root.release();
    EXPECT_EQ(RegCloseKey(closed), 0);
    for (HKEY const key : {HKEY{nullptr}, closed, reinterpret_cast<HKEY>(0x7654320)})
    {
        Open(key, W("a"), ERROR_INVALID_HANDLE);
        EXPECT_EQ(Get(key, W("v"), type, bytes), DWORD{ERROR_INVALID_HANDLE});
        EXPECT_EQ(RegCloseKey(key), LSTATUS{ERROR_INVALID_HANDLE});
    }
}
