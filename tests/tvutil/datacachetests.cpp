// Blobs by name for printers and ports, and a user's settings: both in the registry.
#include <windows.h>

#include <memory>
#include <optional>
#include <thread>
#include <type_traits>

#include <gtest/gtest.h>

#include <tvutil/datacache.h>
#include <tvutil/exceptions.h>
#include <tvutil/tavlenutilities.h>
#include <tvutil/user.h>

#include "tests/common/scratchstore.h"

namespace
{

constexpr DWORD kStamp = 1397442489;

struct KeyCloser
{
    void operator()(HKEY key) const
    {
        RegCloseKey(key);
    }
};

// Sets a value past the classes; null data deletes it.
void SetRawValue(const CXString& path, const WCHAR* name, DWORD type, const void* data, DWORD size)
{
    HKEY opened = nullptr;
    ASSERT_EQ(
        RegCreateKeyExW(HKEY_CURRENT_USER, path.c_str(), 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &opened, nullptr), 0);
    const std::unique_ptr<std::remove_pointer_t<HKEY>, KeyCloser> key(opened);
    if (data == nullptr)
        RegDeleteValueW(opened, name);
    else
        ASSERT_EQ(RegSetValueExW(opened, name, 0, type, static_cast<const BYTE*>(data), size), 0);
}

ByteBuffer Bytes(const char* text)
{
    ByteBuffer bytes;
    bytes.appendAscii(std::string_view(text));
    return bytes;
}

class DataCaches : public testing::Test
{
protected:
    ~DataCaches() override
    {
        for (HKEY const hive : {HKEY_CURRENT_USER, HKEY_LOCAL_MACHINE})
            DataCache::RemovePrinter(m_printer, hive);
    }

    [[nodiscard]] CXString Path() const
    {
        return CXString(W("Software\\Tavlen\\DataCaches\\")) + m_printer.View();
    }

    ScratchStore m_store;
    CXString m_printer = CXString::FromUtf8("Printer of caches " + ScratchStore::OwnNumber());
};

TEST_F(DataCaches, KeepPrintersPortsHivesAndStampsApart)
{
    const CXString port = TavlenUtilities::ConvertPortNameToRegistryKey(W("\\\\server\\queue"));
    struct Case
    {
        DataCache::Place place;
        HKEY hive = nullptr;
        DWORD stamp = 0;
    };
    const Case kCases[] = {
        {{m_printer}, HKEY_CURRENT_USER, kStamp},
        {{m_printer}, HKEY_LOCAL_MACHINE, kStamp},
        {{m_printer, W("FILE:")}, HKEY_CURRENT_USER, kStamp},
        {{m_printer, port}, HKEY_CURRENT_USER, kStamp},
    };
    const auto contentOf = [&](const Case& test)
    {
        return Bytes(std::to_string(&test - kCases).c_str());
    };
    for (const Case& test : kCases)
    {
        const DataCache cache(test.place, test.hive, test.stamp, false);
        EXPECT_FALSE(cache.Read(W("A")));
        EXPECT_EQ(cache.GetCurrentCrc(), test.stamp) << "nothing is kept";
        cache.Write(W("A"), contentOf(test).bytes());
        cache.Write(W("B"), {});
    }
    for (const Case& test : kCases)
    {
        const DataCache cache(test.place, test.hive, test.stamp, true);
        EXPECT_EQ(cache.Read(W("a")), contentOf(test)) << "names do not differ by case";
        EXPECT_EQ(cache.Read(W("B")), ByteBuffer());
        EXPECT_EQ(cache.Dump().size(), 2U);
        EXPECT_NE(cache.GetCurrentCrc(), test.stamp);
        EXPECT_THROW(cache.Write(W("A"), {}), ExceptionDataCacheFailure);
        const DataCache otherStamp(test.place, test.hive, test.stamp + 1, true);
        EXPECT_FALSE(otherStamp.Read(W("A"))) << "another driver's";
    }
    const DataCache cache({m_printer}, HKEY_CURRENT_USER, kStamp, false);
    const DWORD before = cache.GetCurrentCrc();
    cache.Write(W("A"), Bytes("a longer content than before").bytes());
    EXPECT_EQ(cache.Read(W("A")), Bytes("a longer content than before"));
    EXPECT_NE(cache.GetCurrentCrc(), before);

    EXPECT_TRUE(DataCache::RemovePrinter(m_printer, HKEY_CURRENT_USER));
    EXPECT_FALSE(DataCache::RemovePrinter(m_printer, HKEY_CURRENT_USER));
    EXPECT_FALSE(cache.Read(W("A")));
    EXPECT_FALSE(DataCache({m_printer, port}, HKEY_CURRENT_USER, kStamp, true).Read(W("A")));
    EXPECT_TRUE(DataCache({m_printer}, HKEY_LOCAL_MACHINE, kStamp, true).Read(W("A"))) << "the other hive's stays";
}

TEST_F(DataCaches, DoNotBelieveWhatIsNotSound)
{
    // stamp, length, CRC of "abc" seeded with the stamp, content
    const DataCache cache({m_printer}, HKEY_CURRENT_USER, kStamp, false);
    const auto value = [this](WORD length)
    {
        std::vector<BYTE> bytes(length);
        HKEY opened = nullptr;
        EXPECT_EQ(RegOpenKeyExW(HKEY_CURRENT_USER, Path().c_str(), 0, KEY_READ, &opened), 0);
        const std::unique_ptr<std::remove_pointer_t<HKEY>, KeyCloser> key(opened);
        DWORD size = length;
        EXPECT_EQ(RegQueryValueExW(opened, W("A"), nullptr, nullptr, bytes.data(), &size), 0);
        EXPECT_EQ(size, length);
        return bytes;
    };
    cache.Write(W("A"), Bytes("abc").bytes());
    const std::vector<BYTE> whole = value(15);
    for (DWORD size = 0; size < whole.size(); ++size)
    {
        SetRawValue(Path(), W("A"), REG_BINARY, whole.data(), size);
        EXPECT_FALSE(cache.Read(W("A"))) << size << " bytes";
    }
    for (std::size_t at = 0; at < whole.size(); ++at)
    {
        std::vector<BYTE> changed = whole;
        changed[at] ^= 0x10;
        SetRawValue(Path(), W("A"), REG_BINARY, changed.data(), static_cast<DWORD>(changed.size()));
        EXPECT_FALSE(cache.Read(W("A"))) << "byte " << at;
    }
    EXPECT_TRUE(cache.Dump().empty());
    std::vector<BYTE> longer = whole;
    longer.push_back(0);
    SetRawValue(Path(), W("A"), REG_BINARY, longer.data(), static_cast<DWORD>(longer.size()));
    EXPECT_FALSE(cache.Read(W("A")));
    SetRawValue(Path(), W("A"), REG_SZ, whole.data(), static_cast<DWORD>(whole.size()));
    EXPECT_FALSE(cache.Read(W("A")));
    SetRawValue(Path(), W("A"), REG_BINARY, whole.data(), static_cast<DWORD>(whole.size()));
    EXPECT_EQ(cache.Read(W("A")), Bytes("abc"));
}

TEST_F(DataCaches, AreFilledByOneAndTheNextDoesNotWaitForEver)
{
    for (const bool isHeld : {true, false})
    {
        std::optional<DataCache::Lock> held;
        if (isHeld)
            held.emplace(HKEY_CURRENT_USER);
        std::thread(
            [isHeld]
            {
                const auto wait = []
                {
                    const DataCache::Lock lock(HKEY_CURRENT_USER, 20);
                };
                if (isHeld)
                    EXPECT_THROW(wait(), ExceptionDataCacheFailure);
                else
                    EXPECT_NO_THROW(wait());
            })
            .join();
    }
}

TEST(UserSettings, AreOfTheirTypeOrAbsent)
{
    const ScratchStore store;
    const CXString component = CXString::FromUtf8("Test " + ScratchStore::OwnNumber());
    const User user(component);
    EXPECT_TRUE(user.GetSubKeyNames(W("Sizes")).empty());
    EXPECT_FALSE(user.GetDword(W("Sizes\\A"), W("Width")));
    EXPECT_TRUE(user.CreateKey(W("Sizes\\B")));
    EXPECT_FALSE(user.CreateKey(W("Sizes\\b")));
    user.SetDword(W("Sizes\\A"), W("Width"), 0xFFFFFFFF);
    user.SetBoolean(W("Sizes\\A"), W("Metric"), true);
    EXPECT_EQ(user.GetDword(W("Sizes\\A"), W("Width")), 0xFFFFFFFF);
    EXPECT_EQ(user.GetBoolean(W("Sizes\\A"), W("Metric")), true);
    EXPECT_FALSE(user.GetDword(W("Sizes\\A"), W("Length")));
    const std::vector<CXString> expected = {W("A"), W("B")};
    EXPECT_EQ(user.GetSubKeyNames(W("Sizes")), expected);

    const BYTE bytes[8] = {1};
    const CXString path = CXString(W("Software\\Tavlen\\")) + component.View() + W("\\Sizes\\A");
    SetRawValue(path, W("Width"), REG_SZ, bytes, 4);
    EXPECT_FALSE(user.GetDword(W("Sizes\\A"), W("Width")));
    SetRawValue(path, W("Width"), REG_DWORD, bytes, 3);
    EXPECT_FALSE(user.GetDword(W("Sizes\\A"), W("Width")));

    EXPECT_TRUE(user.DeleteKey(W("Sizes")));
    EXPECT_FALSE(user.DeleteKey(W("Sizes")));
    EXPECT_FALSE(user.GetBoolean(W("Sizes\\A"), W("Metric")));
    RegDeleteTreeW(HKEY_CURRENT_USER, (CXString(W("Software\\Tavlen\\")) + component.View()).c_str());
}

} // namespace
