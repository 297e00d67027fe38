// A module for the loader's tests to load, and for the spooler's a driver's configuration module.
#include <windows.h>
#include <winspool.h>

#include <objbase.h>
#include <winddiui.h>

extern "C" PLATFORM_SAMPLE_API DWORD WINAPI DrvDeviceCapabilities(HANDLE, LPWSTR, WORD, PVOID, PDEVMODEW)
{
    CoTaskMemFree(nullptr); // makes the module import another one
    return 77;
}

// Wine asks it, whether it is there or not.
extern "C" PLATFORM_SAMPLE_API LONG WINAPI DrvDocumentPropertySheets(PVOID, LPARAM)
{
    return -1;
}
