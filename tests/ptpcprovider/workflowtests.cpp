// The workflow module: how it is found, remembered and loaded; what the provider answers with and without one.

#include <tvcore/productdata.h>
#include <tvutil/printer.h>
#include <tvutil/textresourceloader.h>

#include <new>
#include <optional>
#include <stdexcept>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "complugins/workflowobject.h"
#include "tests/common/failurecode.h"
#include "tests/common/testdevmode.h"
#include "tests/common/testdocuments.h"
#include "tests/common/testprinter.h"
#include "tests/common/thrownby.h"
#include "tests/ptpcprovider/provideraccess.h"

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

const std::tuple<const char*, std::vector<std::string>, std::optional<DWORD>, bool> kDetectionCases[] = {
    {"the reference module", {"tvwftu_b.dll"}, 1, true},
    {"the first of several", {"tvwfuv_b.dll", "tvwfwu_b.dll", "tvwftu_b.dll"}, 1, true},
    {"a module without an object", {"tvwfwu_b.dll"}, 2, false},
    {"a module that is not there", {"tvwfuv_b.dll"}, 3, false},
    {"none of the three: nothing is stored", {"tvother_b.dll"}, std::nullopt, false},
    {"the list is searched as it is returned", {"TVWFTU_B.DLL"}, std::nullopt, false},
};

TEST(Workflow, FindsTheDriversModuleAndRemembersIt)
{
    for (const auto& [name, files, stored, loads] : kDetectionCases)
    {
        SCOPED_TRACE(name);
        const TestPrinter printer(ColorPrinter(files));
        for (int again = 0; again < 2; ++again) // the second time from the printer's data
        {
            WorkflowObject workflow;
            EXPECT_EQ(loads, workflow.Load(printer.Handle()));
            EXPECT_EQ(loads, workflow.IsLoaded());
            EXPECT_EQ(stored, StoredKind(printer));
            EXPECT_EQ(nullptr, GetModuleHandleW(W("tvwfwu_B.dll"))) << "what gives no object is not kept";
        }
    }
}

TEST(Workflow, DoesNotTakeAModuleWithoutMemoryForOneWithoutAnObject)
{
    const TestPrinter printer(ColorPrinter({"tvwfwu_b.dll"}));
    WorkflowObject workflow;
    SetEnvironmentVariableW(W("TVPT_TEST_NO_MEMORY"), W("1"));
    EXPECT_THROW(workflow.Load(printer.Handle()), std::bad_alloc);
    SetEnvironmentVariableW(W("TVPT_TEST_NO_MEMORY"), nullptr);
    EXPECT_FALSE(workflow.Load(printer.Handle()));
}

// What is said about the others is in workflowtracetests.cpp.
TEST(Workflow, BelievesTheStoredKindAndLeavesItAlone)
{
    const std::tuple<DWORD, std::vector<BYTE>, bool> cases[] = {
        {REG_DWORD, {1, 0, 0, 0}, true},
        {REG_DWORD, {77, 0, 0, 0}, false}, // nobody knows it
        {REG_BINARY, {1, 0, 0, 0}, false},
    };
    for (const auto& [type, bytes, loads] : cases)
    {
        const TestPrinter printer(ColorPrinter({"tvwftu_b.dll"}));
        const Printer spooled(printer.Handle());
        spooled.SetPrinterDataW(kValueName, type, bytes.data(), static_cast<DWORD>(bytes.size()));
        WorkflowObject workflow;
        EXPECT_EQ(loads, workflow.Load(printer.Handle())) << type;
        DWORD typeNow = REG_NONE;
        ByteBuffer data;
        EXPECT_TRUE(spooled.GetPrinterDataW(kValueName, typeNow, data));
        EXPECT_EQ(type, typeNow);
        EXPECT_EQ(ByteBuffer(bytes.data(), bytes.size()), data);
    }
}

TEST(Workflow, CannotBeAskedBeforeItIsLoaded)
{
    WorkflowObject workflow;
    const auto expectRefusal = [](const std::string& name, const std::function<void()>& ask)
    {
        const std::string place = "ExceptionWorkflowObjectNotInitialized WorkflowObject::" + name + " ";
        std::string file;
        EXPECT_EQ(place, ThrownBy(ask, &file).substr(0, place.size()));
        EXPECT_EQ("complugins\\workflowobject", file);
    };
    expectRefusal("GetProductDataObj", [&] { static_cast<void>(workflow.GetProductDataObj()); });
    expectRefusal("SetDataSourceProviderPtr", [&] { workflow.SetDataSourceProviderPtr(nullptr, nullptr, 3); });
    expectRefusal("UpdateRegistryWithDataModelData", [&] { workflow.UpdateRegistryWithDataModelData(); });
    expectRefusal("UpdatePublicAndPrivateDevmodeWithDataModelData",
                  [&] { workflow.UpdatePublicAndPrivateDevmodeWithDataModelData(); });
    expectRefusal("LoadSettingsInitializeDataModelAndWriteDevmode",
                  [&] { workflow.LoadSettingsInitializeDataModelAndWriteDevmode(nullptr); });
    expectRefusal("ReInitializeAssociatedXDevmodeObj", [&] { workflow.ReInitializeAssociatedXDevmodeObj(); });
    expectRefusal("GetWorkFlowType", [&] { static_cast<void>(workflow.GetWorkFlowType()); });
    EXPECT_FALSE(workflow.Load(nullptr)); // a printer that cannot be asked has none
}

TEST(Workflow, SwallowsWhatAModuleThrowsWhenItTakesItsObjectBack)
{
    const WorkflowObjectRelease release{[](WorkflowModuleObject*)
                                        {
                                            throw std::logic_error("not mine");
                                        }};
    EXPECT_NO_THROW(release(nullptr));
}

class BoundProvider : public testing::Test, protected ProviderBinding
{
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
    EXPECT_THROW(static_cast<void>(workflow.GetWorkFlowType()), ExceptionWorkflowObjectNotInitialized);
}

TEST_F(BoundProvider, AnswersForItsProduct)
{
    const TestPrinter printer(ColorPrinter({"tvwftu_b.dll"}));
    ASSERT_EQ(S_OK, BindTo(printer.Handle()));
    EXPECT_EQ(ProductData::ControllerFamilyColor, TavlenPtProviderTestAccess::ControllerFamily(*object));
    EXPECT_EQ(ProductData::ControllerFamilyColor, object->GetProductData().GetControllerFamily());
    EXPECT_TRUE(object->IsColorDevice());
    // A new loader at every call: both exist at the moment of the second, so their addresses differ.
    const ProductStringLoader* const first = &object->GetProductStringLoader();
    EXPECT_NE(first, &object->GetProductStringLoader());
    const CXString text = object->GetProductStringLoader().LoadStringW(418);
    EXPECT_FALSE(text.IsEmpty());
    EXPECT_EQ(ProductData::ControllerFamilyColor, object->GetProductStringLoader().GetControllerFamily());

    // Bound again, the first product data stays, and its texts with it: those of the printer's name are not asked.
    ASSERT_EQ(S_OK, BindTo(printer.Handle()));
    PrinterModel exchanged;
    exchanged.productStrings = {{418, CXString(W("another product's"))}};
    const ProductData newer(std::move(exchanged), Printer(printer.Handle()).GetPrinterName());
    EXPECT_EQ(text.ToUtf8(), object->GetProductStringLoader().LoadStringW(418).ToUtf8());
    EXPECT_FALSE(TextResourceLoader::Initialize(printer.Handle(), true)); // forgotten: the name has no texts any more
    EXPECT_EQ(text.ToUtf8(), object->GetProductStringLoader().LoadStringW(418).ToUtf8());
    EXPECT_EQ(&object->GetPageSizeDictionary(), &object->GetPageSizeDictionary());

    EXPECT_EQ(&object->GetMSDeviceCapabilities(), &object->GetMSDeviceCapabilities());
}

TEST_F(BoundProvider, WithoutAWorkflowModuleFailsOnlyWhereItsProductIsAsked)
{
    std::optional<TestPrinter> printer(ColorPrinter({}));
    ASSERT_EQ(S_OK, BindTo(printer->Handle()));
    EXPECT_EQ(ProductData::ControllerFamilyUnknown, TavlenPtProviderTestAccess::ControllerFamily(*object));
    EXPECT_EQ("TavlenComException TavlenPtProvider::GetProductData 1641",
              ThrownBy([&] { static_cast<void>(object->GetProductData()); }));
    EXPECT_EQ("TavlenComException TavlenPtProvider::GetProductStringLoader 1621",
              ThrownBy([&] { static_cast<void>(object->GetProductStringLoader()); }));
    TavlenPtProviderTestAccess::UseDataModel(*object);
    for (const auto& [size, line] : {std::pair(WORD{219}, "1433"), {WORD{220}, "1443"}})
        EXPECT_EQ(std::string("TavlenComException TavlenPtProvider::InitializeOrReInitializeDataModel ") + line,
                  ThrownBy([&, wrong = size] { object->InitializeOrReInitializeDataModel(TestDevmode(wrong).Get()); }));
    ASSERT_EQ(S_OK, BindTo(printer->Handle())); // ends the data model's use
    EXPECT_EQ(E_FAIL, CodeOf([&] { static_cast<void>(object->IsColorDevice()); }));
    const ComPtr<IXMLDOMDocument2> ticket = LoadTestDocument("tickets/minimal.xml");
    const TestDevmode devmode;
    // A job ticket is the product's matter.
    EXPECT_EQ(E_FAIL, provider->ConvertDevModeToPrintTicket(devmode.Size(), devmode.Get(), 0, nullptr, ticket.Get()));
    printer.emplace(0x200);
    ASSERT_EQ(S_OK, BindTo(printer->Handle()));
    EXPECT_EQ(S_OK, provider->ConvertDevModeToPrintTicket(devmode.Size(), devmode.Get(), 0, nullptr, ticket.Get()));
}

TEST_F(BoundProvider, HasNoTextsOfAPrinterThatHasGone)
{
    {
        const TestPrinter printer(ColorPrinter({"tvwftu_b.dll"}));
        ASSERT_EQ(S_OK, BindTo(printer.Handle()));
    }
    EXPECT_THROW(static_cast<void>(object->GetProductStringLoader()), ExceptionPrinterFailure);
}

} // namespace
