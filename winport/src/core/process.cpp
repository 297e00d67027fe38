#include <windows.h>

#include <unistd.h>

DWORD WINAPI GetCurrentProcessId()
{
    return static_cast<DWORD>(getpid());
}
