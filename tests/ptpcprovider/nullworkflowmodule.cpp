// A workflow module, for tests, that has no object for anybody, and no memory for one where the environment says so.
#include <tvcore/workflowmodule.h>

#include <new>

#include "utilitiesstaticlib/wideliteral.h"

extern "C" TVPT_TEST_EXPORT WorkflowModuleObject* GetWorkflowObject(LONG /*reserved*/)
{
    if (GetEnvironmentVariableW(W("TVPT_TEST_NO_MEMORY"), nullptr, 0) != 0)
        throw std::bad_alloc();
    return nullptr;
}

extern "C" TVPT_TEST_EXPORT void ReleaseWorkflowObject(WorkflowModuleObject* /*object*/)
{
}
