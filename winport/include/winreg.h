// The registry, over the same store as the spooler (winspool.h).
//
// Names are compared ignoring case. Sizes in bytes count the terminator of a text when the value was set with one.
// Functions return the error; none of them touches the last error.
#pragma once

#include "winerror.h"

#define HKEY_CLASSES_ROOT                                                                                              \
    (reinterpret_cast<HKEY>(static_cast<ULONG_PTR>(static_cast<LONG_PTR>(MakeHresult(0x80000000u)))))
#define HKEY_CURRENT_USER                                                                                              \
    (reinterpret_cast<HKEY>(static_cast<ULONG_PTR>(static_cast<LONG_PTR>(MakeHresult(0x80000001u)))))
#define HKEY_LOCAL_MACHINE                                                                                             \
    (reinterpret_cast<HKEY>(static_cast<ULONG_PTR>(static_cast<LONG_PTR>(MakeHresult(0x80000002u)))))
#define HKEY_USERS (reinterpret_cast<HKEY>(static_cast<ULONG_PTR>(static_cast<LONG_PTR>(MakeHresult(0x80000003u)))))

inline constexpr DWORD REG_NONE = 0;
inline constexpr DWORD REG_SZ = 1;
inline constexpr DWORD REG_EXPAND_SZ = 2;
inline constexpr DWORD REG_BINARY = 3;
inline constexpr DWORD REG_DWORD = 4;
inline constexpr DWORD REG_MULTI_SZ = 7;
inline constexpr DWORD REG_QWORD = 11;

inline constexpr DWORD REG_OPTION_NON_VOLATILE = 0;
inline constexpr DWORD REG_CREATED_NEW_KEY = 1;
inline constexpr DWORD REG_OPENED_EXISTING_KEY = 2;

inline constexpr REGSAM KEY_QUERY_VALUE = 0x0001;
inline constexpr REGSAM KEY_SET_VALUE = 0x0002;
inline constexpr REGSAM KEY_CREATE_SUB_KEY = 0x0004;
inline constexpr REGSAM KEY_ENUMERATE_SUB_KEYS = 0x0008;
inline constexpr REGSAM KEY_NOTIFY = 0x0010;
inline constexpr REGSAM KEY_WOW64_64KEY = 0x0100;
inline constexpr REGSAM KEY_READ = 0x20019;
inline constexpr REGSAM KEY_WRITE = 0x20006;
inline constexpr REGSAM KEY_ALL_ACCESS = 0xF003F;

using PFILETIME = FILETIME*;

// Makes every missing key of the path. Security attributes and the class are not kept.
WINPORT_API LSTATUS WINAPI RegCreateKeyExW(HKEY key, LPCWSTR subKey, DWORD reserved, LPWSTR keyClass, DWORD options,
                                           REGSAM desired, LPSECURITY_ATTRIBUTES securityAttributes, PHKEY result,
                                           LPDWORD disposition);
WINPORT_API LSTATUS WINAPI RegOpenKeyExW(HKEY key, LPCWSTR subKey, DWORD options, REGSAM desired, PHKEY result);
WINPORT_API LSTATUS WINAPI RegCloseKey(HKEY key);

// Without a buffer answers the size; a buffer that is too small gives ERROR_MORE_DATA and the size.
WINPORT_API LSTATUS WINAPI RegQueryValueExW(HKEY key, LPCWSTR valueName, LPDWORD reserved, LPDWORD type, LPBYTE data,
                                            LPDWORD dataSize);
WINPORT_API LSTATUS WINAPI RegSetValueExW(HKEY key, LPCWSTR valueName, DWORD reserved, DWORD type, const BYTE* data,
                                          DWORD dataSize);
WINPORT_API LSTATUS WINAPI RegDeleteValueW(HKEY key, LPCWSTR valueName);

// RegDeleteKeyW refuses a key that has subkeys (ERROR_ACCESS_DENIED). RegDeleteTreeW deletes the subkey with all below
// it, or, without a name, everything below the key.
WINPORT_API LSTATUS WINAPI RegDeleteKeyW(HKEY key, LPCWSTR subKey);
WINPORT_API LSTATUS WINAPI RegDeleteTreeW(HKEY key, LPCWSTR subKey);

// Name sizes are in characters: in, with the terminator; out, without it.
WINPORT_API LSTATUS WINAPI RegEnumKeyExW(HKEY key, DWORD index, LPWSTR name, LPDWORD nameSize, LPDWORD reserved,
                                         LPWSTR keyClass, LPDWORD classSize, PFILETIME lastWriteTime);
WINPORT_API LSTATUS WINAPI RegEnumValueW(HKEY key, DWORD index, LPWSTR valueName, LPDWORD valueNameSize,
                                         LPDWORD reserved, LPDWORD type, LPBYTE data, LPDWORD dataSize);
WINPORT_API LSTATUS WINAPI RegQueryInfoKeyW(HKEY key, LPWSTR keyClass, LPDWORD classSize, LPDWORD reserved,
                                            LPDWORD subKeys, LPDWORD maxSubKeySize, LPDWORD maxClassSize,
                                            LPDWORD values, LPDWORD maxValueNameSize, LPDWORD maxValueSize,
                                            LPDWORD securityDescriptorSize, PFILETIME lastWriteTime);
