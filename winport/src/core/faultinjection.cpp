#include "winport/faultinjection.h"

#include <cstddef>

namespace winport
{
namespace
{

// Trivially destructible: a destructor of a thread's variable would keep this library loaded until the thread ends.
struct FaultState
{
    unsigned left = 0; // questions until the fault fires; 0: not armed
    bool fired = false;
};

constexpr std::size_t kKinds = 2;

thread_local FaultState g_faults[kKinds];

FaultState& StateOf(FaultKind kind) noexcept
{
    return g_faults[kind == FaultKind::Allocation ? 0 : 1];
}

bool MustFail(FaultKind kind) noexcept
{
    FaultState& state = StateOf(kind);
    if (state.left == 0)
        return false;
    state.fired = --state.left == 0;
    return state.fired;
}

} // namespace

void ArmFault(FaultKind kind, unsigned nth) noexcept
{
    StateOf(kind) = {nth, false};
}

bool DisarmFault(FaultKind kind) noexcept
{
    FaultState& state = StateOf(kind);
    const bool fired = state.fired;
    state = {};
    return fired;
}

bool AllocationMustFail() noexcept
{
    return MustFail(FaultKind::Allocation);
}

bool PlatformCallMustFail() noexcept
{
    return MustFail(FaultKind::PlatformCall);
}

} // namespace winport
