// Whether the platform is Wine, for the few places where it differs from Windows.
#pragma once

#include <windows.h>

inline bool IsWine()
{
    HMODULE const native = GetModuleHandleA("ntdll.dll");
    return native != nullptr && GetProcAddress(native, "wine_get_version") != nullptr;
}
