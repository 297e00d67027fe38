// What tests see of a provider object's state, and a provider that they bind.
#pragma once

#include <objbase.h>

#include <gtest/gtest.h>

#include "complugins/mscacheddevicecapabilities.h"
#include "complugins/ptpcprovider/printcapabilitiesxmldocument.h"
#include "complugins/ptpcprovider/printticketxmldocument.h"
#include "complugins/ptpcprovider/tavlenptprovider.h"
#include "utilitiesstaticlib/ccombstr.h"

struct TavlenPtProviderTestAccess
{
    static void UseDataModel(TavlenPtProvider& provider)
    {
        provider.m_dataModelInUse = true;
    }

    static bool DataModelIsInUse(const TavlenPtProvider& provider)
    {
        return provider.m_dataModelInUse;
    }

    static IPrintCoreHelper* Helper(const TavlenPtProvider& provider)
    {
        return provider.m_printCoreHelper.Get();
    }

    static ULONGLONG Capabilities(const TavlenPtProvider& provider)
    {
        return provider.m_driverCapabilityFlags << 16 | provider.m_secondDriverCapability;
    }

    static ProductData::ValueEnum ControllerFamily(const TavlenPtProvider& provider)
    {
        return provider.m_controllerFamily;
    }

    static ULONG OsMajorVersion(const TavlenPtProvider& provider)
    {
        return provider.m_osMajorVersion;
    }

    // A null ticket is an empty one, which gives no usable size either.
    static bool TakesDefaultSize(TavlenPtProvider& provider, IXMLDOMDocument2* ticket)
    {
        PrintTicketXmlDocument wrapped(ticket);
        MsCachedDeviceCapabilities cached(provider.GetMSDeviceCapabilities(), provider.m_printerHandle, nullptr);
        FormsInfoRecord form;
        return provider.GetPrintTicketPaperSize(wrapped, cached, &form);
    }

    static constexpr auto kMediaSizes = &TavlenPtProvider::ReplacePageMediaSizeCapabilities;
    static constexpr auto kImageableArea = &TavlenPtProvider::ReplacePageImageableSizeAndAreaProperties;

    template <class Operation>
    static void Replace(TavlenPtProvider& provider, IXMLDOMDocument2* document, IXMLDOMDocument2* ticket,
                        Operation operation)
    {
        PrintCapabilitiesXmlDocument wrapped(document);
        PrintTicketXmlDocument wrappedTicket(ticket);
        MsCachedDeviceCapabilities cached(provider.GetMSDeviceCapabilities(), provider.m_printerHandle, nullptr);
        EXPECT_EQ(S_OK, (provider.*operation)(wrapped, wrappedTicket, cached));
    }
};

// A provider, and what its last binding published.
struct ProviderBinding
{
    ProviderBinding()
    {
        EXPECT_EQ(S_OK, CreateTavlenPtProvider(provider.Put()));
        object = static_cast<TavlenPtProvider*>(provider.Get());
    }

    HRESULT BindTo(HANDLE printer, INT version = 1)
    {
        options = OEMPT_NOSNAPSHOT;
        namespaceCount = 77;
        BSTR untouched = nullptr;
        BSTR* namespaces = &untouched;
        const HRESULT result = provider->BindPrinter(printer, version, &options, &namespaceCount, &namespaces);
        EXPECT_NE(&untouched, namespaces) << "cleared first";
        hasNamespaces = namespaces != nullptr;
        uri.Attach(hasNamespaces ? *namespaces : nullptr);
        if (namespaces != &untouched)
            CoTaskMemFree(namespaces);
        return result;
    }

    ComPtr<IPrintOemPrintTicketProvider> provider;
    TavlenPtProvider* object = nullptr;
    OEMPTOPTS options = OEMPT_NOSNAPSHOT;
    INT namespaceCount = 0;
    bool hasNamespaces = false;
    CComBSTR uri;
};
