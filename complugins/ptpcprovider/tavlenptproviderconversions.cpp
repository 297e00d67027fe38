// The five document operations. Their order of steps is part of the design: later steps rely on what earlier ones
// wrote. The translators' results are not looked at; only exceptions stop a conversion.
#include <tvutil/devmodebounds.h>

#include "complugins/mscacheddevicecapabilities.h"
#include "complugins/ptpcprovider/documentdump.h"
#include "complugins/ptpcprovider/failureguard.h"
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
                          if (!DevmodeFitsIn(devmode, devmodeSize) || printTicket == nullptr)
                              return E_INVALIDARG;
                          PrintTicketXmlDocument ticket(printTicket);
                          DumpDocument(printTicket, W("InputToConvertPrintTicketToDevMode"), kTicketDumpPrefix);
                          MsCachedDeviceCapabilities capabilities(GetMSDeviceCapabilities(), m_printerHandle, devmode);
                          InitializeOrReInitializeDataModel(devmode);

                          bool changed = false;
                          ConvertPageMediaSizeToDevmode(ticket, devmode, capabilities);
                          ConvertMiscFeaturesToDevmode(ticket, devmode, nullptr, &changed);
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
                          if (!DevmodeFitsIn(devmode, devmodeSize) || printTicket == nullptr)
                              return E_INVALIDARG;
                          PrintTicketXmlDocument ticket(printTicket);
                          DumpDocument(printTicket, W("BeforeConvertDevModeToPrintTicket"), kTicketDumpPrefix);
                          MsCachedDeviceCapabilities capabilities(GetMSDeviceCapabilities(), m_printerHandle, devmode);
                          InitializeOrReInitializeDataModel(devmode);

                          ConvertDevmodeToPageMediaSize(ticket, devmode, capabilities);
                          ConvertDevmodeToMiscFeatures(ticket, devmode);
                          DumpDocument(printTicket, W("AfterConvertDevModeToPrintTicket"), kTicketDumpPrefix);
                          return S_OK;
                      });
}

HRESULT STDMETHODCALLTYPE TavlenPtProvider::CompletePrintCapabilities(IXMLDOMDocument2* /*printTicket*/,
                                                                      IXMLDOMDocument2* printCapabilities)
{
    return RunGuarded(kCompletePrintCapabilities,
                      [&] { return printCapabilities == nullptr ? E_INVALIDARG : E_NOTIMPL; });
}

HRESULT STDMETHODCALLTYPE TavlenPtProvider::ExpandIntentOptions(IXMLDOMDocument2* printTicket)
{
    return WrapOnly(printTicket, kExpandIntentOptions);
}

HRESULT STDMETHODCALLTYPE TavlenPtProvider::ValidatePrintTicket(IXMLDOMDocument2* printTicket)
{
    return WrapOnly(printTicket, kValidatePrintTicket);
}
