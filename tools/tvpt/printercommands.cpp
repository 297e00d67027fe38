#include "printercommands.h"

#include <memory>
#include <nlohmann/json.hpp>
#include <optional>

#include <tvutil/devicesettingsmanager.h>

#include "customsizecommands.h"
#include "featurereport.h"
#include "jsonoutput.h"
#include "oempart.h"
#include "printercaches.h"
#include "printerinstall.h"
#include "printersetup.h"

namespace
{

using nlohmann::ordered_json;

struct PrinterArguments
{
    std::string name;
    std::string model;
    bool json = false;
};

struct OurPrinter
{
    PrinterSummary summary;
    std::optional<std::uint64_t> capability;
    bool isComplete = false;
};

std::vector<OurPrinter> ListOurPrinters()
{
    std::vector<OurPrinter> ours;
    for (PrinterSummary& summary : ListLocalPrinters())
    {
        // A printer may go between the list and the question, or between the question and its answer.
        const std::optional<PrinterHandle> printer = PrinterHandle::OpenIfExists(summary.name.ToUtf8());
        const SetUpState state = printer ? SetUpStateOf(*printer) : SetUpState::NotOurs;
        if (state != SetUpState::NotOurs)
            ours.push_back({std::move(summary), printer->Capability(), state == SetUpState::Complete});
    }
    return ours;
}

ordered_json CapabilityToJson(const std::optional<std::uint64_t>& word)
{
    return word ? ordered_json(HexText(*word)) : ordered_json();
}

std::string ListPrinters(bool asJson)
{
    ordered_json list = ordered_json::array();
    std::string lines;
    for (const OurPrinter& printer : ListOurPrinters())
    {
        const std::string name = printer.summary.name.ToUtf8();
        const std::string driver = printer.summary.driverName.ToUtf8();
        list.push_back({{"name", name},
                        {"driver", driver},
                        {"capability", CapabilityToJson(printer.capability)},
                        {"complete", printer.isComplete}});
        lines += name + "\t" + driver + (printer.isComplete ? "\n" : "\tincomplete\n");
    }
    return asJson ? JsonText(list) : lines;
}

ordered_json DriverToJson(const DriverSummary& driver)
{
    ordered_json files = ordered_json::array();
    for (const CXString& file : driver.dependentFiles)
        files.push_back(file.ToUtf8());
    return {{"name", driver.name.ToUtf8()},
            {"driverFile", driver.driverFile.ToUtf8()},
            {"dataFile", driver.dataFile.ToUtf8()},
            {"configFile", driver.configFile.ToUtf8()},
            {"dependentFiles", files}};
}

ordered_json ModelToJson(const PrinterModel& model)
{
    const bool isPostScript = model.coreDriver.kind == PrinterModel::CoreDriverKind::PostScript;
    ordered_json forms = ordered_json::array();
    for (const PrinterModel::Form& form : model.forms)
        forms.push_back(
            {{"paperId", form.paperId}, {"name", form.name.ToUtf8()}, {"width", form.width}, {"length", form.length}});
    return {{"name", model.name.ToUtf8()},
            {"controllerFamily", model.controllerFamily},
            {"color", model.IsColor()},
            {"coreDriver",
             {{"kind", LayoutName(isPostScript ? CoreDriverLayout::PostScript : CoreDriverLayout::Unidrv)},
              {"privateSize", model.coreDriver.privateSize}}},
            {"maxCopies", model.maxCopies},
            {"forms", forms}};
}

std::string ShowPrinter(const std::string& name, bool asJson)
{
    const PrinterHandle printer = PrinterHandle::Open(name, PrinterHandle::Access::Use);
    const PrinterModel model = ReadInstalledModel(printer, name, SetUpState::Incomplete);
    const PrinterSummary summary = DescribePrinter(printer, name);
    DeviceSettingsManager settings{Printer(printer.Get())};
    const ordered_json shown = {{"name", summary.name.ToUtf8()},
                                {"port", summary.portName.ToUtf8()},
                                {"capability", CapabilityToJson(printer.Capability())},
                                {"complete", SetUpStateOf(printer) == SetUpState::Complete},
                                {"deviceSettings", DescribeFeatures(*settings.GetDefaultAttributeBytesIndexedList())},
                                {"driver", DriverToJson(DescribeDriver(printer, name))},
                                {"model", ModelToJson(model)}};
    return asJson ? JsonText(shown) : PlainText(shown);
}

} // namespace

void AddPrinterCommands(CLI::App& program, Action& chosen)
{
    const auto arguments = std::make_shared<PrinterArguments>();
    CLI::App& printer = *program.add_subcommand("printer", "Install, list and remove printers");
    printer.require_subcommand(1);

    CLI::App& add = *printer.add_subcommand("add", "Install a printer with its driver package, on the port FILE:");
    add.add_option("NAME", arguments->name, "The printer's name")->required();
    add.add_option("--model", arguments->model, "A printer model: a file, or the name of a shipped one")->required();
    OnCommand(add, chosen, [arguments](const StandardStreams&) { InstallPrinter(arguments->name, arguments->model); });

    CLI::App& list = *printer.add_subcommand("list", "List the printers of this driver family");
    list.add_flag("--json", arguments->json, "As JSON");
    OnCommand(list, chosen,
              [arguments](const StandardStreams& streams) { WriteOutput({}, ListPrinters(arguments->json), streams); });

    CLI::App& show = *printer.add_subcommand("show", "Show a printer, its driver and its model");
    show.add_option("NAME", arguments->name, "The printer's name")->required();
    show.add_flag("--json", arguments->json, "As JSON");
    OnCommand(show, chosen,
              [arguments](const StandardStreams& streams)
              { WriteOutput({}, ShowPrinter(arguments->name, arguments->json), streams); });

    CLI::App& refresh = *printer.add_subcommand(
        "refresh", "Read the printer's model and the custom sizes again; completes an installation");
    refresh.add_option("NAME", arguments->name, "The printer's name")->required();
    OnCommand(refresh, chosen,
              [arguments](const StandardStreams& streams)
              {
                  std::string notes;
                  if (!RefreshPrinter(arguments->name))
                      notes = "The device settings are in the format of a later driver and stay as they are.\n";
                  notes += DescribeUnusableSizes();
                  if (!notes.empty())
                      WriteOutput({}, notes, streams);
              });

    CLI::App& caches = *printer.add_subcommand("caches", "Show what a conversion finds of the printer's capabilities");
    caches.add_option("NAME", arguments->name, "The printer's name")->required();
    caches.add_flag("--json", arguments->json, "As JSON");
    OnCommand(caches, chosen,
              [arguments](const StandardStreams& streams)
              { WriteOutput({}, ShowPrinterCaches(arguments->name, arguments->json), streams); });

    AddCustomSizeCommands(printer, chosen);

    CLI::App& remove = *printer.add_subcommand("remove", "Remove a printer, and its driver with the last one");
    remove.add_option("NAME", arguments->name, "The printer's name")->required();
    OnCommand(remove, chosen, [arguments](const StandardStreams&) { RemovePrinter(arguments->name); });
}
