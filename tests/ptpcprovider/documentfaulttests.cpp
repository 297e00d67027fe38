// Running out of memory in the document layer's own steps has its HRESULT, as every other failure. Linux.
#include <gtest/gtest.h>

#include "complugins/ptpcprovider/domhelpers.h"
#include "tests/common/failurecode.h"
#include "winport/faultinjection.h"

namespace
{

TEST(DocumentFaults, OfAllocationsAreOutOfMemory)
{
    if (TVPT_ALLOCATION_FAULTS == 0)
        GTEST_SKIP() << "allocations cannot fail here: the sanitizer keeps its own operator new";
    const CXString name(WideString(100, W('n')));
    PrintTicketQueryBuilder builder(W("psf:"));
    const std::function<void()> operations[] = {
        [&] {
            static_cast<void>(MakeBstr(name, {W("Test::Method"), W("tests")}));
        },
        [&] { builder.AddFeature(W("psk:"), name); },
        [&] { builder.AddValue(); },
        [&] { builder.AddOption(W("psk:")); },
        [&] { QueryOf(builder); },
    };
    for (const std::function<void()>& operation : operations)
    {
        const auto fail = [&]
        {
            winport::ArmFault(winport::FaultKind::Allocation, 1);
            operation();
        };
        EXPECT_EQ(E_OUTOFMEMORY, CodeOf(fail)) << &operation - operations;
        EXPECT_TRUE(winport::DisarmFault(winport::FaultKind::Allocation));
        operation(); // then works again
    }
}

} // namespace
