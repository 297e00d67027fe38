#include "capabilitiescommands.h"

#include <memory>

#include "boundprinter.h"
#include "failure.h"
#include "printschemadocument.h"
#include "ticketcommands.h"

namespace
{

struct CapabilitiesArguments
{
    std::string printer;
    std::string ticket;
    std::string base;
    std::string output;
    bool isBaseOnly = false;
    bool noCoreHelper = false;
};

// The settings for which the capabilities are asked: the printer's default ones or a ticket's.
struct Job
{
    Devmode devmode;
    ComPtr<IXMLDOMDocument2> ticket;
};

Job DefaultJob(BoundPrinter& printer, const std::string& printerName)
{
    Job job{printer.MakeDefaultDevmode(), {}};
    job.ticket = printer.MakeBaseTicket(job.devmode);
    printer.Provider().ConvertDevModeToPrintTicket(job.devmode, *job.ticket.Get(), printerName);
    return job;
}

Job JobOfTicket(BoundPrinter& printer, ComPtr<IXMLDOMDocument2> ticket, const std::string& file)
{
    Job job{printer.MakeDefaultDevmode(), std::move(ticket)};
    printer.ApplyTicket(*job.ticket.Get(), job.devmode, file);
    printer.Provider().ConvertPrintTicketToDevMode(*job.ticket.Get(), job.devmode, file);
    return job;
}

void Capabilities(const CapabilitiesArguments& arguments, const StandardStreams& streams)
{
    if (arguments.ticket == kStandardStream && arguments.base == kStandardStream)
        throw UsageFailure("--ticket and --base cannot both be standard input");
    const ComApartment apartment;
    const bool hasTicket = !arguments.ticket.empty();
    const bool hasBase = !arguments.base.empty();
    ComPtr<IXMLDOMDocument2> ticket =
        hasTicket ? ReadForProvider(arguments.ticket, kTicketRoot, streams) : ComPtr<IXMLDOMDocument2>();
    BoundPrinter printer(arguments.printer, !arguments.noCoreHelper);
    ComPtr<IXMLDOMDocument2> capabilities =
        hasBase ? ReadForProvider(arguments.base, kCapabilitiesRoot, streams, printer.NamespaceUri())
                : ComPtr<IXMLDOMDocument2>();
    const Job job =
        hasTicket ? JobOfTicket(printer, std::move(ticket), arguments.ticket) : DefaultJob(printer, arguments.printer);
    if (!hasBase)
        capabilities = printer.MakeBaseCapabilities(job.devmode);
    if (!arguments.isBaseOnly)
        printer.Provider().CompletePrintCapabilities(*job.ticket.Get(), *capabilities.Get(),
                                                     hasBase ? arguments.base : arguments.printer);
    WriteOutput(arguments.output, DocumentToBytes(*capabilities.Get()), streams);
}

} // namespace

void AddCapabilitiesCommand(CLI::App& program, Action& chosen)
{
    const auto arguments = std::make_shared<CapabilitiesArguments>();
    CLI::App& command = *program.add_subcommand("capabilities", "Ask for a printer's PrintCapabilities");
    AddPrinterOptions(command, arguments->printer, arguments->noCoreHelper);
    command.add_option("--ticket", arguments->ticket,
                       "The PrintTicket to ask with; without it, the printer's default one; - is standard input");
    CLI::Option* const base = command.add_option(
        "--base", arguments->base,
        "The PrintCapabilities to complete; without it, those that the core driver would make; - is standard input");
    command.add_flag("--base-only", arguments->isBaseOnly, "What the core driver would make, not completed")
        ->excludes(base);
    command.add_option("-o", arguments->output, "Where they go; - or nothing is standard output");
    OnCommand(command, chosen, [arguments](const StandardStreams& streams) { Capabilities(*arguments, streams); });
}
