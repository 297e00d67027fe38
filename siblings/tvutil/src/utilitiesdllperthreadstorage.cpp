#include <tvutil/utilitiesdllperthreadstorage.h>

#include <type_traits>

// A destructor would pin the library until the last thread that used it ends.
static_assert(std::is_trivially_destructible_v<ExecutionContextStack>);

ExecutionContextStack& UtilitiesDllPerThreadStorage::GetExecutionContextStack() noexcept
{
    static constinit thread_local ExecutionContextStack stack;
    return stack;
}
