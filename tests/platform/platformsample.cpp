// A driver's configuration module, for the spooler's tests.
#include <windows.h>
#include <winspool.h>

#include <winddiui.h>

extern "C" PLATFORM_SAMPLE_API DWORD WINAPI DrvDeviceCapabilities(HANDLE, LPWSTR, WORD, PVOID, PDEVMODEW)
{
    return 77;
}
