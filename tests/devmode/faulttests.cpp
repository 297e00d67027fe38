// Every allocation of what is done with a devmode fails in turn: it fails cleanly, then works again. Linux.
#include <gtest/gtest.h>

#include <new>

#include <tvutil/globalcaches.h>

#include "complugins/msdevicecapabilities.h"
#include "complugins/xdevmode.h"
#include "tests/common/oemdevmodebytes.h"
#include "tests/common/testdevmode.h"
#include "winport/faultinjection.h"

namespace
{

using namespace OemDevmodeBytes;

// One wrapper through all of it, so that what a failure leaves in it is used by the next step.
void ReadEditAndCommit(XDevmode& devmode, DEVMODEW* fields)
{
    devmode.SetDevmode(fields);
    ASSERT_EQ(devmode.GetBooleanValueFromAttributeBytes(kFlagFeature), true);
    MSDeviceCapabilities capabilities;
    capabilities.Initialize(&capabilities, MSDeviceCapabilities::Context::Spooler);
    std::vector<FormsInfoRecord> forms;
    ASSERT_EQ(capabilities.GetPaperDatabaseCachedDeviceCapabilitiesVector(nullptr, fields, forms), S_OK);
    ASSERT_EQ(forms.size(), 1U);
    devmode.SetPropertyBagEntry(2, ByteBuffer(8));
    ASSERT_TRUE(devmode.CommitToDevmode());
}

TEST(DevmodeFaults, LeaveTheDevmodeWholeAndTheWrapperUsable)
{
    if (TVPT_ALLOCATION_FAULTS == 0)
        GTEST_SKIP() << "allocations cannot fail here: the sanitizer keeps its own operator new";
    const FormsInfoRecord form = MakeForm(9, W("A4"), 2100, 2970, 25001);
    const Bytes before = Make(CoreDriverLayout::PostScript, {{1, MakeState(true, {&form, 1})}, {9, ByteBuffer(4)}});
    const TestDevmode expected{
        Make(CoreDriverLayout::PostScript, {{1, MakeState(true, {&form, 1})}, {2, ByteBuffer(8)}, {9, ByteBuffer(4)}})};
    const XDevmode terminateNames(expected.Get());
    unsigned nth = 0;
    for (bool hadFault = true; hadFault;)
    {
        const TestDevmode block{before};
        GlobalCaches::Clear();
        XDevmode devmode;
        bool isDone = true;
        winport::ArmFault(winport::FaultKind::Allocation, ++nth);
        try
        {
            ReadEditAndCommit(devmode, block.Get());
        }
        catch (const std::bad_alloc&)
        {
            isDone = false;
        }
        hadFault = winport::DisarmFault(winport::FaultKind::Allocation);
        if (!isDone)
        {
            const auto now = block.Bytes();
            EXPECT_EQ(ByteBuffer(std::span(now).subspan(kPartOffset)),
                      ByteBuffer(std::span(before).subspan(kPartOffset)))
                << "allocation " << nth;
            EXPECT_NE(devmode.GetPropertyBagEntry(9), nullptr) << "allocation " << nth;
            ReadEditAndCommit(devmode, block.Get());
        }
        EXPECT_EQ(block.Bytes(), expected.Bytes()) << "allocation " << nth;
    }
    EXPECT_GT(nth, 20U);
}

} // namespace
