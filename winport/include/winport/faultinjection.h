// Fault injection, for tests: the N-th allocation or the N-th platform call of this thread fails, once.
//
// Platform calls are the functions of this layer that can fail on Windows: DOM methods, spooler and registry calls,
// loading. Allocations are SysAllocString*, CoTaskMemAlloc and, in a test program that replaces operator new,
// everything that asks AllocationMustFail.
#pragma once

#include "../windef.h"

namespace winport
{

enum class FaultKind
{
    Allocation,
    PlatformCall,
};

// Counts from 1; the fault fires once and disarms itself.
WINPORT_API void ArmFault(FaultKind kind, unsigned nth) noexcept;
// Disarms, and answers whether the armed fault had fired.
WINPORT_API bool DisarmFault(FaultKind kind) noexcept;

// The fault points ask these; each question counts one.
WINPORT_API bool AllocationMustFail() noexcept;
WINPORT_API bool PlatformCallMustFail() noexcept;

} // namespace winport
