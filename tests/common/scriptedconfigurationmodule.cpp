// A configuration module, for tests, that passes on to a function of the test program: the environment has its address.
// It has no devmode; Wine's spooler asks for one without looking whether it can be asked.
#include <windows.h>

#include <bit>
#include <cstdint>

#include "utilitiesstaticlib/wideliteral.h"

extern "C" TVPT_TEST_EXPORT DWORD WINAPI DrvDeviceCapabilities(HANDLE, LPWSTR, WORD capability, LPVOID output,
                                                               DEVMODEW*)
{
    WCHAR digits[32] = {};
    std::uintptr_t address = 0;
    for (DWORD at = 0, length = GetEnvironmentVariableW(W("TVPT_TEST_DRIVER"), digits, 32); at < length; ++at)
        address = address * 10 + static_cast<std::uintptr_t>(digits[at] - W('0'));
    if (address == 0)
        return static_cast<DWORD>(-1);
    return std::bit_cast<DWORD (*)(WORD, LPVOID)>(address)(capability, output);
}

extern "C" TVPT_TEST_EXPORT LONG WINAPI DrvDocumentPropertySheets(PVOID, LONG_PTR)
{
    return -1;
}
