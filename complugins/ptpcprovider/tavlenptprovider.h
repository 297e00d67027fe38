// TavlenPtProvider: the object that the Windows PrintTicket service loads for the driver.
//
// The driver's configuration layer constructs one object per printer binding; the service then asks for the supported
// versions, binds the printer, optionally publishes its helper and asks for the default namespace, converts any number
// of times, and releases the object. Nothing enforces that order: what comes before the binding runs with an unbound
// printer and default state, and a conversion, which needs the printer's forms, fails.
//
// Lifetime: born with one reference, which is the constructor's caller's; the last Release deletes the object. The
// printer handle is borrowed and must outlive the binding. Documents and devmodes are borrowed for one call.
//
// Threads: references are counted atomically; everything else serves one call at a time.
//
// Errors: E_INVALIDARG for bad arguments, E_FAIL for everything that fails inside, deliberately without its own code,
// after reporting it through TavlenException::DisplayExceptionMessage. The operations that take no document have codes
// of their own beside these, E_OUTOFMEMORY among them. What a failed conversion has already written stays.
#pragma once

#include <atomic>
#include <memory>

#include <tvcore/datasourceproviderwithdatasources.h>
#include <tvcore/pagesizedictionary.h>
#include <tvcore/productdata.h>
#include <tvcore/productstringloader.h>
#include <tvutil/bytebuffer.h>
#include <tvutil/printer.h>

#include "complugins/ptpcprovider/printschemanamespaces.h"
#include "complugins/workflowobject.h"
#include "interfaces/prcomoem.h"
#include "utilitiesstaticlib/comptr.h"

class AttributeBytesIndexedList;
class MsCachedDeviceCapabilities;
class PrintCapabilitiesXmlDocument;
class PrintTicketXmlDocument;
struct FormsInfoRecord;

class TVPTPC_API TavlenPtProvider : public IPrintOemPrintTicketProvider, public DataSourceProviderWithDataSources
{
public:
    TavlenPtProvider();
    ~TavlenPtProvider() override;

    // --- IUnknown
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID riid, void** object) override;
    ULONG STDMETHODCALLTYPE AddRef() override;
    ULONG STDMETHODCALLTYPE Release() override;

    // --- IPrintOemPrintTicketProvider: binding
    HRESULT STDMETHODCALLTYPE GetSupportedVersions(HANDLE printer, INT** versions, INT* versionCount) override;
    HRESULT STDMETHODCALLTYPE BindPrinter(HANDLE printer, INT version, POEMPTOPTS options, INT* namespaceCount,
                                          BSTR** namespaces) override;
    HRESULT STDMETHODCALLTYPE PublishPrintTicketHelperInterface(IUnknown* helper) override;
    HRESULT STDMETHODCALLTYPE QueryDeviceDefaultNamespace(BSTR* namespaceUri) override;

    // --- IPrintOemPrintTicketProvider: documents. The private part's size and pointer are not used.
    HRESULT STDMETHODCALLTYPE ConvertPrintTicketToDevMode(IXMLDOMDocument2* printTicket, ULONG devmodeSize,
                                                          DEVMODEW* devmode, ULONG privateSize,
                                                          PVOID privateDevmode) override;
    HRESULT STDMETHODCALLTYPE ConvertDevModeToPrintTicket(ULONG devmodeSize, DEVMODEW* devmode, ULONG privateSize,
                                                          PVOID privateDevmode, IXMLDOMDocument2* printTicket) override;
    HRESULT STDMETHODCALLTYPE CompletePrintCapabilities(IXMLDOMDocument2* printTicket,
                                                        IXMLDOMDocument2* printCapabilities) override;
    HRESULT STDMETHODCALLTYPE ExpandIntentOptions(IXMLDOMDocument2* printTicket) override;
    HRESULT STDMETHODCALLTYPE ValidatePrintTicket(IXMLDOMDocument2* printTicket) override;

    // --- DataSourceProviderWithDataSources: the model state
    FeatureServices* InitializeOrReInitializeDataModel(DEVMODEW* devmode) override;
    XDevmode& GetXDevmodeRef() override;
    FeatureServices* GetFeatureServicesPtr() override;
    ProductData& GetProductData() override;
    ProductStringLoader& GetProductStringLoader() override;
    PageSizeDictionary& GetPageSizeDictionary() override;
    bool IsColorDevice() override;

    // The process-wide count: one for each object constructed, and one for each reference since. Destruction does not
    // take the constructor's one back; the asymmetry is kept on purpose.
    static LONG GetModuleObjectCount() noexcept;

private:
    friend struct TavlenPtProviderTestAccess;

    // --- What two operations do within their guards.
    HRESULT Bind(HANDLE printer, INT version, POEMPTOPTS options, INT* namespaceCount, BSTR** namespaces);
    HRESULT KeepHelper(IUnknown* helper);

    HRESULT PublishPrivateNamespace(INT* namespaceCount, BSTR** namespaces) const noexcept;
    [[nodiscard]] bool PrivateNamespaceIsEnabled() const noexcept;
    [[nodiscard]] bool IsPostScriptDriver() const noexcept;

    // --- Translators: copies (miscfeaturesimpl). Their results are not looked at, only exceptions stop a conversion.
    HRESULT ConvertMiscFeaturesToDevmode(PrintTicketXmlDocument& ticket, DEVMODEW* devmode,
                                         AttributeBytesIndexedList* attributes, bool* changed);
    HRESULT ConvertDevmodeToMiscFeatures(PrintTicketXmlDocument& ticket, DEVMODEW* devmode);

    // --- Translators: page media size (pagemediasizeimpl, pagemediasizecapabilities) and imageable area
    // (imageablearea). Forms come from the cached capabilities; without a list of them it is as if it were empty.

    // Null outputs are E_POINTER. A form that the dictionary lacks leaves the name; one of no published type is E_FAIL.
    void GetMsPageMediaSizeOptionName(bool isCustom, const FormsInfoRecord& form, CXString* optionName,
                                      PrintSchema::MsPrintTicketNamespacesEnum* namespaceIndex);
    // True when the ticket gives no usable size and the default is taken.
    bool GetPrintTicketPaperSize(PrintTicketXmlDocument& ticket, MsCachedDeviceCapabilities& capabilities,
                                 FormsInfoRecord* form);
    // True when the devmode's paper agrees with no form. The devmode stays as it is.
    bool GetDevmodePaperSize(DEVMODEW* devmode, MsCachedDeviceCapabilities& capabilities, FormsInfoRecord* form);
    HRESULT ConvertPageMediaSizeToDevmode(PrintTicketXmlDocument& ticket, DEVMODEW* devmode,
                                          MsCachedDeviceCapabilities& capabilities);
    HRESULT ConvertDevmodeToPageMediaSize(PrintTicketXmlDocument& ticket, DEVMODEW* devmode,
                                          MsCachedDeviceCapabilities& capabilities);
    HRESULT ReplacePageMediaSizeCapabilities(PrintCapabilitiesXmlDocument& document, PrintTicketXmlDocument& ticket,
                                             MsCachedDeviceCapabilities& capabilities);
    HRESULT ReplacePageImageableSizeAndAreaProperties(PrintCapabilitiesXmlDocument& document,
                                                      PrintTicketXmlDocument& ticket,
                                                      MsCachedDeviceCapabilities& capabilities);

    std::atomic<LONG> m_referenceCount{1};
    HANDLE m_printerHandle = nullptr;
    ComPtr<IPrintCoreHelper> m_printCoreHelper;
    ULONGLONG m_driverCapabilityFlags = 0;
    ULONGLONG m_secondDriverCapability = 0; // stored only
    ULONG m_osMajorVersion = 0;
    ULONG m_osMinorVersion = 0;
    Printer m_printer;
    WorkflowObject m_workflow;
    ProductData::ValueEnum m_controllerFamily = ProductData::ControllerFamilyUnknown;
    std::unique_ptr<ProductStringLoader> m_productStringLoader;
    std::unique_ptr<PageSizeDictionary> m_pageSizeDictionary;
    FeatureServices* m_featureServices = nullptr; // the data model's
    ByteBuffer m_workingDevmode;
    ByteBuffer m_savedDevmode;
    // Selects the mode of the model state. Cleared here and by every binding, and set nowhere in this module: the full
    // mode is dormant, deliberately.
    bool m_dataModelInUse = false;
};

// The door for hosts that load the module at run time: C++ names differ between compilers. The object is handed out
// with one reference. E_POINTER, E_OUTOFMEMORY, E_FAIL.
extern "C" TVPTPC_API HRESULT CreateTavlenPtProvider(IPrintOemPrintTicketProvider** provider) noexcept;
