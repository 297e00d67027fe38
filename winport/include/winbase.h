// Last error, modules, locks, version, environment and the C runtime's wide conversions.
//
// Module names: "x.dll" names the sibling "x.so", so that callers use the product's own file names on both platforms.
// A backslash in a module's path separates folders as a slash does; answers have slashes. The A functions take and
// give the path's own bytes, UTF-8 as a rule: no path is lost on its way through them. The names of the system's own
// modules (kernel32.dll, ole32.dll, oleaut32.dll, winspool.drv, advapi32.dll) stand for this layer.
//
// An HMODULE is the address of the module's first byte, as on Windows; a value that is none gives an error.
#pragma once

#include "windef.h"

inline constexpr DWORD LOAD_WITH_ALTERED_SEARCH_PATH = 0x00000008;
inline constexpr DWORD GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT = 0x00000002;
inline constexpr DWORD GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS = 0x00000004;

inline constexpr DWORD INFINITE = 0xFFFFFFFF;
inline constexpr DWORD WAIT_OBJECT_0 = 0;
inline constexpr DWORD WAIT_TIMEOUT = 258;
inline constexpr DWORD WAIT_FAILED = 0xFFFFFFFF;
inline constexpr DWORD MUTEX_MODIFY_STATE = 0x0001;
inline constexpr DWORD SYNCHRONIZE = 0x00100000;

// A lock of one word. Zeros, as SRWLOCK_INIT, are a free one; it needs no destruction.
struct SRWLOCK
{
    PVOID Ptr;
};
using PSRWLOCK = SRWLOCK*;
inline constexpr SRWLOCK SRWLOCK_INIT = {nullptr};

inline constexpr DWORD TLS_OUT_OF_INDEXES = 0xFFFFFFFF;

struct OSVERSIONINFOW
{
    DWORD dwOSVersionInfoSize;
    DWORD dwMajorVersion;
    DWORD dwMinorVersion;
    DWORD dwBuildNumber;
    DWORD dwPlatformId;
    WCHAR szCSDVersion[128];
};

static_assert(sizeof(OSVERSIONINFOW) == 276);

extern "C"
{

    WINPORT_API DWORD WINAPI GetLastError();
    WINPORT_API void WINAPI SetLastError(DWORD error);

    // Fails with ERROR_MOD_NOT_FOUND for a file that does not exist or whose imports do not, ERROR_BAD_EXE_FORMAT for
    // one that is no module. A bare name is looked for among the loaded modules, beside the executable, then in the
    // system's folders. A module's own imports are looked for beside it whatever the flags say.
    WINPORT_API HMODULE WINAPI LoadLibraryExA(LPCSTR fileName, HANDLE reserved, DWORD flags);
    WINPORT_API HMODULE WINAPI LoadLibraryExW(LPCWSTR fileName, HANDLE reserved, DWORD flags);
    WINPORT_API HMODULE WINAPI LoadLibraryA(LPCSTR fileName);
    WINPORT_API HMODULE WINAPI LoadLibraryW(LPCWSTR fileName);
    WINPORT_API BOOL WINAPI FreeLibrary(HMODULE module);
    WINPORT_API FARPROC WINAPI GetProcAddress(HMODULE module, LPCSTR procName);
    // The address form and the name form (null: the executable); a reference is taken unless UNCHANGED_REFCOUNT is
    // given.
    WINPORT_API BOOL WINAPI GetModuleHandleExA(DWORD flags, LPCSTR moduleName, HMODULE* module);
    WINPORT_API BOOL WINAPI GetModuleHandleExW(DWORD flags, LPCWSTR moduleName, HMODULE* module);
    WINPORT_API HMODULE WINAPI GetModuleHandleA(LPCSTR moduleName);
    WINPORT_API HMODULE WINAPI GetModuleHandleW(LPCWSTR moduleName);
    // As on Windows, a path that does not fit is cut, terminated, and the size is returned with
    // ERROR_INSUFFICIENT_BUFFER.
    WINPORT_API DWORD WINAPI GetModuleFileNameA(HMODULE module, LPSTR fileName, DWORD size);
    WINPORT_API DWORD WINAPI GetModuleFileNameW(HMODULE module, LPWSTR fileName, DWORD size);

    // By one thread at a time, which must not hold it already.
    WINPORT_API void WINAPI AcquireSRWLockExclusive(PSRWLOCK lock);
    WINPORT_API void WINAPI ReleaseSRWLockExclusive(PSRWLOCK lock);

    // A slot holds a pointer for each thread, null until the thread sets it. The pointers are nobody's: nothing is
    // ended with a thread or a slot. TlsGetValue succeeds for any slot in use, and sets the last error to say so.
    WINPORT_API DWORD WINAPI TlsAlloc();
    WINPORT_API BOOL WINAPI TlsFree(DWORD slot);
    WINPORT_API LPVOID WINAPI TlsGetValue(DWORD slot);
    WINPORT_API BOOL WINAPI TlsSetValue(DWORD slot, LPVOID value);

    // Mutexes between processes, by name: those that share a store (winspool.h) share them. The name is needed, nobody
    // owns a mutex from the beginning (no flags), any handle may do everything, and whoever owns it must not wait for
    // it again, by this handle or another. A mutex whose owner has ended is free. Handles of mutexes alone are closed
    // here.
    WINPORT_API HANDLE WINAPI CreateMutexExW(LPSECURITY_ATTRIBUTES securityAttributes, LPCWSTR name, DWORD flags,
                                             DWORD desiredAccess);
    WINPORT_API DWORD WINAPI WaitForSingleObject(HANDLE handle, DWORD milliseconds);
    WINPORT_API BOOL WINAPI ReleaseMutex(HANDLE mutex);
    WINPORT_API BOOL WINAPI CloseHandle(HANDLE handle);

    // Answers 10.0 unless a test set another version (winport/versionoverride.h).
    WINPORT_API BOOL WINAPI GetVersionExW(OSVERSIONINFOW* versionInformation);

    WINPORT_API DWORD WINAPI GetEnvironmentVariableW(LPCWSTR name, LPWSTR buffer, DWORD size);
    WINPORT_API BOOL WINAPI SetEnvironmentVariableW(LPCWSTR name, LPCWSTR value);

    // Goes to standard error when the environment has WINPORT_DEBUG_OUTPUT, else nowhere. Neither allocates nor throws.
    WINPORT_API void WINAPI OutputDebugStringW(LPCWSTR text);
    WINPORT_API void WINAPI DebugBreak();
    WINPORT_API DWORD WINAPI GetCurrentProcessId();

    inline constexpr UINT CP_ACP = 0;
    inline constexpr UINT CP_UTF8 = 65001;
    inline constexpr DWORD MB_ERR_INVALID_CHARS = 0x00000008;

    // Code pages: CP_ACP, 1252 (the same) and CP_UTF8. A count of -1 means zero-terminated, and the terminator is
    // converted too. A size of 0 asks for the size.
    WINPORT_API int WINAPI MultiByteToWideChar(UINT codePage, DWORD flags, LPCSTR text, int length, LPWSTR wide,
                                               int wideSize);

    // The C runtime's conversion: leading blanks (space, \t, \n, \v, \f, \r), one sign, ASCII digits up to the first
    // other character; no digits give 0, a number out of range gives INT_MAX or INT_MIN.
    WINPORT_API int _wtoi(const WCHAR* text);

} // extern "C"
