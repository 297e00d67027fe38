// BoundPrinter: a printer as the PrintTicket service has it before a document operation: opened, its provider loaded
// and bound, and its core driver at hand, which this program plays.
//
// One object for one thread, which has COM. All operations throw Failure, or what reading the printer's model throws.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include <tvcore/printermodel.h>

#include "corehelper.h"
#include "devmode.h"
#include "filebytes.h"
#include "printerhandle.h"
#include "providerhost.h"

class BoundPrinter
{
public:
    // Without the core driver's helper it is as with an older service.
    BoundPrinter(const std::string& name, bool hasCoreHelper);

    [[nodiscard]] ProviderHost& Provider() noexcept;

    // What a new job begins with.
    [[nodiscard]] Devmode MakeDefaultDevmode();

    // The core driver's documents, before the provider has completed them.
    [[nodiscard]] ComPtr<IXMLDOMDocument2> MakeBaseTicket(const Devmode& devmode);
    [[nodiscard]] ComPtr<IXMLDOMDocument2> MakeBaseCapabilities(const Devmode& devmode);

    // The core driver's half of the way from a ticket to a devmode; the provider's comes after it. `file` is what a
    // failure names.
    void ApplyTicket(IXMLDOMDocument2& ticket, Devmode& devmode, const std::string& file);

    // The namespace of the driver's own names: the provider's or, of one that publishes none, the service's for it.
    [[nodiscard]] std::string NamespaceUri();

private:
    [[nodiscard]] const PrinterModel& Model();

    std::string m_name;
    PrinterHandle m_printer;
    std::optional<PrinterModel> m_model; // read when it is first needed
    ComPtr<CoreHelper> m_helper;
    ProviderHost m_provider;
};

inline constexpr std::string_view kTicketRoot = "PrintTicket";
inline constexpr std::string_view kCapabilitiesRoot = "PrintCapabilities";

// A document out of a file, fit for a provider (ticketdocument.h).
[[nodiscard]] ComPtr<IXMLDOMDocument2> ReadForProvider(const std::string& file, std::string_view rootName,
                                                       const StandardStreams& streams,
                                                       std::string_view driverNamespaceUri = {});
