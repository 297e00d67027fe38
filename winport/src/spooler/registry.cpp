// Opening, making, deleting and listing registry keys.
#include <winreg.h>

#include "spooler/names.h"
#include "spooler/registrykeys.h"
#include "spooler/registrytext.h"
#include "spooler/win32error.h"

namespace winport::spooler
{

namespace
{

std::int64_t CountOf(Store& store, const char* sql, std::int64_t key)
{
    Statement row = store.Prepare(sql);
    return row.Bind(key).Step() ? row.Integer() : 0;
}

void DeleteRow(Store& store, std::int64_t row)
{
    store.Prepare("DELETE FROM registry_keys WHERE id = ?").Bind(row).Execute();
}

template <typename Number>
void Give(LPDWORD target, Number number)
{
    if (target != nullptr)
        *target = static_cast<DWORD>(number);
}

// The key's values and everything below it, but not itself.
void Empty(Store& store, std::int64_t row)
{
    store.Prepare("DELETE FROM registry_keys WHERE parent = ?").Bind(row).Execute();
    store.Prepare("DELETE FROM registry_values WHERE key = ?").Bind(row).Execute();
}

std::int64_t RequireBelow(Store& store, const RegistryKey& key, LPCWSTR path)
{
    RequireRow(store, key);
    const std::optional<std::int64_t> found = FindBelow(store, key.row, ViewOf(path));
    Require(found.has_value(), ERROR_FILE_NOT_FOUND);
    return *found;
}

// The roots are the store's own.
void RequireNoRoot(const RegistryKey& key, std::int64_t row)
{
    Require(!key.isRoot || row != key.row, ERROR_ACCESS_DENIED);
}

// The one behind the last that was asked for is found by that one's name, as long as the key stays open.
std::u16string SubKeyAt(Store& store, const RegistryKey& key, DWORD index)
{
    SubKeyCursor& cursor = *key.cursor;
    const std::lock_guard lock(cursor.mutex);
    const bool isNext = index != 0 && index == cursor.next;
    Statement row = store.Prepare(
        isNext ? "SELECT name, folded FROM registry_keys WHERE parent = ? AND folded > ? ORDER BY folded LIMIT 1"
               : "SELECT name, folded FROM registry_keys WHERE parent = ? ORDER BY folded LIMIT 1 OFFSET ?");
    row.Bind(key.row);
    if (isNext)
        row.Bind(std::u16string_view(cursor.folded));
    else
        row.Bind(index);
    Require(row.Step(), ERROR_NO_MORE_ITEMS);
    std::u16string name = row.Text();
    cursor.folded = row.Text();
    cursor.next = index + 1;
    return name;
}

} // namespace

} // namespace winport::spooler

using namespace winport::spooler;

LSTATUS WINAPI RegCreateKeyExW(HKEY key, LPCWSTR subKey, DWORD reserved, LPWSTR, DWORD, REGSAM desired,
                               LPSECURITY_ATTRIBUTES, PHKEY result, LPDWORD disposition)
{
    return static_cast<LSTATUS>(ErrorOf(
        [&]
        {
            Require(result != nullptr && reserved == 0, ERROR_INVALID_PARAMETER);
            *result = nullptr;
            const auto parent = FindKey(key);
            Store store(parent->folder);
            Transaction transaction(store, Transaction::Kind::Write);
            RequireRow(store, *parent);
            bool created = false;
            const std::int64_t row = MakeBelow(store, parent->row, ViewOf(subKey), created);
            const HKEY made = MakeKeyHandle({parent->folder, row, desired, parent->isRoot && row == parent->row});
            try
            {
                transaction.Commit();
            }
            catch (...)
            {
                CloseKeyHandle(made);
                throw;
            }
            *result = made;
            Give(disposition, created ? REG_CREATED_NEW_KEY : REG_OPENED_EXISTING_KEY);
        }));
}

LSTATUS WINAPI RegOpenKeyExW(HKEY key, LPCWSTR subKey, DWORD, REGSAM desired, PHKEY result)
{
    return static_cast<LSTATUS>(ErrorOf(
        [&]
        {
            Require(result != nullptr, ERROR_INVALID_PARAMETER);
            *result = nullptr;
            const auto parent = FindKey(key);
            Store store(parent->folder);
            const Transaction transaction(store, Transaction::Kind::Read);
            const std::int64_t row = RequireBelow(store, *parent, subKey);
            *result = MakeKeyHandle({parent->folder, row, desired, parent->isRoot && row == parent->row});
        }));
}

LSTATUS WINAPI RegCloseKey(HKEY key)
{
    return static_cast<LSTATUS>(ErrorOf([&] { CloseKeyHandle(key); }));
}

LSTATUS WINAPI RegDeleteKeyW(HKEY key, LPCWSTR subKey)
{
    return static_cast<LSTATUS>(ErrorOf(
        [&]
        {
            Require(subKey != nullptr, ERROR_INVALID_PARAMETER);
            const auto parent = FindKey(key);
            Store store(parent->folder);
            Transaction transaction(store, Transaction::Kind::Write);
            const std::int64_t row = RequireBelow(store, *parent, subKey);
            RequireNoRoot(*parent, row);
            Require(!HasChildren(store, row), ERROR_ACCESS_DENIED);
            DeleteRow(store, row);
            transaction.Commit();
        }));
}

LSTATUS WINAPI RegDeleteTreeW(HKEY key, LPCWSTR subKey)
{
    return static_cast<LSTATUS>(ErrorOf(
        [&]
        {
            const auto parent = FindKey(key);
            Store store(parent->folder);
            Transaction transaction(store, Transaction::Kind::Write);
            const std::int64_t row = RequireBelow(store, *parent, subKey);
            if (ViewOf(subKey).empty())
                Empty(store, row);
            else
                DeleteRow(store, row);
            transaction.Commit();
        }));
}

LSTATUS WINAPI RegEnumKeyExW(HKEY key, DWORD index, LPWSTR name, LPDWORD nameSize, LPDWORD, LPWSTR keyClass,
                             LPDWORD classSize, PFILETIME lastWriteTime)
{
    return static_cast<LSTATUS>(ErrorOf(
        [&]
        {
            Require(name != nullptr && nameSize != nullptr, ERROR_INVALID_PARAMETER);
            const auto parent = FindKey(key, KEY_ENUMERATE_SUB_KEYS);
            Store store(parent->folder);
            const Transaction transaction(store, Transaction::Kind::Read);
            RequireRow(store, *parent);
            GiveText(SubKeyAt(store, *parent, index), name, *nameSize);
            GiveNoClass(keyClass, classSize);
            if (lastWriteTime != nullptr)
                *lastWriteTime = {};
        }));
}

LSTATUS WINAPI RegQueryInfoKeyW(HKEY key, LPWSTR keyClass, LPDWORD classSize, LPDWORD, LPDWORD subKeys,
                                LPDWORD maxSubKeySize, LPDWORD maxClassSize, LPDWORD values, LPDWORD maxValueNameSize,
                                LPDWORD maxValueSize, LPDWORD securityDescriptorSize, PFILETIME lastWriteTime)
{
    return static_cast<LSTATUS>(ErrorOf(
        [&]
        {
            const auto found = FindKey(key, KEY_QUERY_VALUE);
            Store store(found->folder);
            const Transaction transaction(store, Transaction::Kind::Read);
            RequireRow(store, *found);
            const auto count = [&](const char* sql)
            {
                return CountOf(store, sql, found->row);
            };
            Give(subKeys, count("SELECT count(*) FROM registry_keys WHERE parent = ?"));
            Give(maxSubKeySize, LongestText(store, "SELECT name FROM registry_keys WHERE parent = ?", found->row));
            Give(values, count("SELECT count(*) FROM registry_values WHERE key = ?"));
            Give(maxValueNameSize, LongestText(store, "SELECT name FROM registry_values WHERE key = ?", found->row));
            Give(maxValueSize, count("SELECT ifnull(max(length(data)), 0) FROM registry_values WHERE key = ?"));
            Give(maxClassSize, 0);
            Give(securityDescriptorSize, 0);
            GiveNoClass(keyClass, classSize);
            if (lastWriteTime != nullptr)
                *lastWriteTime = {};
        }));
}
