#include <tvutil/executioncontext.h>

#include <tvutil/utilitiesdllperthreadstorage.h>

// The exporting library emits a constant of its class only where it is defined out of line.
constexpr std::size_t ExecutionContextStack::kCapacity;

void ExecutionContextStack::Push(const BasicExecutionContext& context) noexcept
{
    if (m_depth < kCapacity)
        m_records[m_depth] = &context;
    ++m_depth;
}

void ExecutionContextStack::Pop() noexcept
{
    if (m_depth == 0)
        return;
    --m_depth;
    if (m_depth < kCapacity)
        m_records[m_depth] = nullptr;
}

std::size_t ExecutionContextStack::Depth() const noexcept
{
    return m_depth;
}

const BasicExecutionContext* ExecutionContextStack::Top() const noexcept
{
    if (m_depth == 0)
        return nullptr;
    return m_records[m_depth < kCapacity ? m_depth - 1 : kCapacity - 1];
}

const BasicExecutionContext* ExecutionContextStack::At(std::size_t index) const noexcept
{
    return index < kCapacity ? m_records[index] : nullptr;
}

ExecutionContextLifetime::ExecutionContextLifetime(ThrowSite site, LONG id) noexcept
    : m_context{site, id}, m_stack(UtilitiesDllPerThreadStorage::GetExecutionContextStack())
{
    m_stack.Push(m_context);
}

ExecutionContextLifetime::~ExecutionContextLifetime()
{
    m_stack.Pop();
}
