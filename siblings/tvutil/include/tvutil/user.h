// User: a component's settings of the current user, in the registry.
//
// They lie below HKEY_CURRENT_USER\Software\Tavlen\<component>; paths here are relative to that key and may have
// backslashes. What is absent is told as such; a registry that refuses is thrown as TavlenComException with the Win32
// error and the path. Every call goes to the registry: nothing is kept.
#pragma once

#include <windows.h>

#include <optional>
#include <vector>

#include <tvutil/cxstring.h>

class TVUTIL_API User
{
public:
    explicit User(WStringView component);

    // In the registry's order; none when there is no such key.
    [[nodiscard]] std::vector<CXString> GetSubKeyNames(const CXString& path) const;

    // REG_DWORD. Nothing when the value is absent or of another type. A boolean is a number that is not 0.
    [[nodiscard]] std::optional<DWORD> GetDword(const CXString& path, const CXString& valueName) const;
    [[nodiscard]] std::optional<bool> GetBoolean(const CXString& path, const CXString& valueName) const;

    // Makes the key with those above it. False when it was there.
    bool CreateKey(const CXString& path) const;
    // The key is made when it is missing.
    void SetDword(const CXString& path, const CXString& valueName, DWORD value) const;
    void SetBoolean(const CXString& path, const CXString& valueName, bool value) const;
    // With everything below it. False when there is no such key.
    bool DeleteKey(const CXString& path) const;

private:
    [[nodiscard]] CXString PathOf(const CXString& path) const;

    CXString m_root;
};
