// Published COM interfaces of the core printer drivers that the MinGW SDK lacks: the PrintTicket provider and the
// print core helper, with their published ids and slot orders.
//
// Source: the platform's public driver documentation ("IPrintOemPrintTicketProvider", "IPrintCoreHelper"). As for all
// COM interfaces: no virtual destructor, the first three slots are IUnknown's.
#pragma once

#include <windows.h>

#include <msxml2.h>
#include <unknwn.h>

#include "utilitiesstaticlib/iidof.h"

// Options that a provider gives the PrintTicket service when it is bound.
enum OEMPTOPTS
{
    OEMPT_DEFAULT = 0,    // the service takes its usual snapshot of the printer
    OEMPT_NOSNAPSHOT = 1, // the provider needs none
};

using POEMPTOPTS = OEMPTOPTS*;

// What BindPrinter answers for an interface version that the provider does not support.
inline constexpr HRESULT E_VERSION_NOT_SUPPORTED = static_cast<HRESULT>(0x80040001u);

// A feature of the core driver and its selected option, by their GPD or PPD keywords (ANSI, zero-terminated).
struct PRINT_FEATURE_OPTION
{
    PCSTR pszFeature;
    PCSTR pszOption;
};

inline constexpr IID IID_IPrintOemPrintTicketProvider{
    0xBCF5E011, 0xF60A, 0x49FF, {0xAB, 0x2F, 0xE0, 0x6F, 0x4A, 0xBD, 0xF2, 0x81}};
inline constexpr IID IID_IPrintCoreHelper{0xA89EC53E, 0x3905, 0x49C6, {0x9C, 0x1A, 0xC0, 0xA8, 0x81, 0x17, 0xFD, 0xB6}};

// Sizes are in bytes. Documents are borrowed for the call; versions, namespaces and strings that are handed out are
// the caller's to free (CoTaskMemFree for arrays, SysFreeString for strings).
struct IPrintOemPrintTicketProvider : IUnknown
{
    virtual HRESULT STDMETHODCALLTYPE GetSupportedVersions(HANDLE printer, INT** versions, INT* versionCount) = 0;
    virtual HRESULT STDMETHODCALLTYPE BindPrinter(HANDLE printer, INT version, POEMPTOPTS options, INT* namespaceCount,
                                                  BSTR** namespaces) = 0;
    virtual HRESULT STDMETHODCALLTYPE PublishPrintTicketHelperInterface(IUnknown* helper) = 0;
    virtual HRESULT STDMETHODCALLTYPE QueryDeviceDefaultNamespace(BSTR* namespaceUri) = 0;
    virtual HRESULT STDMETHODCALLTYPE ConvertPrintTicketToDevMode(IXMLDOMDocument2* printTicket, ULONG devmodeSize,
                                                                  DEVMODEW* devmode, ULONG privateSize,
                                                                  PVOID privateDevmode) = 0;
    virtual HRESULT STDMETHODCALLTYPE ConvertDevModeToPrintTicket(ULONG devmodeSize, DEVMODEW* devmode,
                                                                  ULONG privateSize, PVOID privateDevmode,
                                                                  IXMLDOMDocument2* printTicket) = 0;
    virtual HRESULT STDMETHODCALLTYPE CompletePrintCapabilities(IXMLDOMDocument2* printTicket,
                                                                IXMLDOMDocument2* printCapabilities) = 0;
    virtual HRESULT STDMETHODCALLTYPE ExpandIntentOptions(IXMLDOMDocument2* printTicket) = 0;
    virtual HRESULT STDMETHODCALLTYPE ValidatePrintTicket(IXMLDOMDocument2* printTicket) = 0;
};

// Access to the core driver's settings in a devmode. Strings and lists that are handed out belong to the helper and
// stay valid until its next call.
struct IPrintCoreHelper : IUnknown
{
    virtual HRESULT STDMETHODCALLTYPE GetOption(const DEVMODEW* devmode, DWORD devmodeSize, PCSTR featureKeyword,
                                                PCSTR* optionKeyword) = 0;
    virtual HRESULT STDMETHODCALLTYPE SetOptions(DEVMODEW* devmode, DWORD devmodeSize, BOOL resolveConflicts,
                                                 const PRINT_FEATURE_OPTION* pairs, DWORD pairCount,
                                                 DWORD* pairsWritten, DWORD* result) = 0;
    virtual HRESULT STDMETHODCALLTYPE EnumConstrainedOptions(const DEVMODEW* devmode, DWORD devmodeSize,
                                                             PCSTR featureKeyword, PCSTR** optionKeywords,
                                                             DWORD* optionCount) = 0;
    virtual HRESULT STDMETHODCALLTYPE WhyConstrained(const DEVMODEW* devmode, DWORD devmodeSize, PCSTR featureKeyword,
                                                     PCSTR optionKeyword, const PRINT_FEATURE_OPTION** constraints,
                                                     DWORD* constraintCount) = 0;
    virtual HRESULT STDMETHODCALLTYPE EnumFeatures(PCSTR** featureKeywords, DWORD* featureCount) = 0;
    virtual HRESULT STDMETHODCALLTYPE EnumOptions(PCSTR featureKeyword, PCSTR** optionKeywords, DWORD* optionCount) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetFontSubstitution(PCWSTR trueTypeFontName, PCWSTR* deviceFontName) = 0;
    virtual HRESULT STDMETHODCALLTYPE SetFontSubstitution(PCWSTR trueTypeFontName, PCWSTR deviceFontName) = 0;
    virtual HRESULT STDMETHODCALLTYPE CreateInstanceOfMSXMLObject(REFCLSID classId, IUnknown* outer, DWORD context,
                                                                  REFIID riid, PVOID* object) = 0;
};

template <>
struct IidOf<IPrintOemPrintTicketProvider>
{
    static const IID& Value()
    {
        return IID_IPrintOemPrintTicketProvider;
    }
};

template <>
struct IidOf<IPrintCoreHelper>
{
    static const IID& Value()
    {
        return IID_IPrintCoreHelper;
    }
};
