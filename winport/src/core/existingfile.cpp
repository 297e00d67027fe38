#include "core/existingfile.h"

#include <memory>
#include <system_error>

#include <dirent.h>
#include <strings.h>

namespace winport
{
namespace
{

namespace fs = std::filesystem;

bool IsFile(const fs::path& path)
{
    std::error_code error;
    return fs::is_regular_file(path, error);
}

struct FolderCloser
{
    void operator()(DIR* folder) const noexcept
    {
        closedir(folder);
    }
};

// Null at the end, and for a folder that could not be opened.
const dirent* NextEntry(DIR* folder) noexcept
{
    return folder != nullptr ? readdir(folder) : nullptr;
}

fs::path FindIgnoringCase(const fs::path& named)
{
    const fs::path folder = named.has_parent_path() ? named.parent_path() : fs::path(".");
    const fs::path name = named.filename();
    // The library's own iterator ends the process when it finds no memory.
    const std::unique_ptr<DIR, FolderCloser> opened(opendir(folder.c_str()));
    fs::path found;
    for (const dirent* entry = NextEntry(opened.get()); entry != nullptr; entry = NextEntry(opened.get()))
    {
        if (strcasecmp(entry->d_name, name.c_str()) == 0 && (found.empty() || entry->d_name < found) &&
            IsFile(folder / entry->d_name))
            found = entry->d_name;
    }
    return found.empty() ? fs::path() : named.parent_path() / found;
}

} // namespace

fs::path FindExistingFile(const std::vector<fs::path>& names)
{
    for (const fs::path& name : names)
        if (IsFile(name))
            return name;
    for (const fs::path& name : names)
        if (fs::path found = FindIgnoringCase(name); !found.empty())
            return found;
    return {};
}

} // namespace winport
