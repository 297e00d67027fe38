// Names of result codes, as people look them up.
#pragma once

#include <windows.h>

#include <string>

// "E_FAIL (0x80004005)"; a Win32 error inside an HRESULT goes by its own name: "ERROR_ACCESS_DENIED (0x80070005)".
[[nodiscard]] std::string HresultName(HRESULT result);
// "ERROR_ACCESS_DENIED (5)"
[[nodiscard]] std::string Win32ErrorName(DWORD error);
