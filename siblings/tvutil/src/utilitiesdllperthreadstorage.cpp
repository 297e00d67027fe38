#include <windows.h>

#include <tvutil/utilitiesdllperthreadstorage.h>

#include "threadcontexts.h"
#include "threadslot.h"

namespace
{

constinit ThreadSlot g_innermostContext;

} // namespace

const BasicExecutionContext* ThreadContexts::Innermost() noexcept
{
    return static_cast<const BasicExecutionContext*>(g_innermostContext.Get());
}

bool ThreadContexts::SetInnermost(const BasicExecutionContext* context) noexcept
{
    return g_innermostContext.Set(const_cast<BasicExecutionContext*>(context)); // a slot holds any pointer
}

ExecutionContextStack UtilitiesDllPerThreadStorage::GetExecutionContextStack() noexcept
{
    return ExecutionContextStack(ThreadContexts::Innermost());
}
