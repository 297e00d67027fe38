// What a process keeps of the devmodes that it has read.
#include <windows.h>

#include <thread>

#include <gtest/gtest.h>

#include <tvutil/globalcaches.h>
#include <tvutil/persistentattributes.h>

#include "tests/tvutil/attributebytessamples.h"

namespace
{

constexpr auto kDocProp = PersistentAttributes::GetDataModelDocPropNameSpaceId();
constexpr auto kDeviceCaps = PersistentAttributes::GetMsDeviceCapabilitiesNameSpaceId();
constexpr DWORD kCapacity = GlobalCaches::kCapacity;

// Bags and lists say which CRC they were stored under.
GlobalCaches::PropertyBagEntries BagOf(DWORD crc)
{
    return {{1, std::make_shared<const ByteBuffer>(&crc, sizeof(crc))}};
}

bool FindBag(DWORD crc)
{
    GlobalCaches::PropertyBagEntries bag;
    if (!GlobalCaches::CheckXDevmodePropertyBagCache(crc, bag))
        return false;
    EXPECT_EQ(bag.at(0).second->getDword(), crc);
    return true;
}

bool FindList(AttributeBytesNameSpacesId id, DWORD crc)
{
    AttributeBytesIndexedList list;
    if (!GlobalCaches::CheckXDevmodeAttributeBytesIndexedListCache(id, crc, list))
        return false;
    EXPECT_EQ(AttributeBytesReader::GetIntegerValueFromAttributeBytes(list, 1), static_cast<LONG>(crc));
    return true;
}

void AddList(const WCHAR* name, AttributeBytesNameSpacesId id, DWORD crc)
{
    AttributeBytesIndexedList list;
    list.SetAttributeBytes(1, MakeIntegerAttributeBytes(static_cast<LONG>(crc)));
    GlobalCaches::AddXDevmodeAttributeBytesIndexedListCacheEntry(name, id, crc, list);
}

class Caches : public testing::Test
{
protected:
    void SetUp() override
    {
        GlobalCaches::Clear();
    }
};

TEST_F(Caches, LoseWhatWasAskedForLongestAgo)
{
    for (DWORD crc = 0; crc < kCapacity; ++crc)
        GlobalCaches::AddXDevmodePropertyBagCacheEntry(crc, BagOf(crc));
    EXPECT_TRUE(FindBag(0) && FindBag(2));
    GlobalCaches::AddXDevmodePropertyBagCacheEntry(1, BagOf(1)); // again: used, not one more
    EXPECT_EQ(GlobalCaches::GetPropertyBagCounters().entries, kCapacity);

    for (DWORD crc = 0; crc < kCapacity - 2; ++crc)
        GlobalCaches::AddXDevmodePropertyBagCacheEntry(1000 + crc, BagOf(1000 + crc));
    for (const DWORD gone : {DWORD{0}, DWORD{3}, kCapacity - 1})
        EXPECT_FALSE(FindBag(gone)) << gone;
    for (const DWORD kept : {DWORD{1}, DWORD{2}, DWORD{1000}, 1000 + kCapacity - 3})
        EXPECT_TRUE(FindBag(kept)) << kept;
}

TEST_F(Caches, KeepListsByNamespaceAndLeaveThemAloneWhenCopiesAreEdited)
{
    AddList(GlobalCaches::kDocPropListCacheName, kDocProp, 7);
    AddList(GlobalCaches::kDocPropListCacheName, AttributeBytesNameSpacesId(9), 8);
    for (DWORD crc = 0; crc < kCapacity + 1; ++crc)
        AddList(GlobalCaches::kDeviceCapsListCacheName, kDeviceCaps, crc);
    EXPECT_EQ(GlobalCaches::GetListCounters().entries, kCapacity + 2) << "each cache has its own bound";

    AttributeBytesIndexedList copy;
    ASSERT_TRUE(GlobalCaches::CheckXDevmodeAttributeBytesIndexedListCache(kDocProp, 7, copy));
    copy.SetAttributeBytes(1, MakeIntegerAttributeBytes(0));
    copy.SetAttributeBytes(2, MakeIntegerAttributeBytes(0));
    EXPECT_TRUE(FindList(kDocProp, 7));
    EXPECT_TRUE(FindList(AttributeBytesNameSpacesId(9), 8));
    EXPECT_FALSE(FindList(kDocProp, 8)) << "of another namespace";
    EXPECT_FALSE(FindList(kDeviceCaps, 0)) << "the oldest";
    EXPECT_TRUE(FindList(kDeviceCaps, 7));
}

// Every thread reads, copies, edits its copies, replaces and evicts; nobody sees half of anything.
TEST_F(Caches, ServeEightThreads)
{
    std::vector<std::thread> threads;
    for (DWORD seed = 0; seed < 8; ++seed)
        threads.emplace_back(
            [seed]()
            {
                for (DWORD round = 0; round < 2000; ++round)
                {
                    const DWORD crc = (round * (seed + 3)) % (kCapacity + 40);
                    if (!FindBag(crc))
                        GlobalCaches::AddXDevmodePropertyBagCacheEntry(crc, BagOf(crc));
                    AttributeBytesIndexedList list;
                    if (!GlobalCaches::CheckXDevmodeAttributeBytesIndexedListCache(kDocProp, crc, list))
                        AddList(GlobalCaches::kDocPropListCacheName, kDocProp, crc);
                    list.SetAttributeBytes(1, MakeIntegerAttributeBytes(-1));
                    const AttributeBytesIndexedList second(list);
                    list.SetAttributeBytes(2, MakeIntegerAttributeBytes(-1));
                    EXPECT_EQ(second.GetAttributeBytes(2), nullptr);
                    FindList(kDocProp, crc);
                    if (round % 500 == 499)
                        GlobalCaches::Clear();
                }
            });
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_LE(GlobalCaches::GetPropertyBagCounters().entries, kCapacity);
}

} // namespace
