// What differs between the platforms for a command-line program: one implementation each, chosen by the build.
#pragma once

#include <cstdio>
#include <filesystem>
#include <string>
#include <vector>

namespace platform
{

// The program's arguments in UTF-8, its own name left out.
[[nodiscard]] std::vector<std::string> Arguments(int count, char** values);
// Standard streams carry bytes: a devmode or a document must come out as it is.
void PrepareStandardStreams();
// Opens a file that must not exist yet; null when it does or cannot be made.
[[nodiscard]] std::FILE* CreateNewFile(const std::filesystem::path& path);
// Whether the spooler's store may be chosen (--store), or is the machine's own.
[[nodiscard]] bool StoreCanBeChosen() noexcept;

} // namespace platform
