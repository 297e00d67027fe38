// Blobs by name for printers and ports, and a user's settings: both in the registry.
#include <windows.h>

#include <optional>
#include <thread>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include <tvutil/datacache.h>
#include <tvutil/exceptions.h>
#include <tvutil/tavlenutilities.h>
#include <tvutil/user.h>

#include "tests/common/scratchstore.h"

namespace
{

constexpr DWORD kStamp = 1397442489;

// Sets a value past the classes.
void SetRawValue(const CXString& path, const WCHAR* name, DWORD type, const void* data, DWORD size)
{
    HKEY opened = nullptr;
    ASSERT_EQ(
        RegCreateKeyExW(HKEY_CURRENT_USER, path.c_str(), 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &opened, nullptr), 0);
    EXPECT_EQ(RegSetValueExW(opened, name, 0, type, static_cast<const BYTE*>(data), size), 0);
    RegCloseKey(opened);
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
    cache.Write(W("A"), Bytes("abc").bytes());
    HKEY opened = nullptr;
    ASSERT_EQ(RegOpenKeyExW(HKEY_CURRENT_USER, Path().c_str(), 0, KEY_READ, &opened), 0);
    std::vector<BYTE> whole(16);
    DWORD wholeSize = 16;
    EXPECT_EQ(RegQueryValueExW(opened, W("A"), nullptr, nullptr, whole.data(), &wholeSize), 0);
    RegCloseKey(opened);
    ASSERT_EQ(wholeSize, 15U);
    whole.resize(wholeSize);
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
    whole.push_back(0);
    SetRawValue(Path(), W("A"), REG_BINARY, whole.data(), wholeSize + 1);
    EXPECT_FALSE(cache.Read(W("A")));
    SetRawValue(Path(), W("A"), REG_SZ, whole.data(), wholeSize);
    EXPECT_FALSE(cache.Read(W("A")));
    SetRawValue(Path(), W("A"), REG_BINARY, whole.data(), wholeSize);
    EXPECT_EQ(cache.Read(W("A")), Bytes("abc"));
}

TEST_F(DataCaches, AreFilledByOneAndTheNextDoesNotWaitForEver)
{
    const auto wait = []
    {
        const DataCache::Lock lock(HKEY_CURRENT_USER, 20);
    };
    std::optional<DataCache::Lock> held(HKEY_CURRENT_USER);
    std::thread([&] { EXPECT_THROW(wait(), ExceptionDataCacheFailure); }).join();
    held.reset();
    std::thread([&] { EXPECT_NO_THROW(wait()); }).join();
}

// What they keep is tested with the custom sizes.
TEST(UserSettings, AreOfTheirTypeOrAbsent)
{
    const ScratchStore store;
    const CXString component = CXString::FromUtf8("Test " + ScratchStore::OwnNumber());
    const User user(component);
    const CXString path = CXString(W("Software\\Tavlen\\")) + component.View();
    const BYTE bytes[8] = {1};
    for (const auto& [type, size] : {std::pair<DWORD, DWORD>{REG_SZ, 4}, {REG_DWORD, 3}, {REG_DWORD, 4}})
    {
        SetRawValue(path + W("\\A"), W("Width"), type, bytes, size);
        EXPECT_EQ(user.GetDword(W("A"), W("Width")).has_value(), type == REG_DWORD && size == 4) << size;
    }
    EXPECT_EQ(user.GetBoolean(W("A"), W("Width")), true);
    EXPECT_TRUE(user.DeleteKey(W("A")));
    EXPECT_FALSE(user.DeleteKey(W("A")));
    RegDeleteTreeW(HKEY_CURRENT_USER, path.c_str());
}

} // namespace
