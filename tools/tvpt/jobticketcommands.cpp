#include "jobticketcommands.h"

#include <memory>

#include <tvcore/productdata.h>
#include <tvutil/printdriver.h>

#include "complugins/renjtifforxps.h"
#include "complugins/xdevmode.h"
#include "devmode.h"
#include "oempart.h"
#include "printersetup.h"
#include "untakensettings.h"

namespace
{

struct JobTicketArguments
{
    std::string printer;
    std::string devmode;
    std::string output;
};

// Why the tickets of this printer carry no job ticket; empty when they do.
std::string ExplainNoJobTicket(const ProductData& product)
{
    if (!RenBase::HasJobTicket(product.GetControllerFamily()))
        return "controllers of its family " + std::to_string(product.GetControllerFamily()) + " read none";
    if ((product.GetCapability() & PrintDriver::kPrivateNamespaceCapability) == 0)
        return "bit 10 of its driver's capability word is clear";
    return {};
}

// What of the devmode's settings is not in its job ticket, and why; empty when nothing is amiss.
std::string ExplainSettings(const Devmode& devmode)
{
    const std::string noSettings = "this is the job ticket of the defaults: ";
    const auto parts = LocateDriverParts(devmode.DriverExtra());
    if (!parts)
        return noSettings + "there is no maker's part (" + ExplainNoOemPart(devmode.DriverExtra()) + ")";
    const OemContent content = ReadOemPart(*parts->oem);
    if (!content.fault.empty())
        return noSettings + "the maker's part is damaged (" + content.fault + ")";
    const StoredSettings settings = ReadStoredSettings(content);
    if (!settings.fault.empty())
        return noSettings + settings.fault;
    if (!settings.isPresent)
        return noSettings + "the maker's part has no settings";
    std::string untaken;
    for (const std::string& feature : FindUntakenSettings(settings.features))
        untaken += (untaken.empty() ? "" : ", ") + feature;
    return untaken.empty() ? "" : "settings that make no value of their feature count as not set: " + untaken;
}

void Print(const JobTicketArguments& arguments, const StandardStreams& streams)
{
    Devmode devmode = ReadDevmode(arguments.devmode, streams);
    const PrinterHandle printer = PrinterHandle::Open(arguments.printer, PrinterHandle::Access::Use);
    ProductData product(ReadInstalledModel(printer, arguments.printer));
    XDevmode settings(devmode.Raw());
    ByteBuffer text;
    RenJtifForXps(printer.Get(), settings, product).GenerateJtif(text);
    WriteOutput(arguments.output, {reinterpret_cast<const char*>(text.data()), text.size()}, streams);

    if (const std::string why = ExplainNoJobTicket(product); !why.empty())
        WriteNote("tickets of the printer \"" + arguments.printer + "\" carry no job ticket: " + why, streams);
    if (const std::string why = ExplainSettings(devmode); !why.empty())
        WriteNote(arguments.devmode + ": " + why, streams);
}

} // namespace

void AddJobTicketCommand(CLI::App& program, Action& chosen)
{
    const auto arguments = std::make_shared<JobTicketArguments>();
    CLI::App& command = *program.add_subcommand("jobticket", "Print the job ticket text of a devmode");
    command.add_option("--printer", arguments->printer, "The printer's name")->required();
    command.add_option("DEVMODE", arguments->devmode, "A devmode; - is standard input")->required();
    command.add_option("-o", arguments->output, "Where it goes; - or nothing is standard output");
    OnCommand(command, chosen, [arguments](const StandardStreams& streams) { Print(*arguments, streams); });
}
