#include "commandline.h"

#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>

#include <algorithm>
#include <exception>
#include <new>
#include <sstream>

#include <tvutil/cxstring.h>

#include "capabilitiescommands.h"
#include "checkcommand.h"
#include "devmodecommands.h"
#include "failure.h"
#include "filebytes.h"
#include "jobticketcommands.h"
#include "platform.h"
#include "printercommands.h"
#include "printerhandle.h"
#include "ticketcommands.h"

namespace
{

void ChooseStore(const std::string& folder)
{
    if (!platform::StoreCanBeChosen())
        throw UsageFailure("--store: the machine's spooler is used here");
    if (!SetEnvironmentVariableW(kStoreVariable, CXString::FromUtf8(folder).c_str()))
        FailWithWin32Error("choosing the store", folder, GetLastError());
}

// The parser tells only that a command is missing, not which word stood in its place or was an option that nobody
// knows. Empty when there is no such word.
std::string UnknownWord(const CLI::App& program)
{
    const CLI::App* last = &program;
    while (!last->get_subcommands().empty())
        last = last->get_subcommands().front();
    const std::vector<const CLI::App*> known = last->get_subcommands([](const CLI::App*) { return true; });
    std::vector<std::string> words = program.remaining(true);
    std::erase(words, "--"); // only says that what follows is no option
    if (known.empty() || words.empty())
        return {};
    const std::string quoted = "\"" + words.front() + "\"";
    if (words.front().starts_with('-'))
        return quoted + " is no option";
    std::string message = quoted + " is no command; known are ";
    for (const CLI::App* const command : known)
        message += (command == known.front() ? "" : ", ") + command->get_name();
    return message;
}

// An empty value would look like an option that was not given, and so be the standard stream.
void RefuseEmptyFileNames(CLI::App& command)
{
    for (const char* const name :
         {"-o", "--base", "--ticket", "--devmode", "--store", "--against", "DEVMODE", "FILE", "TICKET"})
        if (CLI::Option* const option = command.get_option_no_throw(name))
            option->check([](const std::string& file) { return file.empty() ? "no file is named" : std::string(); });
    for (CLI::App* const below : command.get_subcommands(nullptr))
        RefuseEmptyFileNames(*below);
}

ExitStatus Parse(CLI::App& program, const std::vector<std::string>& arguments, const StandardStreams& streams)
{
    std::vector<std::string> reversed(arguments.rbegin(), arguments.rend()); // as the parser takes them
    try
    {
        program.parse(std::move(reversed));
        return ExitStatus::Done;
    }
    catch (const CLI::Success& help)
    {
        std::ostringstream text;
        program.exit(help, text, streams.errors);
        WriteOutput({}, text.str(), streams);
        return ExitStatus::Done;
    }
    catch (const CLI::ParseError& error)
    {
        const std::string unknown = UnknownWord(program);
        streams.errors << "tvpt: " << OneLine(unknown.empty() ? error.what() : unknown) << '\n';
        return ExitStatus::WrongUsage;
    }
}

ExitStatus Run(const std::vector<std::string>& arguments, const StandardStreams& streams, ExitStatus& onFailure)
{
    CLI::App program("Plays the PrintTicket service to the Tavlen Print Ticket provider", "tvpt");
    program.allow_windows_style_options(false); // a path may begin with a slash
    program.require_subcommand(1);
    program.fallthrough(); // --store may stand behind the command
    std::string store;
    CLI::Option* const storeOption = program.add_option("--store", store, "Folder of the spooler's store");

    Action chosen;
    AddPrinterCommands(program, chosen);
    AddDevmodeCommands(program, chosen);
    AddTicketCommands(program, chosen);
    AddJobTicketCommand(program, chosen);
    AddCapabilitiesCommand(program, chosen);
    AddCheckCommand(program, chosen);
    RefuseEmptyFileNames(program);

    const ExitStatus parsed = Parse(program, arguments, streams);
    if (parsed != ExitStatus::Done || !chosen.run)
        return parsed;
    onFailure = chosen.onFailure;
    if (storeOption->count() > 0)
        ChooseStore(store);
    return chosen.run(streams);
}

} // namespace

ExitStatus RunTvpt(const std::vector<std::string>& arguments, const StandardStreams& streams) noexcept
{
    std::ostream& errors = streams.errors;
    ExitStatus onFailure = ExitStatus::Failed;
    try
    {
        return Run(arguments, streams, onFailure);
    }
    catch (const UsageFailure& failure)
    {
        errors << "tvpt: " << failure.what() << '\n';
        return ExitStatus::WrongUsage;
    }
    catch (const std::bad_alloc&)
    {
        errors << "tvpt: out of memory\n";
    }
    catch (const std::exception& exception)
    {
        errors << "tvpt: " << OneLine(exception.what()) << '\n';
    }
    catch (...)
    {
        errors << "tvpt: an unknown failure\n";
    }
    return onFailure;
}
