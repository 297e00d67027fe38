#include <windows.h>

#include <algorithm>
#include <cstdlib>
#include <mutex>
#include <new>
#include <string>

#include "core/utf.h"

namespace
{

// The C library's environment has no lock of its own for readers beside writers.
std::mutex g_environmentLock;

bool IsValidName(std::u16string_view name)
{
    return !name.empty() && name.find(u'=') == std::u16string_view::npos && winport::IsWellFormedUtf16(name);
}

// False when there is no such variable.
bool ReadVariable(const std::string& name, std::u16string& value)
{
    const std::lock_guard lock(g_environmentLock);
    const char* const text = std::getenv(name.c_str());
    if (text == nullptr)
        return false;
    value = winport::ToUtf16(text);
    return true;
}

DWORD Fail(DWORD error)
{
    SetLastError(error);
    return 0;
}

} // namespace

DWORD WINAPI GetEnvironmentVariableW(LPCWSTR name, LPWSTR buffer, DWORD size)
try
{
    std::u16string value;
    if (name == nullptr || !IsValidName(name) || !ReadVariable(winport::ToUtf8(name), value))
        return Fail(ERROR_ENVVAR_NOT_FOUND);

    const auto length = static_cast<DWORD>(value.size());
    if (buffer == nullptr || length >= size)
        return length + 1;
    *std::copy(value.begin(), value.end(), buffer) = 0;
    SetLastError(ERROR_SUCCESS); // an empty value, too, answers 0
    return length;
}
catch (const std::bad_alloc&)
{
    return Fail(ERROR_NOT_ENOUGH_MEMORY);
}

BOOL WINAPI SetEnvironmentVariableW(LPCWSTR name, LPCWSTR value)
try
{
    if (name == nullptr || !IsValidName(name))
    {
        SetLastError(ERROR_INVALID_PARAMETER);
        return FALSE;
    }
    const std::string nameText = winport::ToUtf8(name);
    const std::string valueText = value != nullptr ? winport::ToUtf8(value) : std::string();

    const std::lock_guard lock(g_environmentLock);
    const int failed = value == nullptr ? unsetenv(nameText.c_str()) : setenv(nameText.c_str(), valueText.c_str(), 1);
    if (failed == 0)
        return TRUE;
    SetLastError(ERROR_NOT_ENOUGH_MEMORY);
    return FALSE;
}
catch (const std::bad_alloc&)
{
    SetLastError(ERROR_NOT_ENOUGH_MEMORY);
    return FALSE;
}
