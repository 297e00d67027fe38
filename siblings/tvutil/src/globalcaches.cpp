#include <windows.h>

#include <tvutil/globalcaches.h>

#include <tvutil/attributebytesindexedlist.h>
#include <tvutil/persistentattributes.h>

#include "lrucache.h"

namespace
{

using PropertyBagCache = LruCache<DWORD, GlobalCaches::PropertyBagEntries>;
// By namespace and CRC, in one number.
using ListCache = LruCache<ULONGLONG, AttributeBytesIndexedList>;

// Ready when the library is loaded: statics of functions would be made when memory may be short.
PropertyBagCache g_propertyBags(GlobalCaches::kCapacity);
ListCache g_deviceCapsLists(GlobalCaches::kCapacity);
ListCache g_docPropLists(GlobalCaches::kCapacity);

ListCache& ListsOf(AttributeBytesNameSpacesId id)
{
    return id == PersistentAttributes::GetMsDeviceCapabilitiesNameSpaceId() ? g_deviceCapsLists : g_docPropLists;
}

constexpr ULONGLONG KeyOf(AttributeBytesNameSpacesId id, DWORD crc) noexcept
{
    return static_cast<ULONGLONG>(static_cast<DWORD>(id.GetId())) << 32 | crc;
}

} // namespace

// The exporting library emits a constant of its class only where it is defined out of line.
constexpr std::size_t GlobalCaches::kCapacity;
constexpr const WCHAR* GlobalCaches::kDeviceCapsListCacheName;
constexpr const WCHAR* GlobalCaches::kDocPropListCacheName;

std::shared_ptr<const ByteBuffer> GlobalCaches::MakeBuffer(std::span<const std::byte> bytes)
{
    return std::make_shared<const ByteBuffer>(bytes);
}

bool GlobalCaches::CheckXDevmodePropertyBagCache(DWORD crc, PropertyBagEntries& entries)
{
    const auto found = g_propertyBags.Find(crc);
    if (!found)
        return false;
    entries = *found;
    return true;
}

void GlobalCaches::AddXDevmodePropertyBagCacheEntry(DWORD crc, const PropertyBagEntries& entries)
{
    g_propertyBags.Add(crc, std::make_shared<PropertyBagEntries>(entries));
}

bool GlobalCaches::CheckXDevmodeAttributeBytesIndexedListCache(AttributeBytesNameSpacesId id, DWORD crc,
                                                               AttributeBytesIndexedList& list)
{
    const auto found = ListsOf(id).Find(KeyOf(id, crc));
    if (!found)
        return false;
    list = *found;
    return true;
}

void GlobalCaches::AddXDevmodeAttributeBytesIndexedListCacheEntry(const CXString& name, AttributeBytesNameSpacesId id,
                                                                  DWORD crc, const AttributeBytesIndexedList& list)
{
    if (name == kDeviceCapsListCacheName)
        g_deviceCapsLists.Add(KeyOf(id, crc), std::make_shared<AttributeBytesIndexedList>(list));
    else if (name == kDocPropListCacheName)
        g_docPropLists.Add(KeyOf(id, crc), std::make_shared<AttributeBytesIndexedList>(list));
}

GlobalCaches::Counters GlobalCaches::GetPropertyBagCounters() noexcept
{
    const PropertyBagCache::Counters counters = g_propertyBags.Count();
    return {counters.hits, counters.misses, counters.entries};
}

GlobalCaches::Counters GlobalCaches::GetListCounters() noexcept
{
    Counters sum;
    for (const ListCache* const cache : {&g_deviceCapsLists, &g_docPropLists})
    {
        const ListCache::Counters counters = cache->Count();
        sum.hits += counters.hits;
        sum.misses += counters.misses;
        sum.entries += counters.entries;
    }
    return sum;
}

void GlobalCaches::Clear() noexcept
{
    g_propertyBags.Clear();
    g_deviceCapsLists.Clear();
    g_docPropLists.Clear();
}
