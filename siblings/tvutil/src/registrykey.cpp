#include <windows.h>

#include "registrykey.h"

namespace
{

constexpr DWORD kLongestKeyName = 255;
constexpr DWORD kLongestValueName = 16'383;

DWORD ErrorOfStatus(LSTATUS status) noexcept
{
    return static_cast<DWORD>(status);
}

// Whoever opened a key finds it deleted when another process was quicker: then it is not there, as any other.
DWORD PresenceError(LSTATUS status) noexcept
{
    const DWORD error = ErrorOfStatus(status);
    return error == ERROR_KEY_DELETED ? DWORD{ERROR_FILE_NOT_FOUND} : error;
}

// Either of the platform's functions that enumerate: of what else they could give nothing is wanted. The room is in
// characters, with the terminator.
template <class Enumerate>
DWORD ListNames(HKEY key, DWORD longest, Enumerate enumerate, std::vector<CXString>& names)
{
    names.clear();
    std::vector<WCHAR> room(longest + 1);
    for (DWORD index = 0; key != nullptr; ++index)
    {
        auto size = static_cast<DWORD>(room.size());
        const DWORD error =
            PresenceError(enumerate(key, index, room.data(), &size, nullptr, nullptr, nullptr, nullptr));
        if (error == ERROR_NO_MORE_ITEMS)
            break;
        if (error != ERROR_SUCCESS)
        {
            names.clear();
            return error == ERROR_FILE_NOT_FOUND ? DWORD{ERROR_SUCCESS} : error;
        }
        names.emplace_back(WStringView(room.data(), size));
    }
    return ERROR_SUCCESS;
}

} // namespace

RegistryKey::~RegistryKey()
{
    if (m_key != nullptr)
        RegCloseKey(m_key);
}

DWORD RegistryKey::Open(HKEY root, const CXString& path) noexcept
{
    return PresenceError(RegOpenKeyExW(root, path.c_str(), 0, KEY_READ, &m_key));
}

DWORD RegistryKey::Create(HKEY root, const CXString& path, bool& isNew) noexcept
{
    DWORD disposition = 0;
    const LSTATUS status = RegCreateKeyExW(root, path.c_str(), 0, nullptr, REG_OPTION_NON_VOLATILE,
                                           KEY_READ | KEY_WRITE, nullptr, &m_key, &disposition);
    isNew = disposition == REG_CREATED_NEW_KEY;
    return ErrorOfStatus(status);
}

DWORD RegistryKey::Read(const CXString& name, Value& value) const
{
    if (m_key == nullptr)
        return ERROR_FILE_NOT_FOUND;
    constexpr DWORD kUsualSize = 16 * 1024; // most values need no second question
    constexpr int kAttempts = 8;            // somebody who lets it grow each time must not keep us here
    DWORD size = kUsualSize;
    DWORD error = ERROR_MORE_DATA;
    for (int attempt = 0; attempt < kAttempts && error == ERROR_MORE_DATA; ++attempt)
    {
        value.data.resize(size);
        error = PresenceError(RegQueryValueExW(m_key, name.c_str(), nullptr, &value.type, value.data.data(), &size));
    }
    value.data.resize(error == ERROR_SUCCESS ? size : 0);
    return error;
}

DWORD RegistryKey::Write(const CXString& name, DWORD type, std::span<const std::byte> data) const noexcept
{
    return ErrorOfStatus(RegSetValueExW(m_key, name.c_str(), 0, type, reinterpret_cast<const BYTE*>(data.data()),
                                        static_cast<DWORD>(data.size())));
}

DWORD RegistryKey::ListKeys(std::vector<CXString>& names) const
{
    return ListNames(m_key, kLongestKeyName, RegEnumKeyExW, names);
}

DWORD RegistryKey::ListValues(std::vector<CXString>& names) const
{
    return ListNames(m_key, kLongestValueName, RegEnumValueW, names);
}

DWORD RegistryKey::Delete(HKEY root, const CXString& path) noexcept
{
    return PresenceError(RegDeleteTreeW(root, path.c_str()));
}
