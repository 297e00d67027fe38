// DllDelayLoaderPlatform: the platform's calls with which a module is found and loaded. Tests answer them in its place.
//
// Arguments and results are the platform's own. No state; any thread may call it. Nobody deletes one through its base,
// and it needs no destruction: it is there for as long as there is code.
#pragma once

#include <windows.h>

class DllDelayLoaderPlatform
{
public:
    constexpr DllDelayLoaderPlatform() = default;

    // GetProcAddress in "kernel32.dll".
    virtual FARPROC FindKernelFunction(LPCSTR name);
    virtual DWORD GetModuleFileNameA(HMODULE module, LPSTR fileName, DWORD size);
    virtual HMODULE LoadLibraryExA(LPCSTR path, HANDLE reserved, DWORD flags);
    virtual HMODULE GetModuleHandleA(LPCSTR name);
    virtual HMODULE LoadLibraryA(LPCSTR name);
    virtual void FreeLibrary(HMODULE module);
};
