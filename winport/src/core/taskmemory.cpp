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

LPVOID WINAPI CoTaskMemRealloc(LPVOID memory, SIZE_T size)
{
    if (memory == nullptr)
        return CoTaskMemAlloc(size);
    if (size == 0)
    {
        std::free(memory);
        return nullptr;
    }
    if (winport::AllocationMustFail())
        return nullptr;
    return std::realloc(memory, size);
}

void WINAPI CoTaskMemFree(LPVOID memory)
{
    std::free(memory);
}
