// DataCache: blobs by name, kept for a printer or for one of its ports, in the registry of a user or of the machine.
//
// A blob is one value of the registry, stamped with its length and with the CRC-32 of its content that begins with the
// cache's stamp. The registry replaces a value as a whole, so a reader sees a blob as one writer left it, whatever
// others do at the same time; one that is not sound, or has another stamp, is not there. Blobs that belong together are
// written under a Lock.
//
// Each call goes to the registry: what another process has written is seen by the next question. A registry that
// refuses is thrown as ExceptionDataCacheFailure. One object is for one thread at a time.
#pragma once

#include <windows.h>

#include <optional>
#include <span>
#include <vector>

#include <tvutil/bytebuffer.h>
#include <tvutil/cxstring.h>

class TVUTIL_API DataCache
{
public:
    struct Place
    {
        CXString printerName;
        CXString portKey = {}; // of TavlenUtilities::ConvertPortNameToRegistryKey; empty: what belongs to no port
    };

    struct Entry
    {
        CXString name;
        ByteBuffer content;
    };

    DataCache(const Place& place, HKEY hive, DWORD stamp, bool isReadOnly);
    ~DataCache();
    DataCache(const DataCache&) = delete;
    DataCache& operator=(const DataCache&) = delete;

    // Nothing when there is no sound blob of this name.
    [[nodiscard]] std::optional<ByteBuffer> Read(const CXString& name) const;
    // Every sound blob, in the order of their names.
    [[nodiscard]] std::vector<Entry> Dump() const;
    // Over the names and contents of Dump, beginning with the stamp, which is the CRC of an empty cache.
    [[nodiscard]] DWORD GetCurrentCrc() const;

    // Adds or replaces. A read-only cache refuses.
    void Write(const CXString& name, std::span<const std::byte> content) const;

    // Forgets all that is kept for the printer and its ports. False when there was nothing.
    static bool RemovePrinter(const CXString& printerName, HKEY hive);

    // Held while caches of a hive are filled, by one thread of one process at a time, which must not take it again.
    // Whoever comes second waits, up to a limit: then it is ExceptionDataCacheFailure. A process that ends gives it
    // back. Readers need none.
    class TVUTIL_API Lock
    {
    public:
        explicit Lock(HKEY hive, DWORD milliseconds = 30'000);
        ~Lock();
        Lock(const Lock&) = delete;
        Lock& operator=(const Lock&) = delete;

    private:
        HANDLE m_mutex;
    };

private:
    CXString m_path;
    HKEY m_hive;
    DWORD m_stamp;
    bool m_isReadOnly;
};
