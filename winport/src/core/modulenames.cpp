#include "core/modulenames.h"

#include <algorithm>
#include <filesystem>

#include <strings.h>

#include "core/existingfile.h"

namespace winport
{
namespace
{

namespace fs = std::filesystem;

constexpr std::string_view kSystemModules[] = {
    "kernel32.dll", "ole32.dll", "oleaut32.dll", "advapi32.dll", "winspool.drv",
};

bool EqualsIgnoringCase(std::string_view left, std::string_view right)
{
    return left.size() == right.size() && strncasecmp(left.data(), right.data(), left.size()) == 0;
}

std::string WithSlashes(std::string_view path)
{
    std::string result(path);
    std::replace(result.begin(), result.end(), '\\', '/');
    return result;
}

// With the extension that Windows would add.
std::string FullName(std::string_view name)
{
    std::string result = WithSlashes(name);
    const std::size_t lastPart = result.rfind('/') + 1; // npos + 1 is 0
    if (result.find('.', lastPart) == std::string::npos)
        result += ".dll";
    else if (result.back() == '.')
        result.pop_back();
    return result;
}

} // namespace

bool HasFolder(std::string_view name)
{
    return name.find_first_of("/\\") != std::string_view::npos;
}

std::vector<std::string> ModuleFileNames(std::string_view name)
{
    constexpr std::string_view kExtension = ".dll";
    std::vector<std::string> names;
    const std::string full = FullName(name);
    names.push_back(full);
    const std::size_t stem = full.size() - std::min(full.size(), kExtension.size());
    if (EqualsIgnoringCase(std::string_view(full).substr(stem), kExtension))
        names.push_back(full.substr(0, stem) + ".so");
    return names;
}

std::string FindModuleFile(std::string_view name)
{
    const fs::path folder = HasFolder(name) ? fs::path() : fs::path(ExecutablePath()).parent_path();
    std::vector<fs::path> candidates;
    for (const std::string& candidate : ModuleFileNames(name))
        candidates.push_back(folder / candidate);
    const fs::path file = FindExistingFile(candidates);
    return file.empty() ? std::string() : AbsolutePath(file.native());
}

bool IsSystemModule(std::string_view name)
{
    const std::string full = FullName(name);
    return std::any_of(std::begin(kSystemModules), std::end(kSystemModules),
                       [&full](std::string_view known) { return EqualsIgnoringCase(full, known); });
}

std::string AbsolutePath(std::string_view path)
{
    std::error_code error;
    const fs::path absolute = fs::absolute(fs::path(path), error);
    return error ? std::string(path) : absolute.lexically_normal().native();
}

std::string ExecutablePath()
{
    std::error_code error;
    return fs::read_symlink("/proc/self/exe", error).native();
}

} // namespace winport
