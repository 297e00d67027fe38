// ProviderHost: the PrintTicket provider of one printer, loaded and bound as the PrintTicket service does it.
//
// The module comes from the installed driver's folder and stays loaded as long as the object lives, like the printer
// that it is bound to. One object for one thread. All operations throw Failure, which holds the HRESULT and what the
// module reported about it.
#pragma once

#include <string>

#include <tvutil/tavlenexception.h>

#include "devmode.h"
#include "interfaces/prcomoem.h"
#include "printerhandle.h"
#include "utilitiesstaticlib/comptr.h"

class ProviderHost
{
public:
    // Loads the module, asks for the supported versions, binds the printer, publishes the core driver's helper, if
    // there is one, asks for the default namespace.
    ProviderHost(const PrinterHandle& printer, const std::string& printerName, IUnknown* coreHelper);
    ~ProviderHost();
    ProviderHost(const ProviderHost&) = delete;
    ProviderHost& operator=(const ProviderHost&) = delete;

    // Empty when the provider names none.
    [[nodiscard]] const CXString& DefaultNamespace() const noexcept;

    // `file` is what a failure names.
    void ConvertDevModeToPrintTicket(Devmode& devmode, IXMLDOMDocument2& ticket, const std::string& file);
    // What comes out is a devmode again, or a failure.
    void ConvertPrintTicketToDevMode(IXMLDOMDocument2& ticket, Devmode& devmode, const std::string& file);
    void CompletePrintCapabilities(IXMLDOMDocument2& ticket, IXMLDOMDocument2& capabilities, const std::string& file);
    void ValidatePrintTicket(IXMLDOMDocument2& ticket, const std::string& file);
    void ExpandIntentOptions(IXMLDOMDocument2& ticket, const std::string& file);

private:
    // Frees the module after everything that came from it.
    class Module
    {
    public:
        explicit Module(const CXString& file);
        ~Module();
        Module(const Module&) = delete;
        Module& operator=(const Module&) = delete;
        [[nodiscard]] HMODULE Get() const noexcept;

    private:
        HMODULE m_module = nullptr;
    };

    // The last report of the module; the text is cut to the room, since a report must not allocate.
    struct LastReport
    {
        char text[512] = {};
    };

    // While it lives, the module's reports are kept.
    class ReportRegistration
    {
    public:
        ReportRegistration() noexcept = default;
        ~ReportRegistration();
        ReportRegistration(const ReportRegistration&) = delete;
        ReportRegistration& operator=(const ReportRegistration&) = delete;
        void Register(HMODULE utilityLibrary, LastReport& report) noexcept;

    private:
        void (*m_setReportSink)(TavlenException::ReportSink, void*) noexcept = nullptr;
    };

    static void KeepReport(const TavlenException::Report& report, void* context);
    void ReceiveReports();
    void Bind(const PrinterHandle& printer);
    void QueryDefaultNamespace();
    void Require(HRESULT result, const char* what, const std::string& which) const;

    std::string m_printerName;
    CXString m_moduleFile;
    Module m_module;
    LastReport m_report;
    ReportRegistration m_registration; // goes before the report, also when the constructor fails
    ComPtr<IPrintOemPrintTicketProvider> m_provider;
    CXString m_defaultNamespace;
};
