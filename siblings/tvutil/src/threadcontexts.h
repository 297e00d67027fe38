// The head of each thread's list of execution contexts.
#pragma once

#include <tvutil/executioncontext.h>

namespace ThreadContexts
{

[[nodiscard]] const BasicExecutionContext* Innermost() noexcept;
// False where the platform has no room for it; the former one stays.
bool SetInnermost(const BasicExecutionContext* context) noexcept;

} // namespace ThreadContexts
