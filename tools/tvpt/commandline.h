// The command line: commands, their arguments, and how a run ends.
#pragma once

#include <CLI/App.hpp>

#include <functional>
#include <string>
#include <type_traits>
#include <vector>

#include "filebytes.h"

enum class ExitStatus
{
    Done = 0,
    Failed = 1, // one line on the error stream says what
    WrongUsage = 2,

    // Of a command whose status answers a question, as that of diff does:
    FaultsFound = 1,
    Trouble = 2, // there is no answer
};

// What the chosen command does, once the whole command line is known.
struct Action
{
    std::function<ExitStatus(const StandardStreams&)> run;
    ExitStatus onFailure = ExitStatus::Failed;
};

// Lets the command choose what to do. What returns a status answers by it, and is in trouble when it throws.
template <class Work>
void OnCommand(CLI::App& command, Action& chosen, Work work)
{
    command.callback(
        [&chosen, work]
        {
            if constexpr (std::is_same_v<std::invoke_result_t<const Work&, const StandardStreams&>, ExitStatus>)
                chosen = {work, ExitStatus::Trouble};
            else
                chosen.run = [work](const StandardStreams& streams)
                {
                    work(streams);
                    return ExitStatus::Done;
                };
        });
}

// Runs the program. Arguments are UTF-8, the program's name left out. Nothing is thrown.
[[nodiscard]] ExitStatus RunTvpt(const std::vector<std::string>& arguments, const StandardStreams& streams) noexcept;
