#include <windows.h>

#include <psapi.h>

#include "footprint.h"

Footprint MeasureFootprint()
{
    PROCESS_MEMORY_COUNTERS memory{};
    memory.cb = sizeof memory;
    GetProcessMemoryInfo(GetCurrentProcess(), &memory, sizeof memory);
    DWORD handles = 0;
    GetProcessHandleCount(GetCurrentProcess(), &handles);
    return {memory.PagefileUsage, handles};
}
