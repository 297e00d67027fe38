// The command line: commands, their arguments, and how a run ends.
#pragma once

#include <CLI/App.hpp>

#include <functional>
#include <string>
#include <vector>

#include "filebytes.h"

enum class ExitStatus
{
    Done = 0,
    Failed = 1, // one line on the error stream says what
    WrongUsage = 2,
};

// What the chosen command does, once the whole command line is known.
using Action = std::function<void(const StandardStreams&)>;

// Lets the command choose the action.
void OnCommand(CLI::App& command, Action& chosen, Action action);

// Runs the program. Arguments are UTF-8, the program's name left out. Nothing is thrown.
[[nodiscard]] ExitStatus RunTvpt(const std::vector<std::string>& arguments, const StandardStreams& streams) noexcept;
