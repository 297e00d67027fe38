#include "modelfiles.h"

#include <windows.h>

#include <system_error>
#include <vector>

#include "failure.h"
#include "filebytes.h"

namespace
{

namespace fs = std::filesystem;

bool IsFile(const fs::path& path)
{
    std::error_code error;
    return fs::is_regular_file(path, error);
}

} // namespace

fs::path ProgramFolder()
{
    std::vector<WCHAR> path(MAX_PATH);
    for (;;)
    {
        const DWORD length = GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size()));
        if (length == 0)
            FailWithWin32Error("finding the program's folder", "", GetLastError());
        if (length < path.size())
            return fs::path(path.data(), path.data() + length).parent_path();
        path.resize(path.size() * 2);
    }
}

fs::path FindModelFile(const std::string& nameOrFile)
{
    const fs::path given = PathFromUtf8(nameOrFile);
    if (IsFile(given))
        return fs::absolute(given);
    if (!given.has_parent_path() && given.has_filename())
    {
        const fs::path program = ProgramFolder();
        for (const fs::path& folder : {program / "models", program.parent_path() / "models"})
            if (fs::path file = folder / PathFromUtf8(nameOrFile + ".json"); IsFile(file))
                return file;
    }
    Fail("finding the printer model", nameOrFile, "neither a file nor the name of a shipped model");
}
