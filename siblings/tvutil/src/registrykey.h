// RegistryKey: an open key of the registry, and what this library asks of one.
#pragma once

#include <windows.h>

#include <optional>
#include <span>
#include <vector>

#include <tvutil/bytebuffer.h>
#include <tvutil/cxstring.h>

class RegistryKey
{
public:
    struct Value
    {
        DWORD type = REG_NONE;
        ByteBuffer data;
    };

    // None of them throws anything but std::bad_alloc: errors are Win32 errors, for the caller to tell with the place
    // and the purpose that it knows. A key that is not open, or that was deleted
    // since, has no values and no subkeys.
    RegistryKey() noexcept = default;
    ~RegistryKey();
    RegistryKey(const RegistryKey&) = delete;
    RegistryKey& operator=(const RegistryKey&) = delete;

    // For reading. ERROR_FILE_NOT_FOUND when there is no such key.
    [[nodiscard]] DWORD Open(HKEY root, const CXString& path) noexcept;
    // For writing, with the missing keys of the path. `isNew` tells whether the last one was made.
    [[nodiscard]] DWORD Create(HKEY root, const CXString& path, bool& isNew) noexcept;

    // ERROR_FILE_NOT_FOUND when there is no such value.
    [[nodiscard]] DWORD Read(const CXString& name, Value& value) const;
    [[nodiscard]] DWORD Write(const CXString& name, DWORD type, std::span<const std::byte> data) const noexcept;

    [[nodiscard]] DWORD ListKeys(std::vector<CXString>& names) const;
    [[nodiscard]] DWORD ListValues(std::vector<CXString>& names) const;

    // With everything below it. ERROR_FILE_NOT_FOUND when there is no such key.
    [[nodiscard]] static DWORD Delete(HKEY root, const CXString& path) noexcept;

private:
    HKEY m_key = nullptr;
};
