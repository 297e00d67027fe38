// The workflow module: how it is found, remembered and loaded; what the provider answers with and without one.
#include <gtest/gtest.h>

#include <tvcore/datasourceproviderwithdatasources.h>
#include <tvcore/productdata.h>
#include <tvutil/exceptions.h>
#include <tvutil/printer.h>
#include <tvutil/tavlencomexception.h>
#include <tvutil/textresourceloader.h>

#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include "complugins/msdevicecapabilities.h"
#include "complugins/workflowobject.h"
#include "tests/common/failurecode.h"
#include "tests/common/testdevmode.h"
#include "tests/common/testdocuments.h"
#include "tests/common/testprinter.h"
#include "tests/ptpcprovider/provideraccess.h"
#include "utilitiesstaticlib/ccombstr.h"
#include "utilitiesstaticlib/cotaskmemptr.h"

namespace
{

constexpr const WCHAR* kValueName = W("XWorkflowDLL");

TestPrinter::SetUp ColorPrinter(std::vector<std::string> dependentFiles)
{
    return {0xE02, "tavlen-c9070-ps.json", std::move(dependentFiles)};
}

std::optional<DWORD> StoredKind(const TestPrinter& printer)
{
    DWORD type = REG_NONE;
    ByteBuffer data;
    if (!Printer(printer.Handle()).GetPrinterDataW(kValueName, type, data))
        return std::nullopt;
    EXPECT_EQ(DWORD{REG_DWORD}, type);
    return data.getDword();
}

struct DetectionCase
{
    const char* name;
    std::vector<std::string> files;
    std::optional<DWORD> stored;
    bool loads;
};

const DetectionCase kDetectionCases[] = {
    {"the reference module", {"tvwftu_b.dll"}, 1, true},
    {"the first of several", {"tvwfuv_b.dll", "tvwfwu_b.dll", "tvwftu_b.dll"}, 1, true},
    {"a module without an object", {"tvwfwu_b.dll"}, 2, false},
    {"a module that is not there", {"tvwfuv_b.dll"}, 3, false},
    {"none of the three: nothing is stored", {"tvother_b.dll"}, std::nullopt, false},
    {"the list is searched as it is returned", {"TVWFTU_B.DLL"}, std::nullopt, false},
    {"no files", {}, std::nullopt, false},
};

TEST(Workflow, FindsTheDriversModuleAndRemembersIt)
{
    for (const DetectionCase& test : kDetectionCases)
    {
        SCOPED_TRACE(test.name);
        const TestPrinter printer(ColorPrinter(test.files));
        for (int again = 0; again < 2; ++again) // the second time from the printer's data
        {
            WorkflowObject workflow;
            EXPECT_EQ(test.loads, workflow.Load(printer.Handle()));
            EXPECT_EQ(test.loads, workflow.IsLoaded());
            EXPECT_EQ(test.stored, StoredKind(printer));
        }
        // What gives no object is not kept.
        EXPECT_EQ(nullptr, GetModuleHandleW(W("tvwfwu_B.dll")));
    }
}

struct StoredCase
{
    const char* name;
    DWORD type;
    std::vector<BYTE> bytes;
    bool loads;
};

const StoredCase kStoredCases[] = {
    {"the reference module", REG_DWORD, {1, 0, 0, 0}, true},
    {"none", REG_DWORD, {0, 0, 0, 0}, false},
    {"a kind that nobody knows", REG_DWORD, {77, 0, 0, 0}, false},
    {"the largest", REG_DWORD, {0xFF, 0xFF, 0xFF, 0xFF}, false},
    {"another type", REG_BINARY, {1, 0, 0, 0}, false},
    {"a text", REG_SZ, {'1', 0, 0, 0}, false},
};

TEST(Workflow, BelievesTheStoredKindAndLeavesItAlone)
{
    for (const StoredCase& test : kStoredCases)
    {
        SCOPED_TRACE(test.name);
        const TestPrinter printer(ColorPrinter({"tvwftu_b.dll"}));
        const Printer spooled(printer.Handle());
        spooled.SetPrinterDataW(kValueName, test.type, test.bytes.data(), static_cast<DWORD>(test.bytes.size()));
        WorkflowObject workflow;
        EXPECT_EQ(test.loads, workflow.Load(printer.Handle()));
        DWORD type = REG_NONE;
        ByteBuffer data;
        EXPECT_TRUE(spooled.GetPrinterDataW(kValueName, type, data));
        EXPECT_EQ(test.type, type);
        EXPECT_EQ(test.bytes, std::vector<BYTE>(data.data(), data.data() + data.size()));
    }
}

TEST(Workflow, CannotBeAskedBeforeItIsLoaded)
{
    WorkflowObject workflow;
    try
    {
        static_cast<void>(workflow.GetProductDataObj());
        FAIL() << "there is no product data";
    }
    catch (const ExceptionWorkflowObjectNotInitialized& failure)
    {
        EXPECT_EQ("WorkflowObject::GetProductDataObj", Utf8(failure.GetSite().method));
        EXPECT_EQ("complugins\\workflowobject", Utf8(failure.GetSite().file));
    }
    EXPECT_THROW(workflow.UpdateRegistryWithDataModelData(), ExceptionWorkflowObjectNotInitialized);
    EXPECT_THROW(workflow.UpdatePublicAndPrivateDevmodeWithDataModelData(), ExceptionWorkflowObjectNotInitialized);
    EXPECT_THROW(workflow.SetDataSourceProviderPtr(nullptr, nullptr, 3), ExceptionWorkflowObjectNotInitialized);
    EXPECT_THROW(workflow.LoadSettingsInitializeDataModelAndWriteDevmode(nullptr),
                 ExceptionWorkflowObjectNotInitialized);
    EXPECT_THROW(workflow.ReInitializeAssociatedXDevmodeObj(), ExceptionWorkflowObjectNotInitialized);
    EXPECT_THROW(static_cast<void>(workflow.GetWorkFlowType()), ExceptionWorkflowObjectNotInitialized);
    EXPECT_FALSE(workflow.Load(nullptr)); // a printer that cannot be asked has none
}

// A provider in light mode that notes what it is asked for.
class LightProvider final : public DataSourceProviderWithDataSources
{
public:
    std::vector<std::string> asked;
    const DEVMODEW* devmode = nullptr;

    FeatureServices* InitializeOrReInitializeDataModel(DEVMODEW* given) override
    {
        asked.emplace_back("initialise");
        devmode = given;
        return nullptr;
    }
    FeatureServices* GetFeatureServicesPtr() override
    {
        asked.emplace_back("services");
        return nullptr;
    }
    XDevmode& GetXDevmodeRef() override
    {
        throw std::logic_error("there is none in light mode");
    }
    ProductData& GetProductData() override
    {
        throw std::logic_error("the module has its own");
    }
    ProductStringLoader& GetProductStringLoader() override
    {
        throw std::logic_error("not asked");
    }
    PageSizeDictionary& GetPageSizeDictionary() override
    {
        throw std::logic_error("not asked");
    }
    bool IsColorDevice() override
    {
        throw std::logic_error("not asked");
    }
};

TEST(Workflow, ForwardsToItsModuleWhichAsksTheProviderForADataModel)
{
    const TestPrinter printer(ColorPrinter({"tvwftu_b.dll"}));
    WorkflowObject workflow;
    ASSERT_TRUE(workflow.Load(printer.Handle()));
    EXPECT_EQ(1u, workflow.GetWorkFlowType());
    EXPECT_EQ("Tavlen C9070 PS", workflow.GetProductDataObj().GetName().ToUtf8());

    LightProvider provider;
    const TestDevmode devmode;
    const auto moves = [&]
    {
        return workflow.UpdateRegistryWithDataModelData() ||
               workflow.UpdatePublicAndPrivateDevmodeWithDataModelData() ||
               workflow.LoadSettingsInitializeDataModelAndWriteDevmode(devmode.Get()) ||
               workflow.ReInitializeAssociatedXDevmodeObj();
    };
    EXPECT_FALSE(moves()); // nobody to ask
    workflow.SetDataSourceProviderPtr(&provider, printer.Handle(), 3);
    EXPECT_FALSE(moves());
    EXPECT_EQ((std::vector<std::string>{"services", "services", "initialise", "services"}), provider.asked);
    EXPECT_EQ(devmode.Get(), provider.devmode);
    workflow.SetDataSourceProviderPtr(nullptr, nullptr, 0);
    EXPECT_FALSE(moves());
    EXPECT_EQ(4u, provider.asked.size());
}

class BoundProvider : public testing::Test
{
protected:
    HRESULT Bind(const TestPrinter& printer)
    {
        const HRESULT created = m_provider ? S_OK : CreateTavlenPtProvider(m_provider.Put());
        EXPECT_EQ(S_OK, created);
        m_object = static_cast<TavlenPtProvider*>(m_provider.Get());
        OEMPTOPTS options = OEMPT_DEFAULT;
        INT count = 0;
        BSTR* namespaces = nullptr;
        const HRESULT result = m_provider->BindPrinter(printer.Handle(), 1, &options, &count, &namespaces);
        const CoTaskMemPtr<BSTR> owner(namespaces);
        CComBSTR uri;
        uri.Attach(namespaces != nullptr ? *namespaces : nullptr);
        return result;
    }

    ComPtr<IPrintOemPrintTicketProvider> m_provider;
    TavlenPtProvider* m_object = nullptr;
};

TEST(Workflow, ForgetsAModuleThatALoadLeftWithoutAnObject)
{
    WorkflowObject workflow;
    {
        const TestPrinter unreadable({0xE02, "", {"tvwftu_b.dll"}});
        EXPECT_THROW(workflow.Load(unreadable.Handle()), TavlenException);
        EXPECT_FALSE(workflow.IsLoaded());
    }
    const TestPrinter without(ColorPrinter({}));
    EXPECT_FALSE(workflow.Load(without.Handle()));
}

TEST_F(BoundProvider, AnswersForItsProduct)
{
    const TestPrinter printer(ColorPrinter({"tvwftu_b.dll"}));
    ASSERT_EQ(S_OK, Bind(printer));
    EXPECT_EQ(ProductData::ControllerFamilyColor, TavlenPtProviderTestAccess::ControllerFamily(*m_object));
    EXPECT_EQ(ProductData::ControllerFamilyColor, m_object->GetProductData().GetControllerFamily());
    EXPECT_TRUE(m_object->IsColorDevice());
    // A new loader at every call: both exist at the moment of the second, so their addresses differ.
    const ProductStringLoader* const first = &m_object->GetProductStringLoader();
    EXPECT_NE(first, &m_object->GetProductStringLoader());
    const CXString text = m_object->GetProductStringLoader().LoadStringW(418);
    EXPECT_FALSE(text.IsEmpty());

    // Bound again, the first product data stays, and its texts with it: those of the printer's name are not asked.
    ASSERT_EQ(S_OK, Bind(printer));
    PrinterModel exchanged;
    exchanged.productStrings = {{418, CXString(W("another product's"))}};
    const ProductData newer(std::move(exchanged), Printer(printer.Handle()).GetPrinterName());
    EXPECT_EQ(text.ToUtf8(), m_object->GetProductStringLoader().LoadStringW(418).ToUtf8());
    EXPECT_FALSE(TextResourceLoader::Initialize(printer.Handle(), true)); // forgotten: the name has no texts any more
    EXPECT_EQ(text.ToUtf8(), m_object->GetProductStringLoader().LoadStringW(418).ToUtf8());
    EXPECT_EQ(&m_object->GetPageSizeDictionary(), &m_object->GetPageSizeDictionary());

    MSDeviceCapabilities& capabilities = m_object->GetMSDeviceCapabilities();
    EXPECT_EQ(&capabilities, &m_object->GetMSDeviceCapabilities());
    capabilities.Initialize(printer.Handle());
    EXPECT_EQ(capabilities.GetPrinterHandle(), printer.Handle());
}

TEST_F(BoundProvider, WithoutAWorkflowModuleFailsOnlyWhereItsProductIsAsked)
{
    const TestPrinter printer(ColorPrinter({}));
    ASSERT_EQ(S_OK, Bind(printer));
    EXPECT_EQ(ProductData::ControllerFamilyUnknown, TavlenPtProviderTestAccess::ControllerFamily(*m_object));
    EXPECT_EQ(E_FAIL, CodeOf([&] { static_cast<void>(m_object->GetProductData()); }));
    EXPECT_EQ(E_FAIL, CodeOf([&] { static_cast<void>(m_object->GetProductStringLoader()); }));
    EXPECT_EQ(E_FAIL, CodeOf([&] { static_cast<void>(m_object->IsColorDevice()); }));
    EXPECT_EQ(&m_object->GetPageSizeDictionary(), &m_object->GetPageSizeDictionary());
    const ComPtr<IXMLDOMDocument2> ticket = LoadTestDocument("tickets/minimal.xml");
    const TestDevmode devmode;
    EXPECT_EQ(S_OK, m_provider->ConvertDevModeToPrintTicket(devmode.Size(), devmode.Get(), 0, nullptr, ticket.Get()));
}

} // namespace
