// Result codes: HRESULTs and Win32 errors, the ones that are used.
#pragma once

#include "windef.h"

constexpr HRESULT MakeHresult(std::uint32_t code)
{
    return static_cast<HRESULT>(code);
}

inline constexpr HRESULT S_OK = 0;
inline constexpr HRESULT S_FALSE = 1;
inline constexpr HRESULT E_NOTIMPL = MakeHresult(0x80004001u);
inline constexpr HRESULT E_NOINTERFACE = MakeHresult(0x80004002u);
inline constexpr HRESULT E_POINTER = MakeHresult(0x80004003u);
inline constexpr HRESULT E_ABORT = MakeHresult(0x80004004u);
inline constexpr HRESULT E_FAIL = MakeHresult(0x80004005u);
inline constexpr HRESULT E_UNEXPECTED = MakeHresult(0x8000FFFFu);
inline constexpr HRESULT E_ACCESSDENIED = MakeHresult(0x80070005u);
inline constexpr HRESULT E_HANDLE = MakeHresult(0x80070006u);
inline constexpr HRESULT E_OUTOFMEMORY = MakeHresult(0x8007000Eu);
inline constexpr HRESULT E_INVALIDARG = MakeHresult(0x80070057u);
inline constexpr HRESULT REGDB_E_CLASSNOTREG = MakeHresult(0x80040154u);
inline constexpr HRESULT CLASS_E_NOAGGREGATION = MakeHresult(0x80040110u);
inline constexpr HRESULT CLASS_E_CLASSNOTAVAILABLE = MakeHresult(0x80040111u);
inline constexpr HRESULT CO_E_NOTINITIALIZED = MakeHresult(0x800401F0u);
inline constexpr HRESULT RPC_E_CHANGED_MODE = MakeHresult(0x80010106u);
inline constexpr HRESULT DISP_E_TYPEMISMATCH = MakeHresult(0x80020005u);
inline constexpr HRESULT DISP_E_BADVARTYPE = MakeHresult(0x80020008u);
inline constexpr HRESULT DISP_E_OVERFLOW = MakeHresult(0x8002000Au);

inline constexpr DWORD ERROR_SUCCESS = 0;
inline constexpr DWORD NO_ERROR = 0;
inline constexpr DWORD ERROR_INVALID_FUNCTION = 1;
inline constexpr DWORD ERROR_FILE_NOT_FOUND = 2;
inline constexpr DWORD ERROR_PATH_NOT_FOUND = 3;
inline constexpr DWORD ERROR_ACCESS_DENIED = 5;
inline constexpr DWORD ERROR_INVALID_HANDLE = 6;
inline constexpr DWORD ERROR_NOT_ENOUGH_MEMORY = 8;
inline constexpr DWORD ERROR_INVALID_DATA = 13;
inline constexpr DWORD ERROR_OUTOFMEMORY = 14;
inline constexpr DWORD ERROR_WRITE_FAULT = 29;
inline constexpr DWORD ERROR_GEN_FAILURE = 31;
inline constexpr DWORD ERROR_SHARING_VIOLATION = 32;
inline constexpr DWORD ERROR_NOT_SUPPORTED = 50;
inline constexpr DWORD ERROR_INVALID_PARAMETER = 87;
inline constexpr DWORD ERROR_DISK_FULL = 112;
inline constexpr DWORD ERROR_INSUFFICIENT_BUFFER = 122;
inline constexpr DWORD ERROR_INVALID_NAME = 123;
inline constexpr DWORD ERROR_INVALID_LEVEL = 124;
inline constexpr DWORD ERROR_MOD_NOT_FOUND = 126;
inline constexpr DWORD ERROR_PROC_NOT_FOUND = 127;
inline constexpr DWORD ERROR_BAD_PATHNAME = 161;
inline constexpr DWORD ERROR_BUSY = 170;
inline constexpr DWORD ERROR_ALREADY_EXISTS = 183;
inline constexpr DWORD ERROR_BAD_EXE_FORMAT = 193;
inline constexpr DWORD ERROR_ENVVAR_NOT_FOUND = 203;
inline constexpr DWORD ERROR_MORE_DATA = 234;
inline constexpr DWORD ERROR_NO_MORE_ITEMS = 259;
inline constexpr DWORD ERROR_INVALID_FLAGS = 1004;
inline constexpr DWORD ERROR_NO_UNICODE_TRANSLATION = 1113;
inline constexpr DWORD ERROR_NOACCESS = 998;
inline constexpr DWORD ERROR_KEY_DELETED = 1018;
inline constexpr DWORD ERROR_NOT_FOUND = 1168;
inline constexpr DWORD ERROR_UNKNOWN_PRINTER_DRIVER = 1797;
inline constexpr DWORD ERROR_UNKNOWN_PORT = 1796;
inline constexpr DWORD ERROR_UNKNOWN_PRINTPROCESSOR = 1798;
inline constexpr DWORD ERROR_INVALID_PRINTER_NAME = 1801;
inline constexpr DWORD ERROR_PRINTER_ALREADY_EXISTS = 1802;
inline constexpr DWORD ERROR_INVALID_PRINTER_COMMAND = 1803;
inline constexpr DWORD ERROR_INVALID_DATATYPE = 1804;
inline constexpr DWORD ERROR_INVALID_ENVIRONMENT = 1805;
inline constexpr DWORD ERROR_INVALID_FORM_NAME = 1902;
inline constexpr DWORD ERROR_INVALID_FORM_SIZE = 1903;
inline constexpr DWORD ERROR_PRINTER_DELETED = 1905;
inline constexpr DWORD ERROR_PRINTER_DRIVER_IN_USE = 3001;

constexpr bool SUCCEEDED(HRESULT result)
{
    return result >= 0;
}

constexpr bool FAILED(HRESULT result)
{
    return result < 0;
}

constexpr HRESULT HRESULT_FROM_WIN32(DWORD error)
{
    return static_cast<std::int32_t>(error) <= 0 ? static_cast<HRESULT>(error)
                                                 : MakeHresult((error & 0x0000FFFFu) | 0x80070000u);
}
