// UserModule: delayload_user, loaded from its folder for the length of a test.
#pragma once

#include <windows.h>

#include "utilitiesstaticlib/wideliteral.h"

class UserModule
{
public:
    // Null handle when it does not load.
    UserModule();
    UserModule(const UserModule&) = delete;
    UserModule& operator=(const UserModule&) = delete;
    ~UserModule();

    void Unload();
    [[nodiscard]] HMODULE Handle() const
    {
        return m_module;
    }
    // Its folder, with the separator at the end.
    [[nodiscard]] static WideString Folder();

    template <class Function>
    [[nodiscard]] Function* Find(const char* name) const
    {
        return reinterpret_cast<Function*>(reinterpret_cast<void*>(GetProcAddress(m_module, name)));
    }

private:
    HMODULE m_module;
};

// The path of a module's file, with slashes; empty when there is no such module.
WideString PathOf(HMODULE module);
