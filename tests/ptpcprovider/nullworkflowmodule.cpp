// A workflow module, for tests, that has no object for anybody.
#include <windows.h>

extern "C" TVPT_TEST_EXPORT void* GetWorkflowObject(LONG /*reserved*/)
{
    return nullptr;
}

extern "C" TVPT_TEST_EXPORT void ReleaseWorkflowObject(void* /*object*/)
{
}
