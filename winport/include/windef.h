// Basic types of the platform, with the sizes they have on 64-bit Windows.
//
// WCHAR is char16_t: 16 bits as on Windows, so that formats, DEVMODEs and BSTRs have the same bytes on both
// platforms. Wide literals are written W("...") (utilitiesstaticlib/wideliteral.h).
#pragma once

#include <cstddef>
#include <cstdint>

// Exported functions and classes of a shared library carry the compiler's own attribute; __declspec exists on
// Windows only.
#define WINPORT_API __attribute__((visibility("default")))

using BYTE = std::uint8_t;
using UCHAR = std::uint8_t;
using CHAR = char;
using WORD = std::uint16_t;
using USHORT = std::uint16_t;
using SHORT = std::int16_t;
using BOOL = std::int32_t;
using INT = std::int32_t;
using UINT = std::uint32_t;
using LONG = std::int32_t;
using ULONG = std::uint32_t;
using DWORD = std::uint32_t;
using LONGLONG = std::int64_t;
using ULONGLONG = std::uint64_t;
using DWORD64 = std::uint64_t;
using LONG_PTR = std::intptr_t;
using ULONG_PTR = std::uintptr_t;
using UINT_PTR = std::uintptr_t;
using DWORD_PTR = std::uintptr_t;
using INT_PTR = std::intptr_t;
using SIZE_T = std::size_t;
using FLOAT = float;
using DOUBLE = double;
using WCHAR = char16_t;
using HRESULT = std::int32_t;

using LPVOID = void*;
using LPCVOID = const void*;
using PVOID = void*;
using LPBYTE = BYTE*;
using PBYTE = BYTE*;
using LPSTR = CHAR*;
using LPCSTR = const CHAR*;
using PCSTR = const CHAR*;
using LPWSTR = WCHAR*;
using PWSTR = WCHAR*;
using LPCWSTR = const WCHAR*;
using PCWSTR = const WCHAR*;
using LPDWORD = DWORD*;
using PDWORD = DWORD*;
using LPWORD = WORD*;
using LPLONG = LONG*;
using PLONG = LONG*;
using LPHANDLE = void**;

using HANDLE = void*;
using PHANDLE = HANDLE*;
using HMODULE = struct HMODULE__*;
using HINSTANCE = HMODULE;
using HWND = struct HWND__*;
using HDC = struct HDC__*;
using HKEY = struct HKEY__*;
using PHKEY = HKEY*;
using FARPROC = INT_PTR (*)();
using REGSAM = DWORD;
using ACCESS_MASK = DWORD;
using LSTATUS = LONG;
using LPSECURITY_ATTRIBUTES = struct _SECURITY_ATTRIBUTES*;
using LCID = DWORD;

struct RECT
{
    LONG left;
    LONG top;
    LONG right;
    LONG bottom;
};

struct RECTL
{
    LONG left;
    LONG top;
    LONG right;
    LONG bottom;
};

struct POINTL
{
    LONG x;
    LONG y;
};

struct SIZEL
{
    LONG cx;
    LONG cy;
};

struct FILETIME
{
    DWORD dwLowDateTime;
    DWORD dwHighDateTime;
};

// The calling conventions of the 32-bit platform have no meaning on a 64-bit one.
#define WINAPI
#define APIENTRY
#define CALLBACK
#define STDMETHODCALLTYPE
#define STDAPICALLTYPE
#define CONST const

inline constexpr BOOL TRUE = 1;
inline constexpr BOOL FALSE = 0;
inline constexpr DWORD MAX_PATH = 260;

#define INVALID_HANDLE_VALUE (reinterpret_cast<HANDLE>(static_cast<LONG_PTR>(-1)))

constexpr WORD LOWORD(DWORD_PTR value)
{
    return static_cast<WORD>(value & 0xFFFF);
}

constexpr WORD HIWORD(DWORD_PTR value)
{
    return static_cast<WORD>((value >> 16) & 0xFFFF);
}
