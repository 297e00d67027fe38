#include <tvutil/executioncontext.h>

#include "threadcontexts.h"

std::size_t ExecutionContextStack::Depth() const noexcept
{
    std::size_t depth = 0;
    for (const BasicExecutionContext* context = m_innermost; context != nullptr; context = context->outer)
        ++depth;
    return depth;
}

ExecutionContextLifetime::ExecutionContextLifetime(ThrowSite site, LONG id) noexcept
    : m_context{site, id, ThreadContexts::Innermost()}, m_isListed(ThreadContexts::SetInnermost(&m_context))
{
}

ExecutionContextLifetime::~ExecutionContextLifetime()
{
    if (m_isListed)
        ThreadContexts::SetInnermost(m_context.outer);
}
