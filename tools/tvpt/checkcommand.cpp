#include "checkcommand.h"

#include <memory>
#include <nlohmann/json.hpp>
#include <optional>

#include "constructionrules.h"
#include "failure.h"
#include "jsonoutput.h"
#include "printeroffer.h"
#include "printschemadocument.h"
#include "utilitiesstaticlib/documentlimits.h"

namespace
{

constexpr char kCapabilitiesRoot[] = "PrintCapabilities";

struct CheckArguments
{
    std::string file;
    std::string against;
    bool json = false;
};

SchemaElement ReadTree(const std::string& file, const StandardStreams& streams)
{
    return LoadDocumentTree(ReadInput(file, documentlimits::kMaximumFileBytes, streams), file);
}

std::string InJson(const std::vector<Fault>& faults)
{
    nlohmann::ordered_json list = nlohmann::ordered_json::array();
    for (const Fault& fault : faults)
        list.push_back({{"line", fault.line}, {"path", fault.path}, {"rule", fault.rule}, {"message", fault.message}});
    return JsonText(list);
}

std::string InLines(const std::vector<Fault>& faults, const std::string& file)
{
    std::string text;
    for (const Fault& fault : faults)
        text += OneLine(file + ":" + std::to_string(fault.line) + ": " + fault.path + ": " + fault.message) + "\n";
    return text;
}

void CheckAgainst(const SchemaElement& root, const CheckArguments& arguments, const StandardStreams& streams,
                  FaultList& faults)
{
    if (DescribeRootFault(root, kCapabilitiesRoot).empty())
        throw UsageFailure("--against is for a PrintTicket; " + arguments.file + " is a " + kCapabilitiesRoot);
    const SchemaElement capabilities = ReadTree(arguments.against, streams);
    if (const std::string fault = DescribeRootFault(capabilities, kCapabilitiesRoot); !fault.empty())
        Fail("reading the document", arguments.against, fault);
    const PrinterOffer offer(capabilities);
    CheckConstruction(root, offer.FindManyChoice(root), faults);
    offer.Compare(root, faults);
}

ExitStatus Check(const CheckArguments& arguments, const StandardStreams& streams)
{
    if (arguments.file == kStandardStream && arguments.against == kStandardStream)
        throw UsageFailure("FILE and --against cannot both be standard input");
    const ComApartment apartment;
    const SchemaElement root = ReadTree(arguments.file, streams);
    FaultList faults;
    if (arguments.against.empty())
        CheckConstruction(root, {}, faults);
    else
        CheckAgainst(root, arguments, streams, faults);
    const std::vector<Fault> found = faults.ByLine();
    WriteOutput({}, arguments.json ? InJson(found) : InLines(found, arguments.file), streams);
    return found.empty() ? ExitStatus::Done : ExitStatus::FaultsFound;
}

} // namespace

void AddCheckCommand(CLI::App& program, Action& chosen)
{
    const auto arguments = std::make_shared<CheckArguments>();
    CLI::App& check =
        *program.add_subcommand("check", "Hold a PrintTicket or PrintCapabilities against the Print Schema's rules");
    check.add_option("FILE", arguments->file, "The document; - is standard input")->required();
    check.add_option("--against", arguments->against, "The PrintCapabilities of the printer that a ticket is for");
    check.add_flag("--json", arguments->json, "As JSON");
    OnCommand(check, chosen, [arguments](const StandardStreams& streams) { return Check(*arguments, streams); });
}
