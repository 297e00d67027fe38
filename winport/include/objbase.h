// COM start-up, class objects and task memory.
#pragma once

#include "oleauto.h"
#include "unknwn.h"

inline constexpr DWORD COINIT_MULTITHREADED = 0x0;
inline constexpr DWORD COINIT_APARTMENTTHREADED = 0x2;
inline constexpr DWORD CLSCTX_INPROC_SERVER = 0x1;

extern "C"
{

    // Counts per thread: S_OK the first time, S_FALSE again, RPC_E_CHANGED_MODE (nothing counted) for the other model.
    WINPORT_API HRESULT WINAPI CoInitializeEx(LPVOID reserved, DWORD concurrencyModel);
    WINPORT_API void WINAPI CoUninitialize();
    // Knows the class ids of the DOM document; anything else is REGDB_E_CLASSNOTREG. CO_E_NOTINITIALIZED on a thread
    // without COM, unless another thread of the process is multithreaded.
    WINPORT_API HRESULT WINAPI CoCreateInstance(REFCLSID classId, LPUNKNOWN outer, DWORD context, REFIID riid,
                                                LPVOID* object);

    WINPORT_API LPVOID WINAPI CoTaskMemAlloc(SIZE_T size);
    WINPORT_API void WINAPI CoTaskMemFree(LPVOID memory);

} // extern "C"
