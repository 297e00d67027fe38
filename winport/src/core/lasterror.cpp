#include <windows.h>

namespace
{

thread_local DWORD g_lastError = ERROR_SUCCESS;

} // namespace

DWORD WINAPI GetLastError()
{
    return g_lastError;
}

void WINAPI SetLastError(DWORD error)
{
    g_lastError = error;
}
