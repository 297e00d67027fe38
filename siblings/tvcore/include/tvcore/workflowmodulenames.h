// The workflow modules that may ship with a driver, and where a printer remembers its own.
#pragma once

#include <windows.h>

#include <tvutil/cxstring.h>

#include <cstddef>
#include <iterator>

// The printer data value, a REG_DWORD: the kind of module, which is its place in the table, counted from 1.
inline constexpr WCHAR kWorkflowModuleValueName[] = W("XWorkflowDLL");
inline constexpr DWORD kNoWorkflowModule = 0;

inline constexpr const WCHAR* kWorkflowModuleNames[] = {
    W("tvwftu_B.dll"),
    W("tvwfwu_B.dll"),
    W("tvwfuv_B.dll"),
};

// The kind of the module of that name, whatever the case of its letters; kNoWorkflowModule for any other name.
[[nodiscard]] inline DWORD WorkflowModuleKind(const CXString& name)
{
    for (std::size_t index = 0; index < std::size(kWorkflowModuleNames); ++index)
        if (name.CompareNoCase(kWorkflowModuleNames[index]) == 0)
            return static_cast<DWORD>(index + 1);
    return kNoWorkflowModule;
}
