// COM start-up, class objects and task memory.
#pragma once

#include "oleauto.h"
#include "unknwn.h"

inline constexpr DWORD COINIT_MULTITHREADED = 0x0;
inline constexpr DWORD COINIT_APARTMENTTHREADED = 0x2;
inline constexpr DWORD CLSCTX_INPROC_SERVER = 0x1;

WINPORT_API HRESULT WINAPI CoInitializeEx(LPVOID reserved, DWORD concurrencyModel);
WINPORT_API void WINAPI CoUninitialize();
// Knows the class ids of the DOM document; anything else is REGDB_E_CLASSNOTREG.
WINPORT_API HRESULT WINAPI CoCreateInstance(REFCLSID classId, LPUNKNOWN outer, DWORD context, REFIID riid,
                                            LPVOID* object);

WINPORT_API LPVOID WINAPI CoTaskMemAlloc(SIZE_T size);
WINPORT_API LPVOID WINAPI CoTaskMemRealloc(LPVOID memory, SIZE_T size);
WINPORT_API void WINAPI CoTaskMemFree(LPVOID memory);
