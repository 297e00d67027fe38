// The model state in full mode, which only tests choose: the data model of a printer that the set-up has installed.
#include <gtest/gtest.h>

#include <tvcore/featurereferences.h>
#include <tvcore/featureservices.h>
#include <tvutil/exceptions.h>
#include <tvutil/executioncontext.h>

#include <optional>

#include "printerhandle.h"
#include "tests/common/testdocuments.h"
#include "tests/ptpcprovider/provideraccess.h"
#include "tests/tvpt/hostrun.h"

namespace
{

namespace Feature = DataModelIds::Feature;
using Access = TavlenPtProviderTestAccess;

class FullMode : public HostTest, protected ProviderBinding
{
protected:
    FullMode()
    {
        EXPECT_EQ(S_OK, BindTo(printer->Get()));
        Access::UseDataModel(*object);
        fields.dmFields |= DM_TTOPTION;
        fields.dmTTOption = DMTT_BITMAP; // no value of it: each transfer throws that and goes on
    }

    // The number of the context in which something was thrown meanwhile; 0: neither of the two.
    LONG Initialize(DEVMODEW* given)
    {
        static LONG found;
        found = 0;
        TavlenException::SetDebugHook(
            [](const WCHAR*, const ThrowSite&, const ExecutionContextStack& stack)
            {
                for (const auto* context = stack.Top(); context != nullptr; context = context->outer)
                    found = context->id == 31619 || context->id == 31620 ? context->id : found;
                return false;
            });
        services = object->InitializeOrReInitializeDataModel(given);
        TavlenException::SetDebugHook(nullptr);
        return found;
    }

    std::optional<PrinterHandle> printer = PrinterHandle::Open(InstallTestPrinter(), PrinterHandle::Access::Administer);
    const TestDevmode devmode{Printer(printer->Get()).GetUserDefaultDevmode().bytes()};
    DEVMODEW& fields = *devmode.Get();
    FeatureServices* services = nullptr;
};

TEST_F(FullMode, BuildsOnceAndRenewsForOtherBytesOnly)
{
    EXPECT_EQ(Initialize(nullptr), 31619);
    EXPECT_EQ(Access::SavedDevmode(*object), Printer(printer->Get()).GetUserDefaultDevmode());
    fields.dmCopies = 3;
    EXPECT_EQ(Initialize(devmode.Get()), 31620);
    EXPECT_EQ(S_OK, ToTicket(devmode, LoadTestDocument("tickets/minimal.xml").Get()));
    for (DEVMODEW* const given : {devmode.Get(), static_cast<DEVMODEW*>(nullptr)})
        EXPECT_EQ(Initialize(given), 0);
    EXPECT_EQ(IntegerFeatureRef(*services, Feature::MsCopies).GetValue(), 3);

    printer.reset(); // it does not answer any more
    fields.dmCopies = 4;
    EXPECT_THROW(Initialize(devmode.Get()), ExceptionPrinterFailure);
    EXPECT_EQ(Access::SavedDevmode(*object), ByteBuffer(devmode.Bytes()));
    EXPECT_EQ(Initialize(devmode.Get()), 0); // no change is seen
}

TEST_F(FullMode, MovesSettingsByTheWorkflowModule)
{
    Initialize(devmode.Get());
    services->SetValue(Feature::JobCopies, 7);
    services->SetValue(Feature::MsIcmIntent, ValueId(DataModelIds::Value::MsIntentAbsoluteColorimetric));
    const WORD paper = fields.dmPaperSize == DMPAPER_A4 ? 1 : DMPAPER_A4;
    services->SetPageSize({DataModelIds::PageSizeStandard, 0, paper, Dimension(), Dimension(), CXString()});
    Access::CommitDataModel(*object, devmode.Get());
    EXPECT_EQ(Access::SavedDevmode(*object), ByteBuffer(devmode.Bytes()));
    EXPECT_EQ(fields.dmICMIntent, DWORD{DMICM_ABS_COLORIMETRIC});
    EXPECT_EQ(fields.dmPaperSize, paper);
    WorkflowObject& workflow = Access::Workflow(*object);
    services->ForgetSettings();
    EXPECT_TRUE(workflow.ReInitializeAssociatedXDevmodeObj());
    EXPECT_EQ(IntegerFeatureRef(*services, Feature::JobCopies).GetValue(), 7);

    BooleanFeatureRef ofTheDevice(*services, Feature::ReplaceDriverPaperInSpreadsheets);
    ofTheDevice.SetValue(false);
    EXPECT_TRUE(workflow.UpdateRegistryWithDataModelData());
    ofTheDevice.SetValue(true);
    services->SetValue(Feature::MsCopies, 5);
    EXPECT_TRUE(workflow.LoadSettingsInitializeDataModelAndWriteDevmode(devmode.Get()));
    EXPECT_EQ(ofTheDevice.GetValue(), false);
    EXPECT_EQ(fields.dmCopies, 5);
}

} // namespace
