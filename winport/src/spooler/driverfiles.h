// The files of driver packages: copied beside their targets first, then renamed over them, so that a target is always
// a whole file and a process that has the old one loaded keeps it.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include <windef.h>

namespace winport::spooler
{

// The file that a driver's package or record names, whatever the case of its letters: "x.dll" stands for its sibling
// "x.so" where only that exists. Throws ERROR_FILE_NOT_FOUND.
std::filesystem::path ExistingFile(const std::filesystem::path& named);

class DriverFileCopy
{
public:
    // The folder is made when it is missing.
    explicit DriverFileCopy(std::filesystem::path targetFolder);
    // Removes the copies that were not put in place.
    ~DriverFileCopy();
    DriverFileCopy(const DriverFileCopy&) = delete;
    DriverFileCopy& operator=(const DriverFileCopy&) = delete;

    // Copies an existing file beside its target, which has the name that the package gives it. A file that is its own
    // target already is left alone; so is, when only newer ones are wanted, a target that is not older.
    void Stage(const std::filesystem::path& named, const std::filesystem::path& source, bool onlyNewer);
    // Renames the copies over their targets.
    void PutInPlace();

private:
    struct Staged
    {
        std::filesystem::path copy;
        std::filesystem::path target;
    };

    std::filesystem::path m_folder;
    std::vector<Staged> m_staged;
};

} // namespace winport::spooler
