// A workflow module, for tests, that has no object for anybody.
#include <tvcore/workflowmodule.h>

extern "C" TVPT_TEST_EXPORT WorkflowModuleObject* GetWorkflowObject(LONG /*reserved*/)
{
    return nullptr;
}

extern "C" TVPT_TEST_EXPORT void ReleaseWorkflowObject(WorkflowModuleObject* /*object*/)
{
}
