// The five document operations. Their order of steps is part of the design: later steps rely on what earlier ones
// wrote. The translators' results are not looked at; only exceptions stop a conversion.
#include <tvutil/attributebytesindexedlist.h>
#include <tvutil/devmodebounds.h>

#include "complugins/mscacheddevicecapabilities.h"
#include "complugins/ptpcprovider/documentdump.h"
#include "complugins/ptpcprovider/failureguard.h"
#include "complugins/ptpcprovider/printcapabilitiesxmldocument.h"
#include "complugins/ptpcprovider/printticketxmldocument.h"
#include "complugins/ptpcprovider/tavlenptprovider.h"
#include "complugins/xdevmode.h"

namespace
{

constexpr WCHAR kSourceFile[] = W("complugins\\ptpcprovider\\tavlenptprovider");

// The places that reports name, with the lines that the system reports for them.
constexpr ThrowSite kConvertPrintTicketToDevMode{W("TavlenPtProvider::ConvertPrintTicketToDevMode"), kSourceFile, 867};
constexpr ThrowSite kConvertDevModeToPrintTicket{W("TavlenPtProvider::ConvertDevModeToPrintTicket"), kSourceFile, 1033};
constexpr ThrowSite kCompletePrintCapabilities{W("TavlenPtProvider::CompletePrintCapabilities"), kSourceFile, 1205};
constexpr ThrowSite kExpandIntentOptions{W("TavlenPtProvider::ExpandIntentOptions"), kSourceFile, 1289};
constexpr ThrowSite kValidatePrintTicket{W("TavlenPtProvider::ValidatePrintTicket"), kSourceFile, 1392};

constexpr WCHAR kTicketDumpPrefix[] = W("PrintTicket_");

// Intents are not expanded and every well-formed ticket is valid, deliberately: the ticket is wrapped, which may
// normalise its private prefix, and let go.
HRESULT WrapOnly(IXMLDOMDocument2* printTicket, const ThrowSite& site) noexcept
{
    return RunGuarded(site,
                      [&]
                      {
                          if (printTicket == nullptr)
                              return E_INVALIDARG;
                          const PrintTicketXmlDocument ticket(printTicket);
                          return S_OK;
                      });
}

} // namespace

HRESULT STDMETHODCALLTYPE TavlenPtProvider::ConvertPrintTicketToDevMode(IXMLDOMDocument2* printTicket,
                                                                        ULONG devmodeSize, DEVMODEW* devmode,
                                                                        ULONG /*privateSize*/, PVOID /*privateDevmode*/)
{
    return RunGuarded(kConvertPrintTicketToDevMode,
                      [&]
                      {
                          if (printTicket == nullptr || !DevmodeFitsIn(devmode, devmodeSize))
                              return E_INVALIDARG;
                          PrintTicketXmlDocument ticket(printTicket);
                          DumpDocument(printTicket, W("InputToConvertPrintTicketToDevMode"), kTicketDumpPrefix);
                          MsCachedDeviceCapabilities capabilities(GetMSDeviceCapabilities(), m_printerHandle, devmode);
                          InitializeOrReInitializeDataModel(devmode);

                          XDevmode& wrapper = GetXDevmodeRef();
                          GetTavlenDriverDataFromPrintTicketAndUpdateDevmode(ticket, wrapper);
                          const auto settings = CreateDataModelDataAttributeBytesIndexedList(wrapper);
                          bool changed = false;
                          ConvertPageMediaTypeToDevmode(ticket, capabilities, settings.get(), &changed);
                          ConvertPageMediaSizeToDevmode(ticket, devmode, capabilities);
                          ConvertPageOutputQualityToDevmode(ticket, settings.get(), &changed);
                          ConvertColorFeaturesToDevmode(ticket, devmode, settings.get(), &changed);
                          ConvertMiscFeaturesToDevmode(ticket, devmode, settings.get(), &changed);
                          if (changed && m_dataModelInUse)
                              CommitDataModelToDevmode(devmode);
                          else if (changed)
                              CommitChangesToDevmodeFromDataModelDataAttributeBytesIndexedList(wrapper, settings.get());
                          return S_OK;
                      });
}

HRESULT STDMETHODCALLTYPE TavlenPtProvider::ConvertDevModeToPrintTicket(ULONG devmodeSize, DEVMODEW* devmode,
                                                                        ULONG /*privateSize*/, PVOID /*privateDevmode*/,
                                                                        IXMLDOMDocument2* printTicket)
{
    return RunGuarded(kConvertDevModeToPrintTicket,
                      [&]
                      {
                          if (printTicket == nullptr || !DevmodeFitsIn(devmode, devmodeSize))
                              return E_INVALIDARG;
                          PrintTicketXmlDocument ticket(printTicket);
                          DumpDocument(printTicket, W("BeforeConvertDevModeToPrintTicket"), kTicketDumpPrefix);
                          MsCachedDeviceCapabilities capabilities(GetMSDeviceCapabilities(), m_printerHandle, devmode);
                          InitializeOrReInitializeDataModel(devmode);

                          XDevmode& wrapper = GetXDevmodeRef();
                          DeleteRedundantPageOrientationFromPpdGpdNamespace(ticket);
                          ConvertDevmodeToPageMediaType(ticket, wrapper, capabilities);
                          ConvertDevmodeToPageMediaSize(ticket, devmode, capabilities);
                          ConvertDevmodeToPageOutputQuality(ticket, wrapper);
                          ConvertDevmodeToColorFeatures(ticket, devmode, wrapper);
                          ConvertDevmodeToMiscFeatures(ticket, devmode, wrapper);
                          if (PrivateNamespaceIsEnabled())
                              EmbedPrivateJtifInPrintTicket(ticket, wrapper);
                          SetTavlenDriverDataInPrintTicket(ticket, wrapper);
                          DumpDocument(printTicket, W("AfterConvertDevModeToPrintTicket"), kTicketDumpPrefix);
                          return S_OK;
                      });
}

// The ticket may be null: the wrapper is empty then, and what asks it falls back. No devmode is given, so the model
// state keeps that of the last conversion; nothing here may look at it.
HRESULT STDMETHODCALLTYPE TavlenPtProvider::CompletePrintCapabilities(IXMLDOMDocument2* printTicket,
                                                                      IXMLDOMDocument2* printCapabilities)
{
    return RunGuarded(kCompletePrintCapabilities,
                      [&]
                      {
                          if (printCapabilities == nullptr)
                              return E_INVALIDARG;
                          PrintCapabilitiesXmlDocument document(printCapabilities);
                          PrintTicketXmlDocument ticket(printTicket);
                          InitializeOrReInitializeDataModel(nullptr);
                          MsCachedDeviceCapabilities capabilities(GetMSDeviceCapabilities(), m_printerHandle, nullptr);

                          DeleteRedundantPageOrientationFromPpdGpdNamespace(document);
                          FixUpResolutionCapabilities(document, capabilities);
                          AddOrReplacePageOutputQualityCapabilities(document);
                          AddOrReplaceColorFeaturesCapabilities(document);
                          AddOrReplaceMiscFeaturesCapabilities(document, capabilities);
                          FixUpDuplexCapabilities(document);
                          ReplacePageMediaSizeCapabilities(document, ticket, capabilities);
                          ReplacePageImageableSizeAndAreaProperties(document, ticket, capabilities);
                          AddOrReplacePageMediaTypeCapabilities(document, capabilities);
                          if (PrivateNamespaceIsEnabled())
                              AddJobJtifJobTicketCapabilities(document);
                          AddTavlenDriverDataCapabilities(document);
                          DumpDocument(printCapabilities, W("AfterCompletePrintCapabilities"), W("PrintCapabilities_"));
                          return S_OK;
                      });
}

HRESULT STDMETHODCALLTYPE TavlenPtProvider::ExpandIntentOptions(IXMLDOMDocument2* printTicket)
{
    return WrapOnly(printTicket, kExpandIntentOptions);
}

HRESULT STDMETHODCALLTYPE TavlenPtProvider::ValidatePrintTicket(IXMLDOMDocument2* printTicket)
{
    return WrapOnly(printTicket, kValidatePrintTicket);
}
