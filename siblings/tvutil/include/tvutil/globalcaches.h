// GlobalCaches: what a process has read from devmodes, so that the same devmode is not read twice.
//
// Keyed by the CRC of a devmode's private part: two parts of one CRC are taken for the same. Each cache is bounded; the
// entry that was asked for longest ago goes first. Safe on every thread. Cached buffers are shared by everybody who got
// them: they are replaced, never edited.
#pragma once

#include <windows.h>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <utility>
#include <vector>

#include <tvutil/attributebytesids.h>
#include <tvutil/bytebuffer.h>
#include <tvutil/cxstring.h>

class AttributeBytesIndexedList;

class TVUTIL_API GlobalCaches
{
public:
    using PropertyBagEntries = std::vector<std::pair<std::uint16_t, std::shared_ptr<const ByteBuffer>>>;

    // Entries that one cache holds at most.
    static constexpr std::size_t kCapacity = 256;

    // Names of the list caches.
    static constexpr const WCHAR* kDeviceCapsListCacheName = W("XDevmodeDeviceCapsABILCache");
    static constexpr const WCHAR* kDocPropListCacheName = W("XDevmodeDocPropABILCache");

    // A buffer for an entry. Made here, since it ends with its last user, wherever that is: a module that came, read a
    // devmode and went would leave its own behind without the code that ends them.
    [[nodiscard]] static std::shared_ptr<const ByteBuffer> MakeBuffer(std::span<const std::byte> bytes);

    // False, with nothing changed, when the cache does not have it. Entries are MakeBuffer's.
    static bool CheckXDevmodePropertyBagCache(DWORD crc, PropertyBagEntries& entries);
    static void AddXDevmodePropertyBagCacheEntry(DWORD crc, const PropertyBagEntries& entries);

    static bool CheckXDevmodeAttributeBytesIndexedListCache(AttributeBytesNameSpacesId id, DWORD crc,
                                                            AttributeBytesIndexedList& list);
    // A name that is none of the two above caches nothing.
    static void AddXDevmodeAttributeBytesIndexedListCacheEntry(const CXString& name, AttributeBytesNameSpacesId id,
                                                               DWORD crc, const AttributeBytesIndexedList& list);

    // Since the process began, or since the last Clear.
    struct Counters
    {
        std::size_t hits = 0;
        std::size_t misses = 0;
        std::size_t entries = 0; // now
    };
    [[nodiscard]] static Counters GetPropertyBagCounters() noexcept;
    [[nodiscard]] static Counters GetListCounters() noexcept; // of both list caches
    static void Clear() noexcept;
};
