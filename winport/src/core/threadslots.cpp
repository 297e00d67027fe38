// Thread slots are POSIX threads' keys, which have the same numbers, limits of their own, and no destructors here.
#include <windows.h>

#include <cerrno>

#include <pthread.h>

DWORD WINAPI TlsAlloc()
{
    pthread_key_t key = 0;
    if (pthread_key_create(&key, nullptr) == 0)
        return key;
    SetLastError(ERROR_NO_MORE_ITEMS);
    return TLS_OUT_OF_INDEXES;
}

BOOL WINAPI TlsFree(DWORD slot)
{
    if (pthread_key_delete(slot) == 0)
        return TRUE;
    SetLastError(ERROR_INVALID_PARAMETER);
    return FALSE;
}

LPVOID WINAPI TlsGetValue(DWORD slot)
{
    SetLastError(ERROR_SUCCESS);
    return pthread_getspecific(slot);
}

BOOL WINAPI TlsSetValue(DWORD slot, LPVOID value)
{
    const int failure = pthread_setspecific(slot, value);
    if (failure == 0)
        return TRUE;
    SetLastError(failure == ENOMEM ? ERROR_NOT_ENOUGH_MEMORY : ERROR_INVALID_PARAMETER);
    return FALSE;
}
