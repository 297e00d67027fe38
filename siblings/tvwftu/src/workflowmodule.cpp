// The module's two doors. One object serves one caller; each call makes a new one.
#include <memory>

#include "siblings/tvwftu/src/workflowmoduleobjectimpl.h"

extern "C" TVWFTU_API WorkflowModuleObject* GetWorkflowObject(LONG /*reserved*/)
try
{
    return std::make_unique<WorkflowModuleObjectImpl>().release(); // the module's until it is given back
}
catch (...) // the caller may be of another compiler
{
    return nullptr;
}

extern "C" TVWFTU_API void ReleaseWorkflowObject(WorkflowModuleObject* object)
{
    const std::unique_ptr<WorkflowModuleObjectImpl> last(static_cast<WorkflowModuleObjectImpl*>(object));
}
