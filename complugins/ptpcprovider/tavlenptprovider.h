// TavlenPtProvider: the object that the Windows PrintTicket service loads for the driver.
//
// The driver's configuration layer constructs one object per printer binding; the service then asks for the supported
// versions, binds the printer, optionally publishes its helper and asks for the default namespace, converts any number
// of times, and releases the object. Nothing enforces that order: a conversion before the binding runs with an unbound
// printer and default state.
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
#include <cstdint>
#include <memory>
#include <vector>

#include <tvcore/datasourceproviderwithdatasources.h>
#include <tvcore/pagesizedictionary.h>
#include <tvcore/productdata.h>
#include <tvcore/productstringloader.h>
#include <tvutil/bytebuffer.h>
#include <tvutil/printer.h>

#include "complugins/workflowobject.h"
#include "interfaces/prcomoem.h"
#include "utilitiesstaticlib/comptr.h"

class AttributeBytesIndexedList;
class DataModelManager;
class MsCachedDeviceCapabilities;
class PrintCapabilitiesXmlDocument;
class PrintTicketXmlDocument;
class XDevmode;
struct IXMLDOMElement;

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
    [[nodiscard]] bool ImageableAreaIsEnabled() const noexcept;

    // --- Model state, full mode: the data model of the last devmode, or, of none, of the user's default one.
    FeatureServices* BringDataModelUpToDate(DEVMODEW* devmode);
    bool UpdateSavedDevmode(DEVMODEW* devmode);
    void UpdateSavedCopyOfDevmodeRepresentingCurrentDataModel(DEVMODEW* devmode);
    void WrapWorkingDevmode(ByteBuffer& working);
    void BuildDataModel();
    void ReInitializeDataModel();
    void CommitDataModelToDevmode(DEVMODEW* devmode);

    // --- Model state: the document's settings, which the translators edit, and their way into the devmode.

    // Null when the devmode carries none: then nothing could be stored.
    [[nodiscard]] static std::unique_ptr<AttributeBytesIndexedList>
    CreateDataModelDataAttributeBytesIndexedList(XDevmode& devmode);
    // Everything else that the devmode carries stays. Does nothing without a list, or when the devmode carries none.
    static void
    CommitChangesToDevmodeFromDataModelDataAttributeBytesIndexedList(XDevmode& devmode,
                                                                     const AttributeBytesIndexedList* settings);

    // The data model while it is in use, or null: what is set lies in the devmode then.
    [[nodiscard]] FeatureServices* GetLiveDataModel() const noexcept;

    // --- Translators. What they write is in the document, the devmode and the settings given, or in the data model
    // while it is in use; `changed` becomes true when settings of either were changed, and is left alone otherwise.
    // Their results are not looked at by conversions, which only exceptions stop.

    // Media type (pagemediatypeimpl). E_FAIL, with the document as it was, when the printer has no media types.
    struct MediaTypeDataEntry;
    std::vector<MediaTypeDataEntry>
    GetMediaTypeCachedDeviceCapabilitiesAndPrintSchemaMappings(MsCachedDeviceCapabilities& capabilities);
    HRESULT AddOrReplacePageMediaTypeCapabilities(PrintCapabilitiesXmlDocument& document,
                                                  MsCachedDeviceCapabilities& capabilities);
    static void AppendMediaTypeOption(const PrintCapabilitiesXmlDocument& document, IXMLDOMElement* feature,
                                      const MediaTypeDataEntry& entry);
    HRESULT ConvertDevmodeToPageMediaType(PrintTicketXmlDocument& ticket, XDevmode& devmode,
                                          MsCachedDeviceCapabilities& capabilities);
    HRESULT ConvertPageMediaTypeToDevmode(PrintTicketXmlDocument& ticket, MsCachedDeviceCapabilities& capabilities,
                                          AttributeBytesIndexedList* settings, bool* changed);

    // Output quality (pageoutputqualityimpl).
    struct PageOutputQualityDataEntry
    {
        CXString displayName;
        std::int32_t qualityId;
        CXString optionName;
    };
    static std::vector<PageOutputQualityDataEntry> GetPageOutputQualityCapabilitiesAndPrintSchemaMappings();
    HRESULT AddOrReplacePageOutputQualityCapabilities(PrintCapabilitiesXmlDocument& document);
    HRESULT ConvertDevmodeToPageOutputQuality(PrintTicketXmlDocument& ticket, XDevmode& devmode);
    HRESULT ConvertPageOutputQualityToDevmode(PrintTicketXmlDocument& ticket, AttributeBytesIndexedList* settings,
                                              bool* changed);
    [[nodiscard]] bool HasPageOutputQuality() const noexcept;

    // Colour (colorfeaturesimpl).
    HRESULT AddOrReplaceColorFeaturesCapabilities(PrintCapabilitiesXmlDocument& document);
    HRESULT ConvertColorFeaturesToDevmode(PrintTicketXmlDocument& ticket, DEVMODEW* devmode,
                                          AttributeBytesIndexedList* settings, bool* changed);
    HRESULT ConvertDevmodeToColorFeatures(PrintTicketXmlDocument& ticket, DEVMODEW* devmode, XDevmode& wrapper);
    [[nodiscard]] bool HasColorFeatures();

    // Copies (miscfeaturesimpl).
    HRESULT AddOrReplaceMiscFeaturesCapabilities(PrintCapabilitiesXmlDocument& document,
                                                 MsCachedDeviceCapabilities& capabilities);
    HRESULT ConvertMiscFeaturesToDevmode(PrintTicketXmlDocument& ticket, DEVMODEW* devmode,
                                         AttributeBytesIndexedList* settings, bool* changed);
    HRESULT ConvertDevmodeToMiscFeatures(PrintTicketXmlDocument& ticket, DEVMODEW* devmode, XDevmode& wrapper);

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
    // Light mode: of the last devmode given, whose memory may be gone by now. Full mode: of the working devmode.
    std::unique_ptr<XDevmode> m_xdevmode;
    std::unique_ptr<DataModelManager> m_dataModelManager; // goes before the wrapper that it borrows
    // Selects the mode of the model state. Cleared here and by every binding, and set nowhere in this module: the full
    // mode is dormant, deliberately.
    bool m_dataModelInUse = false;
};

// The door for hosts that load the module at run time: C++ names differ between compilers. The object is handed out
// with one reference. E_POINTER, E_OUTOFMEMORY, E_FAIL.
extern "C" TVPTPC_API HRESULT CreateTavlenPtProvider(IPrintOemPrintTicketProvider** provider) noexcept;
