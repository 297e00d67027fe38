// From Windows' names of modules to files.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace winport
{

// A backslash separates folders as a slash does; drive letters are not known.
bool HasFolder(std::string_view name);

// The names under which a module may lie here, in the order of the search: the name itself, then for "x.dll" also
// "x.so". As on Windows, a name without extension means ".dll", and a final dot means no extension at all.
std::vector<std::string> ModuleFileNames(std::string_view name);

// The first of those that exists, absolute; empty if there is none. Where none has exactly these letters, one that
// differs in their case only is taken, as on Windows. A name without a folder is looked for beside the executable.
std::string FindModuleFile(std::string_view name);

// One of the system's modules, whose functions this layer has.
bool IsSystemModule(std::string_view name);

// A file in absolute form, without "." and "..".
std::string AbsolutePath(std::string_view path);

// The file of the running program.
std::string ExecutablePath();

} // namespace winport
