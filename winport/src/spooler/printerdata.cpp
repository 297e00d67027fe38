// Printer data: named values under named keys.
#include <winreg.h>
#include <winspool.h>

#include <algorithm>

#include "spooler/bufferwriter.h"
#include "spooler/names.h"
#include "spooler/printerhandle.h"
#include "spooler/printerrow.h"
#include "spooler/win32error.h"

namespace winport::spooler
{

namespace
{

constexpr LPCWSTR kDriverDataKey = u"PrinterDriverData";

struct Value
{
    std::u16string name;
    DWORD type = REG_NONE;
    Blob data;
};

std::u16string_view RequireKeyName(LPCWSTR keyName)
{
    const std::u16string_view key = ViewOf(keyName);
    const bool hasEmptyPart =
        key.empty() || key.front() == u'\\' || key.back() == u'\\' || key.find(u"\\\\") != std::u16string_view::npos;
    Require(!hasEmptyPart, ERROR_INVALID_PARAMETER);
    return key;
}

std::u16string_view RequireValueName(LPCWSTR valueName)
{
    Require(valueName != nullptr, ERROR_INVALID_PARAMETER);
    return valueName;
}

// Throws ERROR_PRINTER_DELETED: without the check a deleted printer's data would only be unknown.
void RequirePrinter(Store& store, const PrinterHandle& handle)
{
    Require(store.Prepare("SELECT 1 FROM printers WHERE id = ?").Bind(handle.printer).Step(), ERROR_PRINTER_DELETED);
}

Value ReadValue(const PrinterHandle& handle, std::u16string_view key, std::u16string_view name)
{
    Store store(handle.folder);
    const Transaction transaction(store, Transaction::Kind::Read);
    RequirePrinter(store, handle);
    Statement row = store.Prepare(
        "SELECT name, type, data FROM printer_data WHERE printer = ? AND folded_key = ? AND folded_name = ?");
    row.Bind(handle.printer).Bind(FoldCase(key)).Bind(FoldCase(name));
    Require(row.Step(), ERROR_FILE_NOT_FOUND);
    Value value;
    value.name = row.Text();
    value.type = row.Number();
    value.data = row.Bytes();
    return value;
}

void WriteValue(const PrinterHandle& handle, std::u16string_view key, const Value& value)
{
    Store store(handle.folder);
    Transaction transaction(store, Transaction::Kind::Write);
    RequirePrinter(store, handle);
    store
        .Prepare("INSERT INTO printer_data(printer, folded_key, folded_name, name, type, data)"
                 " VALUES (?, ?, ?, ?, ?, ?) ON CONFLICT DO UPDATE SET type = excluded.type, data = excluded.data")
        .Bind(handle.printer)
        .Bind(FoldCase(key))
        .Bind(FoldCase(value.name))
        .Bind(value.name)
        .Bind(value.type)
        .Bind(std::span<const BYTE>(value.data))
        .Execute();
    transaction.Commit();
}

void DeleteValue(const PrinterHandle& handle, std::u16string_view key, std::u16string_view name)
{
    Store store(handle.folder);
    Transaction transaction(store, Transaction::Kind::Write);
    RequirePrinter(store, handle);
    store.Prepare("DELETE FROM printer_data WHERE printer = ? AND folded_key = ? AND folded_name = ?")
        .Bind(handle.printer)
        .Bind(FoldCase(key))
        .Bind(FoldCase(name))
        .Execute();
    Require(store.Changes() == 1, ERROR_FILE_NOT_FOUND);
    transaction.Commit();
}

} // namespace

} // namespace winport::spooler

using namespace winport::spooler;

DWORD WINAPI GetPrinterDataExW(HANDLE printer, LPCWSTR keyName, LPCWSTR valueName, LPDWORD type, LPBYTE data,
                               DWORD size, LPDWORD needed)
{
    return ErrorOf(
        [&]
        {
            const auto handle = FindPrinterHandle(printer);
            const CallerBuffer buffer{data, size, needed};
            RequireUsable(buffer);
            const Value value = ReadValue(*handle, RequireKeyName(keyName), RequireValueName(valueName));
            if (type != nullptr)
                *type = value.type; // also when the buffer is too small
            RequireRoom(buffer, value.data.size(), ERROR_MORE_DATA);
            std::copy(value.data.begin(), value.data.end(), data);
        });
}

DWORD WINAPI SetPrinterDataExW(HANDLE printer, LPCWSTR keyName, LPCWSTR valueName, DWORD type, LPBYTE data, DWORD size)
{
    return ErrorOf(
        [&]
        {
            const auto handle = FindAdministerHandle(printer);
            Require(data != nullptr || size == 0, ERROR_INVALID_PARAMETER);
            const std::u16string_view key = RequireKeyName(keyName);
            const Value value{std::u16string(RequireValueName(valueName)), type, Blob(data, data + size)};
            WriteValue(*handle, key, value);
        });
}

DWORD WINAPI DeletePrinterDataExW(HANDLE printer, LPCWSTR keyName, LPCWSTR valueName)
{
    return ErrorOf(
        [&]
        {
            const auto handle = FindAdministerHandle(printer);
            DeleteValue(*handle, RequireKeyName(keyName), RequireValueName(valueName));
        });
}

DWORD WINAPI GetPrinterDataW(HANDLE printer, LPWSTR valueName, LPDWORD type, LPBYTE data, DWORD size, LPDWORD needed)
{
    return GetPrinterDataExW(printer, kDriverDataKey, valueName, type, data, size, needed);
}

DWORD WINAPI SetPrinterDataW(HANDLE printer, LPWSTR valueName, DWORD type, LPBYTE data, DWORD size)
{
    return SetPrinterDataExW(printer, kDriverDataKey, valueName, type, data, size);
}
