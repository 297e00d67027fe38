// The registry: keys and values below HKEY_CURRENT_USER\Software\TavlenPlatformTests.
#include <windows.h>

#include <filesystem>
#include <set>
#include <vector>

#include <gtest/gtest.h>

#include "utilitiesstaticlib/wideliteral.h"

namespace
{

constexpr const WCHAR* kRoot = W("Software\\TavlenPlatformTests");

class KeyOwner
{
public:
    static KeyOwner Create(HKEY parent, const WCHAR* path, REGSAM access = KEY_ALL_ACCESS, DWORD* disposition = nullptr)
    {
        KeyOwner key;
        key.error = RegCreateKeyExW(parent, path, 0, nullptr, REG_OPTION_NON_VOLATILE, access, nullptr, &key.m_key,
                                    disposition);
        return key;
    }
    static KeyOwner Open(HKEY parent, const WCHAR* path, REGSAM access = KEY_READ)
    {
        KeyOwner key;
        key.error = RegOpenKeyExW(parent, path, 0, access, &key.m_key);
        return key;
    }
    KeyOwner(KeyOwner&& other) noexcept : error(other.error), m_key(std::exchange(other.m_key, nullptr))
    {
    }
    ~KeyOwner()
    {
        if (m_key != nullptr)
            RegCloseKey(m_key);
    }

    operator HKEY() const
    {
        return m_key;
    }

    LSTATUS error = 0;

private:
    KeyOwner() = default;

    HKEY m_key = nullptr;
};

LSTATUS SetText(HKEY key, const WCHAR* name, const WideString& text)
{
    return RegSetValueExW(key, name, 0, REG_SZ, reinterpret_cast<const BYTE*>(text.c_str()),
                          static_cast<DWORD>((text.size() + 1) * sizeof(WCHAR)));
}

constexpr LSTATUS Status(DWORD error)
{
    return static_cast<LSTATUS>(error);
}

class Registry : public testing::Test
{
protected:
    void SetUp() override
    {
        m_store = std::filesystem::temp_directory_path() / ("tavlen-registry-" + std::to_string(GetCurrentProcessId()));
        SetEnvironmentVariableW(W("TVPT_STORE"), m_store.string<WCHAR>().c_str());
        RegDeleteTreeW(HKEY_CURRENT_USER, kRoot);
    }
    void TearDown() override
    {
        RegDeleteTreeW(HKEY_CURRENT_USER, kRoot);
        SetEnvironmentVariableW(W("TVPT_STORE"), nullptr);
        std::error_code ignored;
        std::filesystem::remove_all(m_store, ignored);
    }

private:
    std::filesystem::path m_store; // over winport
};

} // namespace

TEST_F(Registry, MakesTheKeysOfAPathOnce)
{
    DWORD disposition = 0;
    const KeyOwner made =
        KeyOwner::Create(HKEY_CURRENT_USER, W("Software\\TavlenPlatformTests\\a\\b"), KEY_ALL_ACCESS, &disposition);
    ASSERT_EQ(made.error, 0);
    EXPECT_EQ(disposition, DWORD{REG_CREATED_NEW_KEY});
    const KeyOwner again =
        KeyOwner::Create(HKEY_CURRENT_USER, W("software\\TAVLENplatformtests\\A\\B\\"), KEY_ALL_ACCESS, &disposition);
    ASSERT_EQ(again.error, 0);
    EXPECT_EQ(disposition, DWORD{REG_OPENED_EXISTING_KEY});
    ASSERT_EQ(SetText(made, W("v"), W("x")), 0);
    DWORD size = 0;
    EXPECT_EQ(RegQueryValueExW(again, W("V"), nullptr, nullptr, nullptr, &size), 0);
    EXPECT_EQ(size, 2 * sizeof(WCHAR));

    const KeyOwner root = KeyOwner::Open(HKEY_CURRENT_USER, kRoot);
    EXPECT_EQ(KeyOwner::Open(root, W("a\\b")).error, 0);
    EXPECT_EQ(KeyOwner::Open(root, W("a\\none")).error, Status(ERROR_FILE_NOT_FOUND));
    EXPECT_EQ(KeyOwner::Open(HKEY_CURRENT_USER, W("\\Software")).error, Status(ERROR_BAD_PATHNAME));
}

TEST_F(Registry, GivesValuesAsTheyWereSet)
{
    const KeyOwner key = KeyOwner::Create(HKEY_CURRENT_USER, kRoot);
    struct Value
    {
        const WCHAR* name; // null: the key's own
        DWORD type;
        std::vector<BYTE> bytes;
    };
    const Value values[] = {
        {W("binary"), REG_BINARY, {0, 1, 255}}, {W("empty"), REG_BINARY, {}},
        {W("number"), REG_DWORD, {1, 2, 3, 4}}, {W("list"), REG_MULTI_SZ, {'a', 0, 0, 0, 'b', 0, 0, 0, 0, 0}},
        {nullptr, REG_SZ, {'x', 0, 0, 0}},      {W("binary"), REG_SZ, {'y', 0, 0, 0}}, // over the first
    };
    for (const Value& value : values)
    {
        SCOPED_TRACE(value.bytes.size());
        ASSERT_EQ(
            RegSetValueExW(key, value.name, 0, value.type, value.bytes.data(), static_cast<DWORD>(value.bytes.size())),
            0);
        DWORD type = 0;
        std::vector<BYTE> bytes(16, 0xEE);
        auto size = static_cast<DWORD>(bytes.size());
        EXPECT_EQ(RegQueryValueExW(key, value.name, nullptr, &type, bytes.data(), &size), 0);
        bytes.resize(size);
        EXPECT_EQ(bytes, value.bytes);
        EXPECT_EQ(type, value.type);
    }
}

TEST_F(Registry, TellsTheSizeThatIsNeeded)
{
    const KeyOwner key = KeyOwner::Create(HKEY_CURRENT_USER, kRoot);
    const BYTE bytes[] = {1, 2, 3, 4};
    ASSERT_EQ(RegSetValueExW(key, W("v"), 0, REG_BINARY, bytes, 4), 0);
    BYTE buffer[4] = {0xEE, 0xEE, 0xEE, 0xEE};
    DWORD size = 3;
    EXPECT_EQ(RegQueryValueExW(key, W("v"), nullptr, nullptr, buffer, &size), Status(ERROR_MORE_DATA));
    EXPECT_EQ(size, 4u);
    EXPECT_EQ(buffer[3], 0xEE);
    EXPECT_EQ(RegQueryValueExW(key, W("v"), nullptr, nullptr, buffer, nullptr), Status(ERROR_INVALID_PARAMETER));
    EXPECT_EQ(RegQueryValueExW(key, W("none"), nullptr, nullptr, buffer, &size), Status(ERROR_FILE_NOT_FOUND));
    EXPECT_NE(RegSetValueExW(key, W("w"), 0, REG_BINARY, nullptr, 4), 0);
}

TEST_F(Registry, ListsKeysAndValues)
{
    const KeyOwner key = KeyOwner::Create(HKEY_CURRENT_USER, kRoot);
    const std::set<WideString> names = {W("alpha"), W("Beta"), W("c")};
    for (const WideString& name : names)
    {
        ASSERT_EQ(KeyOwner::Create(key, name.c_str()).error, 0);
        ASSERT_EQ(SetText(key, name.c_str(), name), 0);
    }
    std::set<WideString> keys;
    std::set<WideString> values;
    for (DWORD index = 0; index < 3; ++index)
    {
        WCHAR name[16] = {};
        DWORD size = 16;
        ASSERT_EQ(RegEnumKeyExW(key, index, name, &size, nullptr, nullptr, nullptr, nullptr), 0);
        EXPECT_EQ(size, WideString(name).size());
        keys.insert(name);
        size = 16;
        WCHAR text[16] = {};
        DWORD textSize = sizeof(text);
        DWORD type = 0;
        ASSERT_EQ(RegEnumValueW(key, index, name, &size, nullptr, &type, reinterpret_cast<BYTE*>(text), &textSize), 0);
        EXPECT_EQ(WideString(name), text); // each is its own name
        values.insert(name);
    }
    EXPECT_EQ(keys, names);
    EXPECT_EQ(values, names);

    WCHAR name[16] = {};
    DWORD size = 16;
    EXPECT_EQ(RegEnumKeyExW(key, 3, name, &size, nullptr, nullptr, nullptr, nullptr), Status(ERROR_NO_MORE_ITEMS));
    EXPECT_EQ(RegEnumValueW(key, 3, name, &size, nullptr, nullptr, nullptr, nullptr), Status(ERROR_NO_MORE_ITEMS));
    size = 5; // one short of "alpha" with its terminator
    EXPECT_EQ(RegEnumKeyExW(key, 0, name, &size, nullptr, nullptr, nullptr, nullptr), Status(ERROR_MORE_DATA));

    DWORD subKeys = 0, longestKey = 0, valueCount = 0, longestName = 0, longestValue = 0;
    ASSERT_EQ(RegQueryInfoKeyW(key, nullptr, nullptr, nullptr, &subKeys, &longestKey, nullptr, &valueCount,
                               &longestName, &longestValue, nullptr, nullptr),
              0);
    EXPECT_EQ(subKeys, 3u);
    EXPECT_EQ(longestKey, 5u);
    EXPECT_EQ(valueCount, 3u);
    EXPECT_EQ(longestName, 5u);
    EXPECT_EQ(longestValue, 6 * sizeof(WCHAR));
}

TEST_F(Registry, DeletesKeysWithoutSubkeysAndTreesWhole)
{
    const KeyOwner leaf = KeyOwner::Create(HKEY_CURRENT_USER, W("Software\\TavlenPlatformTests\\a\\b"));
    const KeyOwner root = KeyOwner::Open(HKEY_CURRENT_USER, kRoot, KEY_ALL_ACCESS);
    ASSERT_EQ(SetText(leaf, W("v"), W("x")), 0);
    EXPECT_EQ(RegDeleteKeyW(root, W("a")), Status(ERROR_ACCESS_DENIED));
    EXPECT_EQ(RegDeleteKeyW(root, W("none")), Status(ERROR_FILE_NOT_FOUND));
    EXPECT_EQ(RegDeleteKeyW(root, nullptr), Status(ERROR_INVALID_PARAMETER));
    EXPECT_EQ(RegDeleteKeyW(root, W("a\\b")), 0);
    EXPECT_EQ(SetText(leaf, W("v"), W("x")), Status(ERROR_KEY_DELETED));
    EXPECT_EQ(KeyOwner::Open(root, W("a\\b")).error, Status(ERROR_FILE_NOT_FOUND));

    DWORD size = 0;
    const KeyOwner another = KeyOwner::Create(root, W("a\\b"));
    EXPECT_EQ(RegQueryValueExW(another, W("v"), nullptr, nullptr, nullptr, &size), Status(ERROR_FILE_NOT_FOUND));

    EXPECT_EQ(RegDeleteTreeW(root, W("a")), 0);
    EXPECT_EQ(KeyOwner::Open(root, W("a")).error, Status(ERROR_FILE_NOT_FOUND));
    EXPECT_EQ(RegDeleteTreeW(root, W("a")), Status(ERROR_FILE_NOT_FOUND));
}

TEST_F(Registry, RefusesWhatTheHandleMayNot)
{
    const KeyOwner writer = KeyOwner::Create(HKEY_CURRENT_USER, kRoot);
    ASSERT_EQ(SetText(writer, W("v"), W("x")), 0);
    const KeyOwner reader = KeyOwner::Open(HKEY_CURRENT_USER, kRoot, KEY_READ);
    EXPECT_EQ(SetText(reader, W("v"), W("y")), Status(ERROR_ACCESS_DENIED));
    EXPECT_EQ(RegDeleteValueW(reader, W("v")), Status(ERROR_ACCESS_DENIED));
    EXPECT_EQ(RegDeleteValueW(writer, W("v")), 0);
    EXPECT_EQ(RegDeleteValueW(writer, W("v")), Status(ERROR_FILE_NOT_FOUND));
}

TEST_F(Registry, FindsOutWhatIsNoKey)
{
    HKEY closed = nullptr;
    ASSERT_EQ(RegCreateKeyExW(HKEY_CURRENT_USER, kRoot, 0, nullptr, 0, KEY_READ, nullptr, &closed, nullptr), 0);
    EXPECT_EQ(RegCloseKey(closed), 0);
    for (HKEY const key : {HKEY{nullptr}, closed, reinterpret_cast<HKEY>(0x7654320)})
    {
        DWORD size = 0;
        EXPECT_EQ(KeyOwner::Open(key, W("a")).error, Status(ERROR_INVALID_HANDLE));
        EXPECT_EQ(RegQueryValueExW(key, W("v"), nullptr, nullptr, nullptr, &size), Status(ERROR_INVALID_HANDLE));
        EXPECT_EQ(RegCloseKey(key), Status(ERROR_INVALID_HANDLE));
    }
    EXPECT_EQ(RegCloseKey(HKEY_CURRENT_USER), 0);
    EXPECT_EQ(KeyOwner::Open(HKEY_CURRENT_USER, kRoot).error, 0);
}
