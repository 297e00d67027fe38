// The model state in full mode, which only tests choose: the data model of a printer that the set-up has installed.
#include <gtest/gtest.h>

#include <tvcore/featurereferences.h>
#include <tvcore/featureservices.h>
#include <tvutil/exceptions.h>
#include <tvutil/executioncontext.h>

#include <optional>

#include "complugins/documentsettings.h"
#include "complugins/xdevmode.h"
#include "tests/common/testdevmode.h"
#include "tests/common/testdocuments.h"
#include "tests/ptpcprovider/provideraccess.h"
#include "tests/tvpt/hostrun.h"

namespace
{

namespace Feature = DataModelIds::Feature;
namespace Value = DataModelIds::Value;
using Access = TavlenPtProviderTestAccess;

class FullMode : public HostTest, protected ProviderBinding
{
protected:
    FullMode()
    {
        EXPECT_EQ(S_OK, BindTo(printer->GetPrinterHandle()));
        Access::UseDataModel(*object);
        devmode.emplace(printer->GetUserDefaultDevmode().bytes());
        // No value of the option's: each transfer of the core driver's settings throws it and goes on.
        devmode->Get()->dmFields |= DM_TTOPTION;
        devmode->Get()->dmTTOption = DMTT_BITMAP;
    }

    // The number of the context in which something was thrown meanwhile; 0: neither of the two.
    LONG Initialize(DEVMODEW* given)
    {
        static LONG found;
        found = 0;
        const auto previous = TavlenException::SetDebugHook(
            [](const WCHAR*, const ThrowSite&, const ExecutionContextStack& stack)
            {
                for (const auto* context = stack.Top(); context != nullptr; context = context->outer)
                    found = context->id == 31619 || context->id == 31620 ? context->id : found;
                return false;
            });
        services = object->InitializeOrReInitializeDataModel(given);
        TavlenException::SetDebugHook(previous);
        return found;
    }

    bool IsSaved()
    {
        return Access::SavedDevmode(*object) == ByteBuffer(devmode->Bytes());
    }

    template <class Reference>
    auto ValueOf(DataModelIds::tagFeatureEnum feature)
    {
        return Reference(*services, feature).GetValue();
    }

    std::optional<Printer> printer{CXString::FromUtf8(InstallTestPrinter())};
    std::optional<TestDevmode> devmode;
    FeatureServices* services = nullptr;
};

TEST_F(FullMode, BuildsOnceAndRenewsForOtherBytesOnly)
{
    EXPECT_EQ(Initialize(nullptr), 31619);
    EXPECT_EQ(Access::SavedDevmode(*object), printer->GetUserDefaultDevmode());
    const ComPtr<IXMLDOMDocument2> ticket = LoadTestDocument("tickets/minimal.xml");
    devmode->Get()->dmCopies = 3;
    EXPECT_EQ(Initialize(devmode->Get()), 31620);
    EXPECT_EQ(S_OK, provider->ConvertDevModeToPrintTicket(devmode->Size(), devmode->Get(), 0, nullptr, ticket.Get()));
    EXPECT_TRUE(IsSaved());
    services->SetValue(Feature::JobTitle, CXString(W("of this devmode")));
    for (DEVMODEW* const given : {devmode->Get(), static_cast<DEVMODEW*>(nullptr)})
        EXPECT_EQ(Initialize(given), 0);
    EXPECT_NE(services->FindValue(Feature::JobTitle), nullptr);
    EXPECT_EQ(ValueOf<IntegerFeatureRef>(Feature::MsCopies), 3);

    printer.reset(); // it does not answer any more
    devmode->Get()->dmCopies = 4;
    EXPECT_THROW(Initialize(devmode->Get()), ExceptionPrinterFailure);
    EXPECT_TRUE(IsSaved());
    EXPECT_EQ(Initialize(devmode->Get()), 0); // no change is seen
}

TEST_F(FullMode, MovesSettingsByTheWorkflowModule)
{
    constexpr std::int32_t kUnknown = 9001;
    XDevmode wrapper(devmode->Get());
    const auto settings = ReadDocumentSettings(wrapper);
    settings->SetAttributeBytes(kUnknown, MakeIntegerAttributeBytes(1));
    ASSERT_TRUE(CommitDocumentSettings(wrapper, *settings));
    Initialize(devmode->Get());
    EXPECT_FALSE(services->GetMediaTypes().empty());
    services->SetValue(Feature::JobCopies, 7);
    services->SetValue(Feature::MsCopies, 4);
    services->SetValue(Feature::MsIcmMethod, ValueId(Value::MsIcmByDevice));
    services->SetValue(Feature::MsIcmIntent, ValueId(Value::MsIntentAbsoluteColorimetric));
    services->SetValue(Feature::MsPageOrder, ValueId(Value::MsPageOrderReverse));
    FeatureServices::PageSize paper = services->GetPageSize().value();
    paper.paperId = paper.paperId == DMPAPER_A4 ? 1 : DMPAPER_A4;
    paper.width = paper.length = Dimension();
    services->SetPageSize(paper);
    Access::CommitDataModel(*object, devmode->Get());
    EXPECT_TRUE(IsSaved());
    EXPECT_EQ(Initialize(devmode->Get()), 0);
    EXPECT_EQ(devmode->Get()->dmCopies, 4);
    EXPECT_EQ(devmode->Get()->dmICMMethod, DWORD{DMICMMETHOD_DEVICE});
    EXPECT_EQ(devmode->Get()->dmICMIntent, DWORD{DMICM_ABS_COLORIMETRIC});
    XDevmode written(devmode->Get());
    EXPECT_NE(ReadDocumentSettings(written)->GetAttributeBytes(kUnknown), nullptr);

    WorkflowObject& workflow = Access::Workflow(*object);
    EXPECT_FALSE(workflow.UpdatePublicAndPrivateDevmodeWithDataModelData());
    services->ForgetSettings();
    EXPECT_TRUE(workflow.ReInitializeAssociatedXDevmodeObj());
    EXPECT_EQ(ValueOf<IntegerFeatureRef>(Feature::JobCopies), 7);
    EXPECT_EQ(ValueOf<OptionFeatureRef>(Feature::MsPageOrder), ValueId(Value::MsPageOrderReverse));
    EXPECT_EQ(services->GetPageSize().value().paperId, paper.paperId);

    EXPECT_FALSE(workflow.UpdateRegistryWithDataModelData());
    for (const bool isOn : {false, true})
    {
        services->SetValue(Feature::ReplaceDriverPaperInSpreadsheets, isOn);
        EXPECT_TRUE(isOn || workflow.UpdateRegistryWithDataModelData());
    }
    services->SetValue(Feature::MsCopies, 5);
    EXPECT_TRUE(workflow.LoadSettingsInitializeDataModelAndWriteDevmode(devmode->Get()));
    EXPECT_EQ(ValueOf<BooleanFeatureRef>(Feature::ReplaceDriverPaperInSpreadsheets), false);
    EXPECT_EQ(devmode->Get()->dmCopies, 5);
}

} // namespace
