// UtilitiesDllPerThreadStorage: what the library keeps for each thread.
#pragma once

#include <tvutil/executioncontext.h>

class TVUTIL_API UtilitiesDllPerThreadStorage
{
public:
    // This thread's stack. Never allocates: the storage is trivially destructible, so it does not pin the library.
    static ExecutionContextStack& GetExecutionContextStack() noexcept;
};
