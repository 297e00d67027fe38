// The model state in full mode, which no one but a test chooses: the data model of a printer that the set-up has
// installed.
#include <gtest/gtest.h>

#include <tvcore/featurereferences.h>
#include <tvcore/featureservices.h>
#include <tvutil/attributebytesreader.h>
#include <tvutil/devicesettingsmanager.h>
#include <tvutil/exceptions.h>
#include <tvutil/executioncontext.h>
#include <tvutil/tavlencomexception.h>

#include <optional>
#include <set>

#include "complugins/documentsettings.h"
#include "complugins/xdevmode.h"
#include "tests/common/failurecode.h"
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
        EXPECT_EQ(S_OK, BindTo(m_printer->GetPrinterHandle()));
        Access::UseDataModel(*object);
        m_devmode.emplace(m_printer->GetUserDefaultDevmode().bytes());
        // Substitutes are no bitmaps: each transfer of the core driver's settings throws and goes on.
        Fields().dmFields |= DM_TTOPTION;
        Fields().dmTTOption = DMTT_BITMAP;
    }

    DEVMODEW& Fields()
    {
        return *m_devmode->Get();
    }

    FeatureServices& Services()
    {
        return *object->GetFeatureServicesPtr();
    }

    bool IsSaved()
    {
        return Access::SavedDevmode(*object) == ByteBuffer(m_devmode->Bytes());
    }

    // The known contexts in which something was thrown.
    static std::set<LONG> ContextsOf(const std::function<void()>& action)
    {
        static std::set<LONG> contexts;
        contexts.clear();
        TavlenException::SetDebugHook(
            [](const WCHAR*, const ThrowSite&, const ExecutionContextStack& stack)
            {
                for (const auto* context = stack.Top(); context != nullptr; context = context->outer)
                    if (context->id == 31619 || context->id == 31620)
                        contexts.insert(context->id);
                return false;
            });
        action();
        TavlenException::SetDebugHook(nullptr);
        return contexts;
    }

    void Convert()
    {
        const ComPtr<IXMLDOMDocument2> ticket = LoadTestDocument("tickets/minimal.xml");
        EXPECT_EQ(S_OK,
                  provider->ConvertDevModeToPrintTicket(m_devmode->Size(), m_devmode->Get(), 0, nullptr, ticket.Get()));
        EXPECT_TRUE(IsSaved());
    }

    std::optional<Printer> m_printer{CXString::FromUtf8(InstallTestPrinter())};
    std::optional<TestDevmode> m_devmode;
};

TEST_F(FullMode, BuildsOnceAndRenewsForOtherBytesOnly)
{
    const std::function<void()> convert = [this]
    {
        Convert();
    };
    EXPECT_EQ(ContextsOf(convert), std::set<LONG>{31619});
    EXPECT_EQ(IntegerFeatureRef(Services(), Feature::MsCopies).GetValue(), 1);
    EXPECT_EQ(BooleanFeatureRef(Services(), Feature::ReplaceDriverPaperInSpreadsheets).GetValue(), true);
    EXPECT_TRUE(Services().GetPageSize().has_value());
    EXPECT_FALSE(Services().GetMediaTypes().empty());
    EXPECT_EQ(ContextsOf(convert), std::set<LONG>{});
    FeatureServices* const services = &Services();
    services->SetValue(Feature::JobTitle, CXString(W("of the former devmode")));
    Fields().dmCopies = 3;
    EXPECT_EQ(ContextsOf(convert), std::set<LONG>{31620});
    EXPECT_EQ(&Services(), services);
    EXPECT_EQ(IntegerFeatureRef(Services(), Feature::MsCopies).GetValue(), 3);
    EXPECT_EQ(Services().FindValue(Feature::JobTitle), nullptr);
    EXPECT_EQ(BooleanFeatureRef(Services(), Feature::ReplaceDriverPaperInSpreadsheets).GetValue(), true);
    EXPECT_EQ(ContextsOf(convert), std::set<LONG>{});
}

TEST_F(FullMode, StartsWithTheUsersDevmodeWhenNoneIsGiven)
{
    EXPECT_NE(object->InitializeOrReInitializeDataModel(nullptr), nullptr);
    EXPECT_EQ(Access::SavedDevmode(*object), m_printer->GetUserDefaultDevmode());
    EXPECT_EQ(ContextsOf([this] { object->InitializeOrReInitializeDataModel(m_devmode->Get()); }),
              std::set<LONG>{31620});
    EXPECT_EQ(ContextsOf([this] { object->InitializeOrReInitializeDataModel(nullptr); }), std::set<LONG>{});
    EXPECT_TRUE(IsSaved());
}

TEST_F(FullMode, RefusesASmallDevmodeAndAProviderWithoutAProduct)
{
    const std::string place = "complugins\\ptpcprovider\\tavlenptprovider "
                              "TavlenPtProvider::InitializeOrReInitializeDataModel ";
    const TestDevmode small(219);
    const auto initialize = [](TavlenPtProvider* asked, const TestDevmode& devmode)
    {
        return [=, &devmode]
        {
            asked->InitializeOrReInitializeDataModel(devmode.Get());
        };
    };
    EXPECT_EQ(PlaceOf<TavlenComException>(initialize(object, small)), place + "1433");
    EXPECT_EQ(CodeOf(initialize(object, small)), E_INVALIDARG);
    const ComPtr<IXMLDOMDocument2> ticket = LoadTestDocument("tickets/minimal.xml");
    EXPECT_EQ(E_FAIL, provider->ConvertDevModeToPrintTicket(small.Size(), small.Get(), 0, nullptr, ticket.Get()));
    const ProviderBinding unbound;
    Access::UseDataModel(*unbound.object);
    EXPECT_EQ(PlaceOf<TavlenComException>(initialize(unbound.object, *m_devmode)), place + "1443");
    EXPECT_EQ(CodeOf(initialize(unbound.object, *m_devmode)), E_FAIL);
}

TEST_F(FullMode, KeepsTheDevmodeOfARenewalThatFailed)
{
    Convert();
    m_printer.reset(); // the printer does not answer any more
    Fields().dmCopies = 3;
    EXPECT_THROW(object->InitializeOrReInitializeDataModel(m_devmode->Get()), ExceptionPrinterFailure);
    EXPECT_TRUE(IsSaved());
    EXPECT_NE(object->InitializeOrReInitializeDataModel(m_devmode->Get()), nullptr); // no change is seen
}

TEST_F(FullMode, MovesSettingsIntoTheDevmodeAndOutOfIt)
{
    constexpr std::int32_t kUnknown = 9001;
    {
        XDevmode wrapper(m_devmode->Get());
        const auto settings = ReadDocumentSettings(wrapper);
        settings->SetAttributeBytes(kUnknown, MakeIntegerAttributeBytes(1));
        ASSERT_TRUE(CommitDocumentSettings(wrapper, *settings));
    }
    Convert();
    Services().SetValue(Feature::JobCopies, 7);
    Services().SetValue(Feature::MediaType, ValueId(Value::MediaTransparency));
    Services().SetValue(Feature::MsCopies, 4);
    Services().SetValue(Feature::MsIcmMethod, ValueId(Value::MsIcmByDevice));
    Services().SetValue(Feature::MsIcmIntent, ValueId(Value::MsIntentAbsoluteColorimetric));
    Services().SetValue(Feature::MsPageOrder, ValueId(Value::MsPageOrderReverse));
    FeatureServices::PageSize paper = *Services().GetPageSize();
    paper.paperId = Fields().dmPaperSize == DMPAPER_A4 ? 1 : DMPAPER_A4;
    paper.width = paper.length = Dimension();
    paper.name = CXString();
    Services().SetPageSize(paper);
    Access::CommitDataModel(*object, m_devmode->Get());
    EXPECT_TRUE(IsSaved());
    EXPECT_EQ(Fields().dmCopies, 4);
    EXPECT_EQ(Fields().dmICMMethod, DWORD{DMICMMETHOD_DEVICE});
    EXPECT_EQ(Fields().dmICMIntent, DWORD{DMICM_ABS_COLORIMETRIC});
    EXPECT_EQ(Fields().dmPaperSize, static_cast<short>(paper.paperId));
    XDevmode written(m_devmode->Get());
    const AttributeBytesIndexedList& stored = *written.GetDataModelDocPropAttributeBytesIndexedList();
    EXPECT_EQ(AttributeBytesReader::GetIntegerValueFromAttributeBytes(stored, kUnknown), 1);
    EXPECT_EQ(AttributeBytesReader::GetIntegerValueFromAttributeBytes(stored, Feature::JobCopies), 7);
    EXPECT_EQ(ContextsOf([this] { Convert(); }), std::set<LONG>{});

    WorkflowObject& workflow = Access::Workflow(*object);
    EXPECT_FALSE(workflow.UpdatePublicAndPrivateDevmodeWithDataModelData());
    Services().ForgetSettings();
    EXPECT_TRUE(workflow.ReInitializeAssociatedXDevmodeObj());
    EXPECT_EQ(IntegerFeatureRef(Services(), Feature::JobCopies).GetValue(), 7);
    EXPECT_EQ(OptionFeatureRef(Services(), Feature::MediaType).GetValue(), ValueId(Value::MediaTransparency));
    EXPECT_EQ(OptionFeatureRef(Services(), Feature::MsPageOrder).GetValue(), ValueId(Value::MsPageOrderReverse));
    EXPECT_EQ(Services().GetPageSize()->paperId, paper.paperId);
}

TEST_F(FullMode, MovesSettingsOfTheDeviceIntoTheRegistryAndOutOfIt)
{
    Convert();
    WorkflowObject& workflow = Access::Workflow(*object);
    EXPECT_FALSE(workflow.UpdateRegistryWithDataModelData());
    Services().SetValue(Feature::ReplaceDriverPaperInSpreadsheets, false);
    EXPECT_TRUE(workflow.UpdateRegistryWithDataModelData());
    EXPECT_EQ(
        DeviceSettingsManager(*m_printer).GetBooleanValueFromAttributeBytes(Feature::ReplaceDriverPaperInSpreadsheets),
        false);
    EXPECT_FALSE(workflow.UpdateRegistryWithDataModelData());
    Services().SetValue(Feature::ReplaceDriverPaperInSpreadsheets, true);
    Services().SetValue(Feature::MsCopies, 5);
    EXPECT_TRUE(workflow.LoadSettingsInitializeDataModelAndWriteDevmode(m_devmode->Get()));
    EXPECT_EQ(BooleanFeatureRef(Services(), Feature::ReplaceDriverPaperInSpreadsheets).GetValue(), false);
    EXPECT_EQ(Fields().dmCopies, 5);
}

} // namespace
