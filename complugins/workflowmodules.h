// The workflow modules that may ship with a driver, and where a printer remembers its own.
#pragma once

#include <windows.h>

#include "utilitiesstaticlib/wideliteral.h"

// The printer data value, a REG_DWORD: 0 for none, else the module's place in the table, counted from 1.
inline constexpr WCHAR kWorkflowModuleValueName[] = W("XWorkflowDLL");
inline constexpr DWORD kNoWorkflowModule = 0;

inline constexpr const WCHAR* kWorkflowModuleNames[] = {
    W("tvwftu_B.dll"),
    W("tvwfwu_B.dll"),
    W("tvwfuv_B.dll"),
};
