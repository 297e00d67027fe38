#include "devmodecommands.h"

#include <memory>
#include <nlohmann/json.hpp>
#include <optional>

#include "corefeatures.h"
#include "devmodereconcile.h"
#include "devmodereport.h"
#include "devmodesettings.h"
#include "failure.h"
#include "jsonoutput.h"
#include "newdevmode.h"
#include "printersetup.h"

namespace
{

struct DevmodeArguments
{
    std::string printer;
    std::string file;
    std::string output;
    std::vector<std::string> settings;
    bool json = false;
};

void MakeNew(const DevmodeArguments& arguments, const StandardStreams& streams)
{
    const PrinterHandle printer = PrinterHandle::Open(arguments.printer, PrinterHandle::Access::Use);
    const PrinterModel model = ReadInstalledModel(printer, arguments.printer);
    Devmode devmode = MakeNewDevmode(model, DescribePrinter(printer, arguments.printer).name);
    ApplySettings(arguments.settings, devmode, &model);
    WriteOutput(arguments.output, devmode.Bytes(), streams);
}

// Nothing when no printer is named.
std::optional<PrinterModel> ReadModel(const std::string& printerName)
{
    if (printerName.empty())
        return std::nullopt;
    return ReadInstalledModel(PrinterHandle::Open(printerName, PrinterHandle::Access::Use), printerName);
}

const PrinterModel* OrNull(const std::optional<PrinterModel>& model)
{
    return model ? &*model : nullptr;
}

void Set(const DevmodeArguments& arguments, const StandardStreams& streams)
{
    Devmode devmode = ReadDevmode(arguments.file, streams);
    const std::optional<PrinterModel> model = ReadModel(arguments.printer);
    ApplySettings(arguments.settings, devmode, OrNull(model));
    WriteOutput(arguments.output, devmode.Bytes(), streams);
}

void Show(const DevmodeArguments& arguments, const StandardStreams& streams)
{
    const Devmode devmode = ReadDevmode(arguments.file, streams);
    const std::optional<PrinterModel> model = ReadModel(arguments.printer);
    nlohmann::ordered_json shown = DescribeDevmode(devmode, OrNull(model));
    if (model)
        shown["printer"] = CompareWithPrinter(devmode, arguments.printer, *model);
    if (!arguments.json)
        shown["core"]["features"] = CoreFeaturesInWords(shown["core"]["features"]);
    WriteOutput({}, arguments.json ? JsonText(shown) : PlainText(shown), streams);
}

// The words go to standard output, so the devmode has to go elsewhere: back to its file, unless told otherwise.
void Reconcile(const DevmodeArguments& arguments, const StandardStreams& streams)
{
    const std::string& output = arguments.output.empty() ? arguments.file : arguments.output;
    if (output == kStandardStream)
        throw UsageFailure("the devmode goes to a file: standard output is for what has changed; give -o FILE");
    Devmode devmode = ReadDevmode(arguments.file, streams);
    const std::string before(devmode.Bytes());
    const PrinterHandle printer = PrinterHandle::Open(arguments.printer, PrinterHandle::Access::Use);
    static_cast<void>(ReadInstalledModel(printer, arguments.printer)); // refuses other drivers' printers
    const std::string words = ReconcilePaper(printer, arguments.printer, devmode);
    if (!arguments.output.empty() || devmode.Bytes() != before)
        WriteOutput(output, devmode.Bytes(), streams);
    WriteOutput({}, words, streams);
}

void AddSettings(CLI::App& command, DevmodeArguments& arguments, bool required)
{
    command
        .add_option(
            "--set", arguments.settings,
            "A public field (dmCopies=3), a setting of the core driver (ms.10=2, or by its value in the data model "
            "ms.10=@5421), a feature of the document (feature.46=5421), or the application that the devmode "
            "comes from (app=excel.exe); may be repeated")
        ->type_name("KEY=VALUE")
        ->allow_extra_args(false)
        ->required(required);
}

} // namespace

void AddDevmodeCommands(CLI::App& program, Action& chosen)
{
    const auto arguments = std::make_shared<DevmodeArguments>();
    CLI::App& devmode = *program.add_subcommand("devmode", "Make, show and change devmodes");
    devmode.require_subcommand(1);

    CLI::App& make = *devmode.add_subcommand("new", "Make the devmode that the printer's driver would make");
    make.add_option("--printer", arguments->printer, "The printer's name")->required();
    make.add_option("-o", arguments->output, "Where it goes; - is standard output")->required();
    AddSettings(make, *arguments, false);
    OnCommand(make, chosen, [arguments](const StandardStreams& streams) { MakeNew(*arguments, streams); });

    CLI::App& show = *devmode.add_subcommand("show", "Show what a devmode holds");
    show.add_option("FILE", arguments->file, "A devmode; - is standard input")->required();
    show.add_option("--printer", arguments->printer, "Compare it with this printer's driver, and show all that it has");
    show.add_flag("--json", arguments->json, "As JSON");
    OnCommand(show, chosen, [arguments](const StandardStreams& streams) { Show(*arguments, streams); });

    CLI::App& reconcile =
        *devmode.add_subcommand("reconcile", "Make a devmode's paper agree with the printer's form list");
    reconcile.add_option("FILE", arguments->file, "A devmode; - is standard input")->required();
    reconcile.add_option("--printer", arguments->printer, "The printer's name")->required();
    reconcile.add_option("-o", arguments->output, "The file it goes to; without it, back to FILE");
    OnCommand(reconcile, chosen, [arguments](const StandardStreams& streams) { Reconcile(*arguments, streams); });

    CLI::App& set = *devmode.add_subcommand("set", "Change a devmode");
    set.add_option("FILE", arguments->file, "A devmode; - is standard input")->required();
    AddSettings(set, *arguments, true);
    set.add_option("--printer", arguments->printer, "The printer whose core driver's settings are set");
    set.add_option("-o", arguments->output, "Where it goes; - or nothing is standard output");
    OnCommand(set, chosen, [arguments](const StandardStreams& streams) { Set(*arguments, streams); });
}
