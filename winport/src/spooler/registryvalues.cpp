// Reading, writing, deleting and listing registry values.
#include <winreg.h>

#include <algorithm>

#include "spooler/names.h"
#include "spooler/registrykeys.h"
#include "spooler/registrytext.h"
#include "spooler/win32error.h"

namespace winport::spooler
{

namespace
{

constexpr std::size_t kLongestName = 16'383;

struct Value
{
    std::u16string name;
    DWORD type = REG_NONE;
    Blob data;
};

Value ReadRow(Statement& row)
{
    Value value;
    value.name = row.Text();
    value.type = row.Number();
    value.data = row.Bytes();
    return value;
}

Value ReadValue(const RegistryKey& key, LPCWSTR name)
{
    Store store(key.folder);
    const Transaction transaction(store, Transaction::Kind::Read);
    RequireRow(store, key);
    Statement row = store.Prepare("SELECT name, type, data FROM registry_values WHERE key = ? AND folded = ?");
    Require(row.Bind(key.row).Bind(FoldCase(ViewOf(name))).Step(), ERROR_FILE_NOT_FOUND);
    return ReadRow(row);
}

// Without the data, which may be large.
void GiveSize(const RegistryKey& key, LPCWSTR name, LPDWORD type, LPDWORD dataSize)
{
    Store store(key.folder);
    const Transaction transaction(store, Transaction::Kind::Read);
    RequireRow(store, key);
    Statement row = store.Prepare("SELECT type, length(data) FROM registry_values WHERE key = ? AND folded = ?");
    Require(row.Bind(key.row).Bind(FoldCase(ViewOf(name))).Step(), ERROR_FILE_NOT_FOUND);
    const DWORD found = row.Number();
    const DWORD size = row.Number();
    if (type != nullptr)
        *type = found;
    if (dataSize != nullptr)
        *dataSize = size;
}

Value ReadValue(const RegistryKey& key, DWORD index)
{
    Store store(key.folder);
    const Transaction transaction(store, Transaction::Kind::Read);
    RequireRow(store, key);
    Statement row = store.Prepare("SELECT name, type, data FROM registry_values WHERE key = ? ORDER BY folded"
                                  " LIMIT 1 OFFSET ?");
    Require(row.Bind(key.row).Bind(index).Step(), ERROR_NO_MORE_ITEMS);
    return ReadRow(row);
}

void WriteValue(const RegistryKey& key, const Value& value)
{
    Store store(key.folder);
    Transaction transaction(store, Transaction::Kind::Write);
    RequireRow(store, key);
    store
        .Prepare("INSERT INTO registry_values(key, folded, name, type, data) VALUES (?, ?, ?, ?, ?)"
                 " ON CONFLICT DO UPDATE SET type = excluded.type, data = excluded.data")
        .Bind(key.row)
        .Bind(FoldCase(value.name))
        .Bind(value.name)
        .Bind(value.type)
        .Bind(std::span<const BYTE>(value.data))
        .Execute();
    transaction.Commit();
}

void DeleteValue(const RegistryKey& key, LPCWSTR name)
{
    Store store(key.folder);
    Transaction transaction(store, Transaction::Kind::Write);
    RequireRow(store, key);
    store.Prepare("DELETE FROM registry_values WHERE key = ? AND folded = ?")
        .Bind(key.row)
        .Bind(FoldCase(ViewOf(name)))
        .Execute();
    Require(store.Changes() == 1, ERROR_FILE_NOT_FOUND);
    transaction.Commit();
}

// Without a buffer only the size is given.
void GiveValue(const Value& value, LPDWORD type, LPBYTE data, LPDWORD dataSize)
{
    if (type != nullptr)
        *type = value.type;
    if (dataSize == nullptr)
        return;
    const DWORD room = *dataSize;
    *dataSize = static_cast<DWORD>(value.data.size());
    if (data == nullptr)
        return;
    Require(value.data.size() <= room, ERROR_MORE_DATA);
    std::copy(value.data.begin(), value.data.end(), data);
}

} // namespace

} // namespace winport::spooler

using namespace winport::spooler;

LSTATUS WINAPI RegQueryValueExW(HKEY key, LPCWSTR valueName, LPDWORD reserved, LPDWORD type, LPBYTE data,
                                LPDWORD dataSize)
{
    return static_cast<LSTATUS>(ErrorOf(
        [&]
        {
            Require(reserved == nullptr && (data == nullptr || dataSize != nullptr), ERROR_INVALID_PARAMETER);
            const auto found = FindKey(key, KEY_QUERY_VALUE);
            if (data == nullptr)
                GiveSize(*found, valueName, type, dataSize);
            else
                GiveValue(ReadValue(*found, valueName), type, data, dataSize);
        }));
}

LSTATUS WINAPI RegSetValueExW(HKEY key, LPCWSTR valueName, DWORD reserved, DWORD type, const BYTE* data, DWORD dataSize)
{
    return static_cast<LSTATUS>(ErrorOf(
        [&]
        {
            const auto found = FindKey(key, KEY_SET_VALUE);
            Require(reserved == 0 && ViewOf(valueName).size() <= kLongestName, ERROR_INVALID_PARAMETER);
            Require(data != nullptr || dataSize == 0, ERROR_NOACCESS);
            WriteValue(*found, {std::u16string(ViewOf(valueName)), type, Blob(data, data + dataSize)});
        }));
}

LSTATUS WINAPI RegDeleteValueW(HKEY key, LPCWSTR valueName)
{
    return static_cast<LSTATUS>(ErrorOf([&] { DeleteValue(*FindKey(key, KEY_SET_VALUE), valueName); }));
}

LSTATUS WINAPI RegEnumValueW(HKEY key, DWORD index, LPWSTR valueName, LPDWORD valueNameSize, LPDWORD reserved,
                             LPDWORD type, LPBYTE data, LPDWORD dataSize)
{
    return static_cast<LSTATUS>(ErrorOf(
        [&]
        {
            Require(valueName != nullptr && valueNameSize != nullptr && reserved == nullptr &&
                        (data == nullptr || dataSize != nullptr),
                    ERROR_INVALID_PARAMETER);
            const Value value = ReadValue(*FindKey(key, KEY_QUERY_VALUE), index);
            // The name is given first: a buffer that is too small for the data must not be written before it.
            DWORD nameSize = *valueNameSize;
            GiveText(value.name, valueName, nameSize);
            GiveValue(value, type, data, dataSize);
            *valueNameSize = nameSize;
        }));
}
