// The object and its binding to a printer. Document operations: tavlenptproviderconversions.cpp. Model state:
// tavlenptproviderdatamodel.cpp.
#include "complugins/ptpcprovider/tavlenptprovider.h"

#include <objbase.h>

#include <tvutil/printdriver.h>

#include <memory>
#include <new>

#include "complugins/ptpcprovider/failureguard.h"
#include "complugins/ptpcprovider/printschemanamespaces.h"

namespace
{

constexpr WCHAR kSourceFile[] = W("complugins\\ptpcprovider\\tavlenptprovider");
constexpr ThrowSite kBindPrinter{W("TavlenPtProvider::BindPrinter"), kSourceFile};
constexpr ThrowSite kPublishHelper{W("TavlenPtProvider::PublishPrintTicketHelperInterface"), kSourceFile};

constexpr INT kSupportedVersion = 1;

// Capability numbers are masks over the printer model's capability word.
constexpr ULONGLONG kDriverKindCapability = 1984; // 0x7C0
constexpr ULONGLONG kCoreFlagsCapability = 15;    // 0xF

constexpr ULONGLONG kPostScriptFlag = 0x200; // bit 9 of the driver capability flags
// Bit 10 of the driver capability flags: the private namespace and what depends on it.
constexpr ULONGLONG kPrivateNamespaceFlag = 0x400;

std::atomic<LONG> g_moduleObjectCount{0};

} // namespace

TavlenPtProvider::TavlenPtProvider()
{
    ++g_moduleObjectCount;
}

// The members end in the reverse of their order; only the helper, which belongs to the service, has to go before them.
TavlenPtProvider::~TavlenPtProvider()
{
    m_printCoreHelper.Reset();
}

LONG TavlenPtProvider::GetModuleObjectCount() noexcept
{
    return g_moduleObjectCount;
}

HRESULT STDMETHODCALLTYPE TavlenPtProvider::QueryInterface(REFIID riid, void** object)
{
    if (!IsEqualIID(riid, IID_IUnknown) && !IsEqualIID(riid, IID_IPrintOemPrintTicketProvider))
    {
        *object = nullptr;
        return E_NOINTERFACE;
    }
    *object = static_cast<IPrintOemPrintTicketProvider*>(this);
    AddRef();
    return S_OK;
}

ULONG STDMETHODCALLTYPE TavlenPtProvider::AddRef()
{
    ++g_moduleObjectCount;
    return static_cast<ULONG>(++m_referenceCount);
}

ULONG STDMETHODCALLTYPE TavlenPtProvider::Release()
{
    --g_moduleObjectCount;
    const LONG count = --m_referenceCount;
    if (count == 0)
        const std::unique_ptr<TavlenPtProvider> last(this);
    return static_cast<ULONG>(count);
}

HRESULT STDMETHODCALLTYPE TavlenPtProvider::GetSupportedVersions(HANDLE /*printer*/, INT** versions, INT* versionCount)
{
    if (versions == nullptr || versionCount == nullptr)
        return E_INVALIDARG;
    *versions = static_cast<INT*>(CoTaskMemAlloc(sizeof(INT)));
    if (*versions == nullptr)
    {
        *versionCount = 0;
        return E_OUTOFMEMORY;
    }
    *versionCount = 1;
    **versions = kSupportedVersion;
    return S_OK;
}

HRESULT STDMETHODCALLTYPE TavlenPtProvider::BindPrinter(HANDLE printer, INT version, POEMPTOPTS options,
                                                        INT* namespaceCount, BSTR** namespaces)
{
    return RunGuarded(
        kBindPrinter, [&] { return Bind(printer, version, options, namespaceCount, namespaces); }, E_OUTOFMEMORY);
}

HRESULT TavlenPtProvider::Bind(HANDLE printer, INT version, POEMPTOPTS options, INT* namespaceCount, BSTR** namespaces)
{
    if (options == nullptr || namespaceCount == nullptr || namespaces == nullptr || printer == nullptr)
        return E_INVALIDARG;
    *namespaceCount = 0;
    *namespaces = nullptr;
    if (version != kSupportedVersion)
        return E_VERSION_NOT_SUPPORTED;

    m_dataModelInUse = false; // by every binding, also one that fails further on

    // Both are read before anything is kept: a printer whose data cannot be read leaves the former binding's words.
    const PrintDriver driver;
    const ULONGLONG driverKind = driver.GetDriverCapability(printer, kDriverKindCapability);
    const ULONGLONG coreFlags = driver.GetDriverCapability(printer, kCoreFlagsCapability);
    m_printerHandle = printer;
    m_printer.SetPrinterHandle(printer, false);
    m_driverCapabilityFlags = driverKind;
    m_secondDriverCapability = coreFlags;

    OSVERSIONINFOW system = {};
    system.dwOSVersionInfoSize = sizeof(system);
    if (GetVersionExW(&system))
    {
        m_osMajorVersion = system.dwMajorVersion;
        m_osMinorVersion = system.dwMinorVersion;
    }

    // A printer without a workflow module is bound all the same: only what asks for its product fails later.
    if (m_workflow.Load(printer))
        m_controllerFamily = m_workflow.GetProductDataObj().GetControllerFamily();

    *options = OEMPT_DEFAULT;
    return PrivateNamespaceIsEnabled() ? PublishPrivateNamespace(namespaceCount, namespaces) : S_OK;
}

// Out of memory leaves the count at 1, on purpose: the service frees what it finds in the array.
HRESULT TavlenPtProvider::PublishPrivateNamespace(INT* namespaceCount, BSTR** namespaces) const noexcept
{
    *namespaceCount = 1;
    *namespaces = static_cast<BSTR*>(CoTaskMemAlloc(sizeof(BSTR)));
    if (*namespaces == nullptr)
        return E_OUTOFMEMORY;
    **namespaces = SysAllocString(PrintSchema::kPrivateKeywordsUri);
    return **namespaces != nullptr ? S_OK : E_OUTOFMEMORY;
}

bool TavlenPtProvider::PrivateNamespaceIsEnabled() const noexcept
{
    return (m_driverCapabilityFlags & kPrivateNamespaceFlag) != 0;
}

bool TavlenPtProvider::IsPostScriptDriver() const noexcept
{
    return (m_driverCapabilityFlags & kPostScriptFlag) != 0;
}

HRESULT STDMETHODCALLTYPE TavlenPtProvider::PublishPrintTicketHelperInterface(IUnknown* helper)
{
    return RunGuarded(
        kPublishHelper, [&] { return KeepHelper(helper); }, E_OUTOFMEMORY);
}

HRESULT TavlenPtProvider::KeepHelper(IUnknown* helper)
{
    if (helper == nullptr)
        return E_INVALIDARG;
    if (m_printCoreHelper) // the first one stays
        return S_OK;
    // What a failing query leaves in its output is not a reference.
    void* found = nullptr;
    const HRESULT result = helper->QueryInterface(IID_IPrintCoreHelper, &found);
    if (SUCCEEDED(result))
        m_printCoreHelper.Attach(static_cast<IPrintCoreHelper*>(found));
    return result == E_NOINTERFACE ? S_OK : result; // the service's helper is optional
}

HRESULT STDMETHODCALLTYPE TavlenPtProvider::QueryDeviceDefaultNamespace(BSTR* namespaceUri)
{
    if (namespaceUri == nullptr)
        return E_INVALIDARG;
    if (!PrivateNamespaceIsEnabled())
        return E_NOTIMPL;
    *namespaceUri = SysAllocString(PrintSchema::kPrivateKeywordsUri);
    return *namespaceUri != nullptr ? S_OK : E_OUTOFMEMORY;
}

HRESULT CreateTavlenPtProvider(IPrintOemPrintTicketProvider** provider) noexcept
try
{
    if (provider == nullptr)
        return E_POINTER;
    *provider = nullptr;
    *provider = std::make_unique<TavlenPtProvider>().release(); // its one reference is the caller's
    return S_OK;
}
catch (const std::bad_alloc&)
{
    return E_OUTOFMEMORY;
}
catch (...)
{
    return E_FAIL;
}
