#include <windows.h>

#include <tvutil/datacache.h>

#include <algorithm>

#include <tvutil/bytereader.h>
#include <tvutil/bytewriter.h>
#include <tvutil/crc32.h>
#include <tvutil/exceptions.h>
#include <tvutil/spoolerbuffer.h>
#include <tvutil/tavlenutilities.h>
#include <tvutil/throwexception.h>

#include "registrykey.h"

// A value: u32 stamp, u32 length of the content, u32 CRC-32 of the content seeded with the stamp, the content.
namespace
{

constexpr const WCHAR* kSourceFile = W("siblings\\tvutil\\src\\datacache");
constexpr std::size_t kHeaderSize = 12;

CXString PrinterPath(const CXString& printerName)
{
    return CXString(W("Software\\Tavlen\\DataCaches\\")) +
           TavlenUtilities::ConvertPortNameToRegistryKey(printerName.View()).View();
}

CXString PathOf(const DataCache::Place& place)
{
    const CXString printer = PrinterPath(place.printerName);
    return place.portKey.IsEmpty() ? printer : printer + W("\\Ports\\") + place.portKey.View();
}

[[noreturn]] void ThrowFailure(const WCHAR* method, const WCHAR* operation, const CXString& path, DWORD error)
{
    ThrowException<ExceptionDataCacheFailure>({method, kSourceFile}, W("%s failed for \"%s\": Win32 error %u"),
                                              {operation, path, error});
}

std::optional<ByteBuffer> ContentOf(const RegistryKey::Value& value, DWORD stamp)
{
    ByteReader reader(value.data.bytes());
    const auto foundStamp = reader.U32();
    const auto length = reader.U32();
    const auto crc = reader.U32();
    const auto content = reader.Bytes(length);
    if (value.type != REG_BINARY || !reader.Ok() || reader.Remaining() != 0 || foundStamp != stamp ||
        crc != Crc32::GetCrc(content.data(), content.size(), stamp))
        return std::nullopt;
    return ByteBuffer(content);
}

std::optional<ByteBuffer> ReadFrom(const RegistryKey& key, const CXString& name, DWORD stamp, const CXString& path)
{
    RegistryKey::Value value;
    const DWORD error = key.Read(name, value);
    if (error == ERROR_FILE_NOT_FOUND)
        return std::nullopt;
    if (error != ERROR_SUCCESS)
        ThrowFailure(W("DataCache::Read"), W("RegQueryValueExW"), path, error);
    return ContentOf(value, stamp);
}

// False when there is no such cache.
bool OpenKey(RegistryKey& key, HKEY hive, const CXString& path, const WCHAR* method)
{
    const DWORD error = key.Open(hive, path);
    if (error != ERROR_SUCCESS && error != ERROR_FILE_NOT_FOUND)
        ThrowFailure(method, W("RegOpenKeyExW"), path, error);
    return error == ERROR_SUCCESS;
}

} // namespace

DataCache::DataCache(const Place& place, HKEY hive, DWORD stamp, bool isReadOnly)
    : m_path(PathOf(place)), m_hive(hive), m_stamp(stamp), m_isReadOnly(isReadOnly)
{
}

DataCache::~DataCache() = default;

std::optional<ByteBuffer> DataCache::Read(const CXString& name) const
{
    RegistryKey key;
    if (!OpenKey(key, m_hive, m_path, W("DataCache::Read")))
        return std::nullopt;
    return ReadFrom(key, name, m_stamp, m_path);
}

std::vector<DataCache::Entry> DataCache::Dump() const
{
    constexpr const WCHAR* kMethod = W("DataCache::Dump");
    std::vector<Entry> entries;
    RegistryKey key;
    if (!OpenKey(key, m_hive, m_path, kMethod))
        return entries;
    std::vector<CXString> names;
    if (const DWORD error = key.ListValues(names); error != ERROR_SUCCESS)
        ThrowFailure(kMethod, W("RegEnumValueW"), m_path, error);
    std::sort(names.begin(), names.end());
    for (const CXString& name : names)
        if (std::optional<ByteBuffer> content = ReadFrom(key, name, m_stamp, m_path))
            entries.push_back({name, *std::move(content)});
    return entries;
}

DWORD DataCache::GetCurrentCrc() const
{
    ULONG crc = m_stamp;
    for (const Entry& entry : Dump())
    {
        crc = Crc32::GetCrc(entry.name.c_str(), entry.name.Length() * sizeof(WCHAR), crc);
        crc = Crc32::GetCrc(entry.content.data(), entry.content.size(), crc);
    }
    return crc;
}

void DataCache::Write(const CXString& name, std::span<const std::byte> content) const
{
    constexpr const WCHAR* kMethod = W("DataCache::Write");
    if (m_isReadOnly)
        ThrowFailure(kMethod, W("writing"), m_path, ERROR_ACCESS_DENIED);
    ByteBuffer value(kHeaderSize + content.size());
    ByteWriter writer(value.bytes());
    writer.U32(m_stamp);
    writer.U32(static_cast<std::uint32_t>(content.size()));
    writer.U32(Crc32::GetCrc(content.data(), content.size(), m_stamp));
    writer.Bytes(content);

    RegistryKey key;
    bool isNew = false;
    if (const DWORD error = key.Create(m_hive, m_path, isNew); error != ERROR_SUCCESS)
        ThrowFailure(kMethod, W("RegCreateKeyExW"), m_path, error);
    if (const DWORD error = key.Write(name, REG_BINARY, value.bytes()); error != ERROR_SUCCESS)
        ThrowFailure(kMethod, W("RegSetValueExW"), m_path, error);
}

bool DataCache::RemovePrinter(const CXString& printerName, HKEY hive)
{
    const CXString path = PrinterPath(printerName);
    const DWORD error = RegistryKey::Delete(hive, path);
    if (error != ERROR_SUCCESS && error != ERROR_FILE_NOT_FOUND)
        ThrowFailure(W("DataCache::RemovePrinter"), W("RegDeleteTreeW"), path, error);
    return error == ERROR_SUCCESS;
}

// A user's caches are filled in the user's own session; those of the machine in any. Whoever has made the mutex may
// have left others no more than the right to wait for it and to give it back.
DataCache::Lock::Lock(HKEY hive, DWORD milliseconds)
    : m_mutex(CreateMutexExW(
          nullptr, hive == HKEY_LOCAL_MACHINE ? W("Global\\Tavlen data caches") : W("Local\\Tavlen data caches"), 0,
          SYNCHRONIZE | MUTEX_MODIFY_STATE))
{
    constexpr const WCHAR* kMethod = W("DataCache::Lock::Lock");
    if (m_mutex == nullptr)
        ThrowFailure(kMethod, W("CreateMutexExW"), W("DataCaches"), ErrorOf(FALSE));
    // A process that ended while it held the mutex leaves it to the next one, which is no failure.
    const DWORD waited = WaitForSingleObject(m_mutex, milliseconds);
    if (waited != WAIT_FAILED && waited != WAIT_TIMEOUT)
        return;
    const DWORD error = waited == WAIT_FAILED ? ErrorOf(FALSE) : waited;
    CloseHandle(m_mutex);
    ThrowFailure(kMethod, W("WaitForSingleObject"), W("DataCaches"), error);
}

DataCache::Lock::~Lock()
{
    ReleaseMutex(m_mutex);
    CloseHandle(m_mutex);
}
