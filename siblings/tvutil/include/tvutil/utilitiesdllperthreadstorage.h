// UtilitiesDllPerThreadStorage: what the library keeps for each thread.
#pragma once

#include <tvutil/executioncontext.h>

class TVUTIL_API UtilitiesDllPerThreadStorage
{
public:
    // The execution contexts that are open on this thread. Never allocates.
    static ExecutionContextStack GetExecutionContextStack() noexcept;
};
