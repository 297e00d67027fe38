#include <objbase.h>

#include <algorithm>
#include <cstdlib>

#include "winport/faultinjection.h"

LPVOID WINAPI CoTaskMemAlloc(SIZE_T size)
{
    if (winport::AllocationMustFail())
        return nullptr;
    // An allocation of nothing has an address on Windows.
    return std::malloc(std::max<SIZE_T>(size, 1));
}

void WINAPI CoTaskMemFree(LPVOID memory)
{
    std::free(memory);
}
