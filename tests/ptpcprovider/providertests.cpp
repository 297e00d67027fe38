// The provider object: references, versions, binding, the helper, the private namespace.
#include <gtest/gtest.h>

#include <cstddef>
#include <cstring>

#include "complugins/ptpcprovider/printschemanamespaces.h"
#include "complugins/ptpcprovider/tavlenptprovider.h"
#include "corehelper.h"
#include "tests/common/testdocuments.h"
#include "tests/common/testprinter.h"
#include "tests/ptpcprovider/provideraccess.h"
#include "utilitiesstaticlib/ccombstr.h"
#include "utilitiesstaticlib/cotaskmemptr.h"

namespace
{

using Access = TavlenPtProviderTestAccess;

class Provider : public testing::Test
{
protected:
    Provider()
    {
        EXPECT_EQ(S_OK, CreateTavlenPtProvider(m_interface.Put()));
        m_object = static_cast<TavlenPtProvider*>(m_interface.Get());
    }

    struct Binding
    {
        HRESULT result = E_UNEXPECTED;
        OEMPTOPTS options = OEMPT_NOSNAPSHOT;
        INT namespaceCount = 77;
        CoTaskMemPtr<BSTR> namespaces;
        CComBSTR uri;
    };

    Binding Bind(HANDLE printer, INT version = 1)
    {
        Binding binding;
        BSTR untouched = nullptr;
        BSTR* namespaces = &untouched;
        binding.result =
            m_interface->BindPrinter(printer, version, &binding.options, &binding.namespaceCount, &namespaces);
        EXPECT_NE(&untouched, namespaces); // cleared first
        if (namespaces != &untouched)
            binding.namespaces.reset(namespaces);
        if (binding.namespaces && binding.namespaceCount == 1)
            binding.uri.Attach(*binding.namespaces);
        return binding;
    }

    ComPtr<IPrintOemPrintTicketProvider> m_interface;
    TavlenPtProvider* m_object = nullptr;
};

TEST_F(Provider, CountsReferencesOfTheObjectAndOfTheProcess)
{
    const LONG processCount = TavlenPtProvider::GetModuleObjectCount();
    EXPECT_EQ(2u, m_interface->AddRef());
    EXPECT_EQ(processCount + 1, TavlenPtProvider::GetModuleObjectCount());
    EXPECT_EQ(1u, m_interface->Release());
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

TEST_F(Provider, AnswersForItsTwoInterfacesOnly)
{
    for (const IID& id : {IID_IUnknown, IID_IPrintOemPrintTicketProvider})
    {
        ComPtr<IUnknown> face;
        EXPECT_EQ(S_OK, m_interface->QueryInterface(id, face.PutVoid()));
        EXPECT_EQ(static_cast<IUnknown*>(m_interface.Get()), face.Get());
    }
    void* nothing = this;
    EXPECT_EQ(E_NOINTERFACE, m_interface->QueryInterface(IID_IPrintCoreHelper, &nothing));
    EXPECT_EQ(nullptr, nothing);
    EXPECT_EQ(E_POINTER, CreateTavlenPtProvider(nullptr));
}

// The service calls by place: the slots of the published interface, counted from IUnknown's first.
TEST_F(Provider, HasItsOperationsInThePublishedSlots)
{
    constexpr std::size_t kGetSupportedVersions = 3;
    constexpr std::size_t kQueryDeviceDefaultNamespace = 6;
    constexpr std::size_t kValidatePrintTicket = 11;
    const IID publishedId{0xBCF5E011, 0xF60A, 0x49FF, {0xAB, 0x2F, 0xE0, 0x6F, 0x4A, 0xBD, 0xF2, 0x81}};
    ComPtr<IPrintOemPrintTicketProvider> provider;
    ASSERT_EQ(S_OK, m_interface->QueryInterface(publishedId, provider.PutVoid()));

    IPrintOemPrintTicketProvider* const object = provider.Get();
    void** slots = nullptr;
    // NOLINTNEXTLINE(bugprone-undefined-memory-manipulation): the slots are what is looked at
    std::memcpy(&slots, static_cast<const void*>(object), sizeof(slots));
    using TakesPointer = HRESULT(STDMETHODCALLTYPE*)(void*, void*);
    using TakesThree = HRESULT(STDMETHODCALLTYPE*)(void*, void*, void*, void*);
    INT* versions = nullptr;
    INT count = 0;
    EXPECT_EQ(S_OK, reinterpret_cast<TakesThree>(slots[kGetSupportedVersions])(object, nullptr, &versions, &count));
    const CoTaskMemPtr<INT> owner(versions);
    EXPECT_EQ(1, count);
    BSTR uri = nullptr;
    EXPECT_EQ(E_NOTIMPL, reinterpret_cast<TakesPointer>(slots[kQueryDeviceDefaultNamespace])(object, &uri));
    const ComPtr<IXMLDOMDocument2> ticket = LoadDocument(TicketAround(""));
    EXPECT_EQ(S_OK, reinterpret_cast<TakesPointer>(slots[kValidatePrintTicket])(object, ticket.Get()));
}

TEST_F(Provider, SupportsVersionOne)
{
    INT* versions = nullptr;
    INT count = 0;
    EXPECT_EQ(S_OK, m_interface->GetSupportedVersions(nullptr, &versions, &count));
    const CoTaskMemPtr<INT> owner(versions);
    ASSERT_EQ(1, count);
    EXPECT_EQ(1, *versions);
    EXPECT_EQ(E_INVALIDARG, m_interface->GetSupportedVersions(nullptr, nullptr, &count));
    EXPECT_EQ(E_INVALIDARG, m_interface->GetSupportedVersions(nullptr, &versions, nullptr));
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
        const Binding binding = Bind(printer.Handle());
        EXPECT_EQ(S_OK, binding.result);
        EXPECT_EQ(OEMPT_DEFAULT, binding.options);
        EXPECT_EQ(test.namespaces, binding.namespaceCount);
        EXPECT_EQ(test.namespaces == 1, binding.namespaces != nullptr);
        EXPECT_EQ(test.capabilities, Access::Capabilities(*m_object));
        EXPECT_EQ(10u, Access::OsMajorVersion(*m_object));

        CComBSTR uri;
        EXPECT_EQ(test.namespaces == 1 ? S_OK : E_NOTIMPL, m_interface->QueryDeviceDefaultNamespace(uri.Put()));
        EXPECT_EQ(Utf8(binding.uri.View()), Utf8(uri.View()));
        EXPECT_EQ(test.namespaces == 1 ? Utf8(PrintSchema::kPrivateKeywordsUri) : "", Utf8(uri.View()));
    }
    EXPECT_EQ(E_INVALIDARG, m_interface->QueryDeviceDefaultNamespace(nullptr));
}

TEST_F(Provider, RefusesBadBindings)
{
    const TestPrinter printer(0xE02);
    OEMPTOPTS options = OEMPT_DEFAULT;
    INT count = 77;
    BSTR* namespaces = nullptr;
    EXPECT_EQ(E_INVALIDARG, m_interface->BindPrinter(nullptr, 1, &options, &count, &namespaces));
    EXPECT_EQ(E_INVALIDARG, m_interface->BindPrinter(printer.Handle(), 1, nullptr, &count, &namespaces));
    EXPECT_EQ(E_INVALIDARG, m_interface->BindPrinter(printer.Handle(), 1, &options, nullptr, &namespaces));
    EXPECT_EQ(E_INVALIDARG, m_interface->BindPrinter(printer.Handle(), 1, &options, &count, nullptr));
    EXPECT_EQ(77, count);

    const Binding version2 = Bind(printer.Handle(), 2);
    EXPECT_EQ(E_VERSION_NOT_SUPPORTED, version2.result);
    EXPECT_EQ(0, version2.namespaceCount); // the outputs are cleared first
    EXPECT_EQ(nullptr, version2.namespaces);
    EXPECT_EQ(static_cast<HRESULT>(0x80040001u), version2.result);
}

TEST_F(Provider, DoesNotBindToAPrinterThatOurSetUpDidNotInstall)
{
    const TestPrinter foreign(std::nullopt);
    EXPECT_EQ(E_FAIL, Bind(foreign.Handle()).result);
    HANDLE const noPrinter = this;
    EXPECT_EQ(E_FAIL, Bind(noPrinter).result);
    EXPECT_EQ(0u, Access::Capabilities(*m_object));
}

TEST_F(Provider, ClearsTheDataModelFlagAtEveryBinding)
{
    const TestPrinter printer(0xE02);
    EXPECT_FALSE(Access::DataModelIsInUse(*m_object));
    Access::UseDataModel(*m_object);
    EXPECT_EQ(S_OK, Bind(printer.Handle()).result);
    EXPECT_FALSE(Access::DataModelIsInUse(*m_object));

    // A binding that fails clears it too, and keeps what the last one found.
    const ULONGLONG before = Access::Capabilities(*m_object);
    Access::UseDataModel(*m_object);
    HANDLE const noPrinter = this;
    EXPECT_EQ(E_FAIL, Bind(noPrinter).result);
    EXPECT_FALSE(Access::DataModelIsInUse(*m_object));
    EXPECT_EQ(before, Access::Capabilities(*m_object));
}

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

    ULONG References()
    {
        AddRef();
        return Release();
    }

private:
    HRESULT m_answer;
};

ComPtr<AnsweringHelper> MakeHelper(HRESULT answer)
{
    ComPtr<AnsweringHelper> helper;
    helper.Attach(new AnsweringHelper(answer));
    return helper;
}

TEST_F(Provider, KeepsTheFirstHelperUntilItEnds)
{
    const ComPtr<AnsweringHelper> none = MakeHelper(E_NOINTERFACE);
    const ComPtr<AnsweringHelper> broken = MakeHelper(E_FAIL);
    const ComPtr<AnsweringHelper> first = MakeHelper(S_OK);
    const ComPtr<AnsweringHelper> second = MakeHelper(S_OK);
    EXPECT_EQ(E_INVALIDARG, m_interface->PublishPrintTicketHelperInterface(nullptr));
    EXPECT_EQ(S_OK, m_interface->PublishPrintTicketHelperInterface(none.Get())); // optional
    EXPECT_EQ(E_FAIL, m_interface->PublishPrintTicketHelperInterface(broken.Get()));
    EXPECT_EQ(nullptr, Access::Helper(*m_object));
    EXPECT_EQ(S_OK, m_interface->PublishPrintTicketHelperInterface(first.Get()));
    EXPECT_EQ(S_OK, m_interface->PublishPrintTicketHelperInterface(second.Get()));
    EXPECT_EQ(first.Get(), Access::Helper(*m_object));
    EXPECT_EQ(2u, first->References());
    EXPECT_EQ(1u, second->References());
    m_interface.Reset();
    EXPECT_EQ(1u, first->References());
}

} // namespace
