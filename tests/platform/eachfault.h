// Every platform call and every allocation of an operation made to fail in turn (Linux).
#pragma once

#include <functional>
#include <new>

#include <gtest/gtest.h>

#include "winport/faultinjection.h"

// `run` answers whether it succeeded, and `holds` is asked afterwards, with that answer. The tests' own code allocates,
// too: a fault that it meets itself is a failure like the callee's.
inline void ExpectEachFaultHarmless(const std::function<bool()>& run, const std::function<bool(bool)>& holds)
{
    for (const auto kind : {winport::FaultKind::PlatformCall, winport::FaultKind::Allocation})
    {
        bool hasFired = kind == winport::FaultKind::PlatformCall || TVPT_ALLOCATION_FAULTS != 0;
        for (unsigned nth = 1; hasFired; ++nth)
        {
            bool succeeded = false;
            winport::ArmFault(kind, nth);
            try
            {
                succeeded = run();
            }
            catch (const std::bad_alloc&)
            {
            }
            hasFired = winport::DisarmFault(kind);
            ASSERT_TRUE(hasFired || (succeeded && nth > 1)) << nth << ": it fails by itself, or nothing of it can fail";
            ASSERT_TRUE(holds(succeeded)) << nth;
            ASSERT_LT(nth, 5'000u);
        }
    }
}
