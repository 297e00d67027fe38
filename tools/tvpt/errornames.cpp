#include "errornames.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <iterator>

#include "interfaces/prcomoem.h"

namespace
{

struct HresultRow
{
    HRESULT code;
    const char* name;
};

constexpr HresultRow kHresults[] = {
    {S_OK, "S_OK"},
    {S_FALSE, "S_FALSE"},
    {E_VERSION_NOT_SUPPORTED, "E_VERSION_NOT_SUPPORTED"},
    {E_NOTIMPL, "E_NOTIMPL"},
    {E_NOINTERFACE, "E_NOINTERFACE"},
    {E_POINTER, "E_POINTER"},
    {E_ABORT, "E_ABORT"},
    {E_FAIL, "E_FAIL"},
    {E_UNEXPECTED, "E_UNEXPECTED"},
    {E_ACCESSDENIED, "E_ACCESSDENIED"},
    {E_HANDLE, "E_HANDLE"},
    {E_OUTOFMEMORY, "E_OUTOFMEMORY"},
    {E_INVALIDARG, "E_INVALIDARG"},
    {REGDB_E_CLASSNOTREG, "REGDB_E_CLASSNOTREG"},
    {CLASS_E_CLASSNOTAVAILABLE, "CLASS_E_CLASSNOTAVAILABLE"},
    {RPC_E_CHANGED_MODE, "RPC_E_CHANGED_MODE"},
    {DISP_E_TYPEMISMATCH, "DISP_E_TYPEMISMATCH"},
};

struct Win32Row
{
    DWORD code;
    const char* name;
};

constexpr Win32Row kWin32Errors[] = {
    {ERROR_SUCCESS, "ERROR_SUCCESS"},
    {ERROR_INVALID_FUNCTION, "ERROR_INVALID_FUNCTION"},
    {ERROR_FILE_NOT_FOUND, "ERROR_FILE_NOT_FOUND"},
    {ERROR_PATH_NOT_FOUND, "ERROR_PATH_NOT_FOUND"},
    {ERROR_ACCESS_DENIED, "ERROR_ACCESS_DENIED"},
    {ERROR_INVALID_HANDLE, "ERROR_INVALID_HANDLE"},
    {ERROR_NOT_ENOUGH_MEMORY, "ERROR_NOT_ENOUGH_MEMORY"},
    {ERROR_INVALID_DATA, "ERROR_INVALID_DATA"},
    {ERROR_OUTOFMEMORY, "ERROR_OUTOFMEMORY"},
    {ERROR_WRITE_FAULT, "ERROR_WRITE_FAULT"},
    {ERROR_GEN_FAILURE, "ERROR_GEN_FAILURE"},
    {ERROR_SHARING_VIOLATION, "ERROR_SHARING_VIOLATION"},
    {ERROR_NOT_SUPPORTED, "ERROR_NOT_SUPPORTED"},
    {ERROR_INVALID_PARAMETER, "ERROR_INVALID_PARAMETER"},
    {ERROR_DISK_FULL, "ERROR_DISK_FULL"},
    {ERROR_INSUFFICIENT_BUFFER, "ERROR_INSUFFICIENT_BUFFER"},
    {ERROR_INVALID_NAME, "ERROR_INVALID_NAME"},
    {ERROR_INVALID_LEVEL, "ERROR_INVALID_LEVEL"},
    {ERROR_MOD_NOT_FOUND, "ERROR_MOD_NOT_FOUND"},
    {ERROR_PROC_NOT_FOUND, "ERROR_PROC_NOT_FOUND"},
    {ERROR_BAD_EXE_FORMAT, "ERROR_BAD_EXE_FORMAT"},
    {ERROR_BAD_PATHNAME, "ERROR_BAD_PATHNAME"},
    {ERROR_BUSY, "ERROR_BUSY"},
    {ERROR_ALREADY_EXISTS, "ERROR_ALREADY_EXISTS"},
    {ERROR_MORE_DATA, "ERROR_MORE_DATA"},
    {ERROR_NO_MORE_ITEMS, "ERROR_NO_MORE_ITEMS"},
    {ERROR_NOT_FOUND, "ERROR_NOT_FOUND"},
    {ERROR_UNKNOWN_PORT, "ERROR_UNKNOWN_PORT"},
    {ERROR_UNKNOWN_PRINTER_DRIVER, "ERROR_UNKNOWN_PRINTER_DRIVER"},
    {ERROR_UNKNOWN_PRINTPROCESSOR, "ERROR_UNKNOWN_PRINTPROCESSOR"},
    {ERROR_INVALID_PRINTER_NAME, "ERROR_INVALID_PRINTER_NAME"},
    {ERROR_PRINTER_ALREADY_EXISTS, "ERROR_PRINTER_ALREADY_EXISTS"},
    {ERROR_INVALID_ENVIRONMENT, "ERROR_INVALID_ENVIRONMENT"},
    {ERROR_INVALID_FORM_NAME, "ERROR_INVALID_FORM_NAME"},
    {ERROR_PRINTER_DELETED, "ERROR_PRINTER_DELETED"},
    {ERROR_PRINTER_DRIVER_IN_USE, "ERROR_PRINTER_DRIVER_IN_USE"},
};

template <class Row, std::size_t Count, class Code>
const char* FindName(const Row (&rows)[Count], Code code)
{
    const auto found =
        std::find_if(std::begin(rows), std::end(rows), [code](const Row& row) { return row.code == code; });
    return found != std::end(rows) ? found->name : nullptr;
}

std::string Hexadecimal(std::uint32_t value)
{
    std::array<char, 8> digits{};
    const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), value, 16).ptr;
    std::string text(digits.data(), end);
    std::transform(text.begin(), text.end(), text.begin(),
                   [](char digit) { return digit >= 'a' ? static_cast<char>(digit - 'a' + 'A') : digit; });
    return "0x" + std::string(8 - text.size(), '0') + text;
}

} // namespace

std::string HresultName(HRESULT result)
{
    constexpr std::uint32_t kWin32Facility = 0x80070000;
    const auto bits = static_cast<std::uint32_t>(result);
    const char* name = FindName(kHresults, result);
    if (name == nullptr && (bits & 0xFFFF0000) == kWin32Facility)
        name = FindName(kWin32Errors, static_cast<DWORD>(bits & 0xFFFF));
    return std::string(name != nullptr ? name : "HRESULT") + " (" + Hexadecimal(bits) + ")";
}

std::string Win32ErrorName(DWORD error)
{
    const char* const name = FindName(kWin32Errors, error);
    return std::string(name != nullptr ? name : "error") + " (" + std::to_string(error) + ")";
}
