#include <windows.h>

#include <tvutil/user.h>

#include <tvutil/tavlencomexception.h>

#include "registrykey.h"

namespace
{

constexpr const WCHAR* kSourceFile = W("siblings\\tvutil\\src\\user");

void Require(DWORD error, const WCHAR* method, const WCHAR* operation, const CXString& path)
{
    if (error != ERROR_SUCCESS)
        ThrowComException(HRESULT_FROM_WIN32(error), {method, kSourceFile}, W("%s failed for \"%s\": Win32 error %u"),
                          {operation, path, error});
}

void Create(RegistryKey& key, const CXString& path, const WCHAR* method, bool& isNew)
{
    Require(key.Create(HKEY_CURRENT_USER, path, isNew), method, W("RegCreateKeyExW"), path);
}

} // namespace

User::User(WStringView component) : m_root(CXString(W("Software\\Tavlen\\")) + component)
{
}

CXString User::PathOf(const CXString& path) const
{
    return m_root + W("\\") + path.View();
}

std::vector<CXString> User::GetSubKeyNames(const CXString& path) const
{
    constexpr const WCHAR* kMethod = W("User::GetSubKeyNames");
    std::vector<CXString> names;
    RegistryKey key;
    const DWORD error = key.Open(HKEY_CURRENT_USER, PathOf(path));
    if (error == ERROR_FILE_NOT_FOUND)
        return names;
    Require(error, kMethod, W("RegOpenKeyExW"), path);
    Require(key.ListKeys(names), kMethod, W("RegEnumKeyExW"), path);
    return names;
}

std::optional<DWORD> User::GetDword(const CXString& path, const CXString& valueName) const
{
    constexpr const WCHAR* kMethod = W("User::GetDword");
    RegistryKey key;
    DWORD error = key.Open(HKEY_CURRENT_USER, PathOf(path));
    if (error == ERROR_FILE_NOT_FOUND)
        return std::nullopt;
    Require(error, kMethod, W("RegOpenKeyExW"), path);
    RegistryKey::Value value;
    error = key.Read(valueName, value);
    if (error == ERROR_FILE_NOT_FOUND)
        return std::nullopt;
    Require(error, kMethod, W("RegQueryValueExW"), path);
    if (value.type != REG_DWORD || value.data.size() != sizeof(DWORD))
        return std::nullopt;
    return value.data.getDword();
}

std::optional<bool> User::GetBoolean(const CXString& path, const CXString& valueName) const
{
    const std::optional<DWORD> number = GetDword(path, valueName);
    return number ? std::optional(*number != 0) : std::nullopt;
}

bool User::CreateKey(const CXString& path) const
{
    RegistryKey key;
    bool isNew = false;
    Create(key, PathOf(path), W("User::CreateKey"), isNew);
    return isNew;
}

void User::SetDword(const CXString& path, const CXString& valueName, DWORD value) const
{
    constexpr const WCHAR* kMethod = W("User::SetDword");
    RegistryKey key;
    bool isNew = false;
    Create(key, PathOf(path), kMethod, isNew);
    Require(key.Write(valueName, REG_DWORD, std::as_bytes(std::span(&value, 1))), kMethod, W("RegSetValueExW"), path);
}

void User::SetBoolean(const CXString& path, const CXString& valueName, bool value) const
{
    SetDword(path, valueName, value ? 1 : 0);
}

bool User::DeleteKey(const CXString& path) const
{
    const DWORD error = RegistryKey::Delete(HKEY_CURRENT_USER, PathOf(path));
    if (error == ERROR_FILE_NOT_FOUND)
        return false;
    Require(error, W("User::DeleteKey"), W("RegDeleteTreeW"), path);
    return true;
}
