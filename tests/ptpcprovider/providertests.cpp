// The provider object: references, versions, binding, the helper, the private namespace.
#include <gtest/gtest.h>

#include <tvutil/tavlenexception.h>

#include <string>

#include "complugins/ptpcprovider/printschemanamespaces.h"
#include "complugins/ptpcprovider/tavlenptprovider.h"
#include "corehelper.h"
#include "tests/common/testdevmode.h"
#include "tests/common/testdocuments.h"
#include "tests/common/testprinter.h"
#include "tests/ptpcprovider/provideraccess.h"
#include "utilitiesstaticlib/ccombstr.h"
#include "utilitiesstaticlib/cotaskmemptr.h"

namespace
{

using Access = TavlenPtProviderTestAccess;

constexpr const WCHAR* kWorkflowModule = W("tvwftu_B.dll");

// A helper as the service's, or one that answers every query with a failure and leaves rubbish in its output.
class AnsweringHelper final : public CoreHelper
{
public:
    explicit AnsweringHelper(HRESULT answer) : CoreHelper(PrinterModel()), m_answer(answer)
    {
    }
    ~AnsweringHelper() override = default;

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID riid, void** object) override
    {
        // By its published text, not by our header's constant.
        constexpr IID kPrintCoreHelper{0xA89EC53E, 0x3905, 0x49C6, {0x9C, 0x1A, 0xC0, 0xA8, 0x81, 0x17, 0xFD, 0xB6}};
        *object = this;
        if (m_answer != S_OK)
            return m_answer;
        return IsEqualIID(riid, kPrintCoreHelper) ? CoreHelper::QueryInterface(riid, object) : E_NOINTERFACE;
    }

    ULONG STDMETHODCALLTYPE Release() override
    {
        hadModuleAtTheEnd = GetModuleHandleW(kWorkflowModule) != nullptr;
        return CoreHelper::Release();
    }

    ULONG References()
    {
        AddRef();
        return Release();
    }

    bool hadModuleAtTheEnd = false; // whether the printer's workflow module was still loaded at the last Release

private:
    HRESULT m_answer;
};

ComPtr<AnsweringHelper> MakeHelper(HRESULT answer)
{
    ComPtr<AnsweringHelper> helper;
    helper.Attach(new AnsweringHelper(answer));
    return helper;
}

class Provider : public testing::Test, protected ProviderBinding
{
};

TEST_F(Provider, CountsReferencesOfTheObjectAndOfTheProcess)
{
    const LONG processCount = TavlenPtProvider::GetModuleObjectCount();
    provider->AddRef();
    EXPECT_EQ(processCount + 1, TavlenPtProvider::GetModuleObjectCount());
    EXPECT_EQ(1u, provider->Release());
    EXPECT_EQ(processCount, TavlenPtProvider::GetModuleObjectCount());

    // An object's whole life leaves the constructor's one behind less the last Release: nothing, and no more.
    IPrintOemPrintTicketProvider* other = nullptr;
    ASSERT_EQ(S_OK, CreateTavlenPtProvider(&other));
    EXPECT_EQ(processCount + 1, TavlenPtProvider::GetModuleObjectCount());
    EXPECT_EQ(0u, other->Release());
    EXPECT_EQ(processCount, TavlenPtProvider::GetModuleObjectCount());

    // An object that ends without Release, as a member or a local, keeps its one: the destructor takes nothing back.
    {
        const TavlenPtProvider local;
    }
    EXPECT_EQ(processCount + 1, TavlenPtProvider::GetModuleObjectCount());
}

TEST_F(Provider, AnswersForNoOtherInterface)
{
    void* nothing = this;
    EXPECT_EQ(E_NOINTERFACE, provider->QueryInterface(IID_IPrintCoreHelper, &nothing));
    EXPECT_EQ(nullptr, nothing);
    EXPECT_EQ(E_POINTER, CreateTavlenPtProvider(nullptr));
}

// The published interface as the service calls it: by place.
struct PublishedSlots
{
    HRESULT(STDMETHODCALLTYPE* queryInterface)(void*, REFIID, void**);
    ULONG(STDMETHODCALLTYPE* addRef)(void*);
    ULONG(STDMETHODCALLTYPE* release)(void*);
    HRESULT(STDMETHODCALLTYPE* getSupportedVersions)(void*, HANDLE, INT**, INT*);
    HRESULT(STDMETHODCALLTYPE* bindPrinter)(void*, HANDLE, INT, POEMPTOPTS, INT*, BSTR**);
    HRESULT(STDMETHODCALLTYPE* publishPrintTicketHelperInterface)(void*, IUnknown*);
    HRESULT(STDMETHODCALLTYPE* queryDeviceDefaultNamespace)(void*, BSTR*);
    HRESULT(STDMETHODCALLTYPE* convertPrintTicketToDevMode)(void*, IXMLDOMDocument2*, ULONG, DEVMODEW*, ULONG, PVOID);
    HRESULT(STDMETHODCALLTYPE* convertDevModeToPrintTicket)(void*, ULONG, DEVMODEW*, ULONG, PVOID, IXMLDOMDocument2*);
    HRESULT(STDMETHODCALLTYPE* completePrintCapabilities)(void*, IXMLDOMDocument2*, IXMLDOMDocument2*);
    HRESULT(STDMETHODCALLTYPE* expandIntentOptions)(void*, IXMLDOMDocument2*);
    HRESULT(STDMETHODCALLTYPE* validatePrintTicket)(void*, IXMLDOMDocument2*);
};

TEST_F(Provider, HasItsOperationsInThePublishedSlots)
{
    const IID publishedId{0xBCF5E011, 0xF60A, 0x49FF, {0xAB, 0x2F, 0xE0, 0x6F, 0x4A, 0xBD, 0xF2, 0x81}};
    ComPtr<IUnknown> face;
    ASSERT_EQ(S_OK, provider->QueryInterface(publishedId, face.PutVoid()));
    void* const called = face.Get();
    const auto* const slots = *static_cast<const PublishedSlots* const*>(called);

    void* unknown = nullptr;
    EXPECT_EQ(S_OK, slots->queryInterface(called, IID_IUnknown, &unknown));
    EXPECT_EQ(called, unknown);
    EXPECT_EQ(4u, slots->addRef(called));
    EXPECT_EQ(3u, slots->release(called));
    EXPECT_EQ(2u, slots->release(called));

    INT* versions = nullptr;
    INT count = 0;
    EXPECT_EQ(E_INVALIDARG, slots->getSupportedVersions(called, nullptr, nullptr, &count));
    EXPECT_EQ(E_INVALIDARG, slots->getSupportedVersions(called, nullptr, &versions, nullptr));
    ASSERT_EQ(S_OK, slots->getSupportedVersions(called, nullptr, &versions, &count));
    const CoTaskMemPtr<INT> owner(versions);
    ASSERT_EQ(1, count);
    EXPECT_EQ(1, *versions);
    BSTR* array = nullptr;
    EXPECT_EQ(E_VERSION_NOT_SUPPORTED, slots->bindPrinter(called, this, 2, &options, &count, &array));
    const ComPtr<AnsweringHelper> none = MakeHelper(E_NOINTERFACE);
    EXPECT_EQ(S_OK, slots->publishPrintTicketHelperInterface(called, none.Get())) << "the helper is optional";
    BSTR text = nullptr;
    EXPECT_EQ(E_NOTIMPL, slots->queryDeviceDefaultNamespace(called, &text));

    // The document operations are told apart by the place in their reports of a document that is no ticket.
    static std::string reporter;
    const TavlenException::Sink previous = TavlenException::SetReportSink(
        {[](const TavlenException::Report& report, void*)
         {
             EXPECT_EQ("complugins\\ptpcprovider\\tavlenptprovider", Utf8(report.site.file));
             reporter = Utf8(report.site.method) + ":" + std::to_string(report.site.line);
         },
         nullptr});
    const ComPtr<IXMLDOMDocument2> foreign = LoadDocument(W("<foreign/>"));
    const TestDevmode devmode;
    const auto reporterOf = [](HRESULT result)
    {
        return result == E_FAIL ? reporter : std::to_string(result);
    };
    EXPECT_EQ("TavlenPtProvider::ConvertPrintTicketToDevMode:867",
              reporterOf(slots->convertPrintTicketToDevMode(called, foreign.Get(), devmode.Size(), devmode.Get(), 0,
                                                            nullptr)));
    EXPECT_EQ("TavlenPtProvider::ConvertDevModeToPrintTicket:1033",
              reporterOf(slots->convertDevModeToPrintTicket(called, devmode.Size(), devmode.Get(), 0, nullptr,
                                                            foreign.Get())));
    EXPECT_EQ("TavlenPtProvider::CompletePrintCapabilities:1205",
              reporterOf(slots->completePrintCapabilities(called, nullptr, foreign.Get())));
    EXPECT_EQ("TavlenPtProvider::ExpandIntentOptions:1289",
              reporterOf(slots->expandIntentOptions(called, foreign.Get())));
    EXPECT_EQ("TavlenPtProvider::ValidatePrintTicket:1392",
              reporterOf(slots->validatePrintTicket(called, foreign.Get())));
    TavlenException::SetReportSink(previous);
}

TEST_F(Provider, PublishesThePrivateNamespaceWhereBitTenIsSet)
{
    struct Case
    {
        ULONGLONG word;
        INT namespaces;
        ULONGLONG capabilities; // as read: the driver kind, then the core flags
    };
    constexpr Case kCases[] = {
        {0xE02, 1, 0x600'0002},
        {0x888, 0, 0x080'0008},
        {0xC08, 1, 0x400'0008},
        {0x1404, 1, 0x400'0004},
        {0, 0, 0},
        {0xFFFFFFFF'FFFFFBFF, 0, 0x3C0'000F},
    };
    for (const Case& test : kCases)
    {
        SCOPED_TRACE(test.word);
        const TestPrinter printer(test.word);
        EXPECT_EQ(S_OK, BindTo(printer.Handle()));
        EXPECT_EQ(OEMPT_DEFAULT, options);
        EXPECT_EQ(test.namespaces, namespaceCount);
        EXPECT_EQ(test.namespaces == 1, hasNamespaces);
        EXPECT_EQ(test.capabilities, Access::Capabilities(*object));
        EXPECT_EQ(10u, Access::OsMajorVersion(*object));

        CComBSTR asked;
        EXPECT_EQ(test.namespaces == 1 ? S_OK : E_NOTIMPL, provider->QueryDeviceDefaultNamespace(asked.Put()));
        for (const CComBSTR& found : {uri, asked})
            EXPECT_EQ(test.namespaces == 1 ? Utf8(PrintSchema::kPrivateKeywordsUri) : "", Utf8(found.View()));
    }
    EXPECT_EQ(E_INVALIDARG, provider->QueryDeviceDefaultNamespace(nullptr));
}

TEST_F(Provider, RefusesBadBindings)
{
    const TestPrinter printer(0xE02);
    INT count = 77;
    BSTR* namespaces = nullptr;
    EXPECT_EQ(E_INVALIDARG, provider->BindPrinter(nullptr, 1, &options, &count, &namespaces));
    EXPECT_EQ(E_INVALIDARG, provider->BindPrinter(printer.Handle(), 1, nullptr, &count, &namespaces));
    EXPECT_EQ(E_INVALIDARG, provider->BindPrinter(printer.Handle(), 1, &options, nullptr, &namespaces));
    EXPECT_EQ(E_INVALIDARG, provider->BindPrinter(printer.Handle(), 1, &options, &count, nullptr));
    EXPECT_EQ(77, count);

    EXPECT_EQ(static_cast<HRESULT>(0x80040001u), BindTo(printer.Handle(), 2));
    EXPECT_EQ(0, namespaceCount) << "the outputs are cleared first";
    EXPECT_FALSE(hasNamespaces);
}

TEST_F(Provider, ClearsTheDataModelFlagAtEveryBindingAlsoOneThatFails)
{
    {
        const TestPrinter foreign(std::nullopt);
        EXPECT_EQ(E_FAIL, BindTo(foreign.Handle())) << "our set-up did not install it";
        EXPECT_EQ(0u, Access::Capabilities(*object));
    }
    const TestPrinter printer(0xE02);
    HANDLE const noPrinter = this;
    for (HANDLE const handle : {printer.Handle(), noPrinter})
    {
        Access::UseDataModel(*object);
        EXPECT_EQ(handle == noPrinter ? E_FAIL : S_OK, BindTo(handle));
        EXPECT_FALSE(Access::DataModelIsInUse(*object));
        EXPECT_EQ(0x600'0002u, Access::Capabilities(*object)) << "those of the last printer that was bound";
    }
}

// What the helper does at its end may still ask the workflow module: the provider keeps it loaded until then.
TEST_F(Provider, KeepsTheFirstHelperUntilItEnds)
{
    const TestPrinter printer({0xE02, "tavlen-c9070-ps.json", {"tvwftu_b.dll"}});
    ASSERT_EQ(S_OK, BindTo(printer.Handle()));
    const ComPtr<AnsweringHelper> none = MakeHelper(E_NOINTERFACE);
    const ComPtr<AnsweringHelper> broken = MakeHelper(E_FAIL);
    const ComPtr<AnsweringHelper> first = MakeHelper(S_OK);
    const ComPtr<AnsweringHelper> second = MakeHelper(S_OK);
    EXPECT_EQ(E_INVALIDARG, provider->PublishPrintTicketHelperInterface(nullptr));
    EXPECT_EQ(S_OK, provider->PublishPrintTicketHelperInterface(none.Get())); // optional
    EXPECT_EQ(E_FAIL, provider->PublishPrintTicketHelperInterface(broken.Get()));
    EXPECT_EQ(nullptr, Access::Helper(*object));
    EXPECT_EQ(S_OK, provider->PublishPrintTicketHelperInterface(first.Get()));
    EXPECT_EQ(S_OK, provider->PublishPrintTicketHelperInterface(second.Get()));
    EXPECT_EQ(first.Get(), Access::Helper(*object));
    EXPECT_EQ(2u, first->References());
    EXPECT_EQ(1u, second->References());
    provider.Reset();
    EXPECT_TRUE(first->hadModuleAtTheEnd);
    EXPECT_EQ(1u, first->References());
    EXPECT_EQ(nullptr, GetModuleHandleW(kWorkflowModule));
}

} // namespace
