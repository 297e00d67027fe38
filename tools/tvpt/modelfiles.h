// Where printer models are found.
#pragma once

#include <filesystem>
#include <string>

// The folder of the running program.
[[nodiscard]] std::filesystem::path ProgramFolder();

// A file, or the name of a shipped model, which lies in the folder "models" beside the program or beside its folder.
// Throws Failure when there is neither.
[[nodiscard]] std::filesystem::path FindModelFile(const std::string& nameOrFile);
