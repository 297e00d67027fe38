#include "commandline.h"

#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>

#include <algorithm>
#include <exception>
#include <new>

#include <tvutil/cxstring.h>

#include "devmodecommands.h"
#include "failure.h"
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
    if (folder.empty())
        throw UsageFailure("--store: no folder is given");
    if (!SetEnvironmentVariableW(kStoreVariable, CXString::FromUtf8(folder).c_str()))
        FailWithWin32Error("choosing the store", folder, GetLastError());
}

ExitStatus Parse(CLI::App& program, const std::vector<std::string>& arguments, const StandardStreams& streams,
                 std::ostream& errors)
{
    std::vector<std::string> reversed(arguments.rbegin(), arguments.rend()); // as the parser takes them
    try
    {
        program.parse(std::move(reversed));
        return ExitStatus::Done;
    }
    catch (const CLI::Success& help)
    {
        program.exit(help, streams.out, errors);
        return ExitStatus::Done;
    }
    catch (const CLI::ParseError& error)
    {
        errors << "tvpt: " << OneLine(error.what()) << '\n';
        return ExitStatus::WrongUsage;
    }
}

ExitStatus Run(const std::vector<std::string>& arguments, const StandardStreams& streams, std::ostream& errors)
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

    const ExitStatus parsed = Parse(program, arguments, streams, errors);
    if (parsed != ExitStatus::Done || !chosen)
        return parsed;
    if (storeOption->count() > 0)
        ChooseStore(store);
    chosen(streams);
    return ExitStatus::Done;
}

} // namespace

void OnCommand(CLI::App& command, Action& chosen, Action action)
{
    command.callback([&chosen, action = std::move(action)] { chosen = action; });
}

ExitStatus RunTvpt(const std::vector<std::string>& arguments, const StandardStreams& streams,
                   std::ostream& errors) noexcept
{
    try
    {
        return Run(arguments, streams, errors);
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
    return ExitStatus::Failed;
}
