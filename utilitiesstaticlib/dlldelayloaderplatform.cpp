#include "utilitiesstaticlib/dlldelayloaderplatform.h"

FARPROC DllDelayLoaderPlatform::FindKernelFunction(LPCSTR name)
{
    HMODULE const kernel = ::GetModuleHandleA("kernel32.dll");
    return kernel != nullptr ? ::GetProcAddress(kernel, name) : nullptr;
}

DWORD DllDelayLoaderPlatform::GetModuleFileNameA(HMODULE module, LPSTR fileName, DWORD size)
{
    return ::GetModuleFileNameA(module, fileName, size);
}

HMODULE DllDelayLoaderPlatform::LoadLibraryExA(LPCSTR path, HANDLE reserved, DWORD flags)
{
    return ::LoadLibraryExA(path, reserved, flags);
}

HMODULE DllDelayLoaderPlatform::GetModuleHandleA(LPCSTR name)
{
    return ::GetModuleHandleA(name);
}

HMODULE DllDelayLoaderPlatform::LoadLibraryA(LPCSTR name)
{
    return ::LoadLibraryA(name);
}

void DllDelayLoaderPlatform::FreeLibrary(HMODULE module)
{
    ::FreeLibrary(module);
}
