// The module's two doors. One object serves one caller; each call makes a new one.
#include <memory>

#include "siblings/tvwftu/src/workflowmoduleobjectimpl.h"

extern "C" TVWFTU_API WorkflowModuleObject* GetWorkflowObject(LONG /*reserved*/)
{
    return std::make_unique<WorkflowModuleObjectImpl>().release(); // the module's until it is given back
}

extern "C" TVWFTU_API void ReleaseWorkflowObject(WorkflowModuleObject* object)
{
    const std::unique_ptr<WorkflowModuleObjectImpl> last(static_cast<WorkflowModuleObjectImpl*>(object));
}
