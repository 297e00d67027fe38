#include "ticketcommands.h"

#include <memory>
#include <nlohmann/json.hpp>

#include "boundprinter.h"
#include "devmode.h"
#include "documenttree.h"
#include "failure.h"
#include "jsonoutput.h"
#include "printschemadocument.h"
#include "ticketreport.h"
#include "utilitiesstaticlib/documentlimits.h"

namespace
{

struct TicketArguments
{
    std::string printer;
    std::string devmode;
    std::string ticket;
    std::string base;
    std::string output;
    bool json = false;
    bool noCoreHelper = false;
    bool noCoreDriver = false;
};

ComPtr<IXMLDOMDocument2> ReadTicket(const std::string& file, const StandardStreams& streams)
{
    return ReadForProvider(file, kTicketRoot, streams);
}

void FromDevmode(const TicketArguments& arguments, const StandardStreams& streams)
{
    if (arguments.devmode == kStandardStream && arguments.base == kStandardStream)
        throw UsageFailure("DEVMODE and --base cannot both be standard input");
    const ComApartment apartment;
    Devmode devmode = ReadDevmode(arguments.devmode, streams);
    BoundPrinter printer(arguments.printer, !arguments.noCoreHelper);
    const ComPtr<IXMLDOMDocument2> ticket =
        arguments.base.empty() ? printer.MakeBaseTicket(devmode)
                               : ReadForProvider(arguments.base, kTicketRoot, streams, printer.NamespaceUri());
    printer.Provider().ConvertDevModeToPrintTicket(devmode, *ticket.Get(),
                                                   arguments.base.empty() ? arguments.devmode : arguments.base);
    WriteOutput(arguments.output, DocumentToBytes(*ticket.Get()), streams);
}

void ToDevmode(const TicketArguments& arguments, const StandardStreams& streams)
{
    if (arguments.devmode == kStandardStream && arguments.ticket == kStandardStream)
        throw UsageFailure("--devmode and TICKET cannot both be standard input");
    const ComApartment apartment;
    Devmode devmode = ReadDevmode(arguments.devmode, streams);
    const ComPtr<IXMLDOMDocument2> ticket = ReadTicket(arguments.ticket, streams);
    BoundPrinter printer(arguments.printer, !arguments.noCoreHelper);
    if (!arguments.noCoreDriver)
        printer.ApplyTicket(*ticket.Get(), devmode, arguments.ticket);
    printer.Provider().ConvertPrintTicketToDevMode(*ticket.Get(), devmode, arguments.ticket);
    WriteOutput(arguments.output, devmode.Bytes(), streams);
}

using TicketOperation = void (ProviderHost::*)(IXMLDOMDocument2&, const std::string&);

void Pass(const TicketArguments& arguments, TicketOperation operation, const StandardStreams& streams)
{
    const ComApartment apartment;
    const ComPtr<IXMLDOMDocument2> ticket = ReadTicket(arguments.ticket, streams);
    BoundPrinter printer(arguments.printer, !arguments.noCoreHelper);
    (printer.Provider().*operation)(*ticket.Get(), arguments.ticket);
    WriteOutput(arguments.output, DocumentToBytes(*ticket.Get()), streams);
}

void Show(const TicketArguments& arguments, const StandardStreams& streams)
{
    const ComApartment apartment;
    const SchemaElement root =
        LoadDocumentTree(ReadInput(arguments.ticket, documentlimits::kMaximumFileBytes, streams), arguments.ticket);
    if (const std::string fault = DescribeRootFault(root, kTicketRoot); !fault.empty())
        Fail("reading the ticket", arguments.ticket, fault);
    const nlohmann::ordered_json shown = DescribeTicket(root);
    WriteOutput({}, arguments.json ? JsonText(shown) : PlainText(shown), streams);
}

void AddPassCommand(CLI::App& ticket, Action& chosen, const std::shared_ptr<TicketArguments>& arguments,
                    const char* name, const char* description, TicketOperation operation)
{
    CLI::App& command = *ticket.add_subcommand(name, description);
    AddPrinterOptions(command, arguments->printer, arguments->noCoreHelper);
    command.add_option("TICKET", arguments->ticket, "A PrintTicket; - is standard input")->required();
    command.add_option("-o", arguments->output, "Where it goes; - or nothing is standard output");
    OnCommand(command, chosen,
              [arguments, operation](const StandardStreams& streams) { Pass(*arguments, operation, streams); });
}

} // namespace

void AddPrinterOptions(CLI::App& command, std::string& printer, bool& noCoreHelper)
{
    command.add_option("--printer", printer, "The printer's name")->required();
    command.add_flag("--no-core-helper", noCoreHelper,
                     "Give the provider no helper of the core driver, as an older service does");
}

void AddTicketCommands(CLI::App& program, Action& chosen)
{
    const auto arguments = std::make_shared<TicketArguments>();
    CLI::App& ticket = *program.add_subcommand("ticket", "Convert and show PrintTickets");
    ticket.require_subcommand(1);

    CLI::App& from = *ticket.add_subcommand("from-devmode", "Convert a devmode to a PrintTicket");
    AddPrinterOptions(from, arguments->printer, arguments->noCoreHelper);
    from.add_option("DEVMODE", arguments->devmode, "A devmode; - is standard input")->required();
    from.add_option("--base", arguments->base,
                    "The PrintTicket to complete; without it, the one that the core driver would make");
    from.add_option("-o", arguments->output, "Where it goes; - or nothing is standard output");
    OnCommand(from, chosen, [arguments](const StandardStreams& streams) { FromDevmode(*arguments, streams); });

    CLI::App& to = *ticket.add_subcommand("to-devmode", "Convert a PrintTicket to a devmode");
    AddPrinterOptions(to, arguments->printer, arguments->noCoreHelper);
    to.add_option("--devmode", arguments->devmode, "The devmode to begin with; - is standard input")->required();
    to.add_option("TICKET", arguments->ticket, "A PrintTicket; - is standard input")->required();
    to.add_flag("--no-core-driver", arguments->noCoreDriver,
                "Leave the settings of the core driver as they are: only the provider reads the ticket");
    to.add_option("-o", arguments->output, "Where it goes; - is standard output")->required();
    OnCommand(to, chosen, [arguments](const StandardStreams& streams) { ToDevmode(*arguments, streams); });

    AddPassCommand(ticket, chosen, arguments, "validate", "Let the provider validate a PrintTicket",
                   &ProviderHost::ValidatePrintTicket);
    AddPassCommand(ticket, chosen, arguments, "expand", "Let the provider expand a PrintTicket's intent options",
                   &ProviderHost::ExpandIntentOptions);

    CLI::App& show = *ticket.add_subcommand("show", "Show what a PrintTicket holds");
    show.add_option("TICKET", arguments->ticket, "A PrintTicket; - is standard input")->required();
    show.add_flag("--json", arguments->json, "As JSON");
    OnCommand(show, chosen, [arguments](const StandardStreams& streams) { Show(*arguments, streams); });
}
