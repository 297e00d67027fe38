// The files of driver packages: copied beside their targets first, then renamed over them, so that a target is always
// a whole file and a process that has the old one loaded keeps it. A package is put in place as a whole or not at all,
// but for a process that is killed in the middle.
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
    // Removes the copies that were not put in place, and brings back what the others replaced unless they are to be
    // kept.
    ~DriverFileCopy();
    DriverFileCopy(const DriverFileCopy&) = delete;
    DriverFileCopy& operator=(const DriverFileCopy&) = delete;

    // Copies an existing file beside its target, which has the name that the package gives it. A file that is its own
    // target already is left alone; so is, when only newer ones are wanted, a target that is not older.
    void Stage(const std::filesystem::path& named, const std::filesystem::path& source, bool onlyNewer);
    // Renames the copies over their targets. Throws at the first that cannot be: a target that is a folder, for one.
    void PutInPlace();
    // The files stay as they are now.
    void Keep() noexcept;

private:
    struct Staged
    {
        std::filesystem::path copy;
        std::filesystem::path target;
        std::filesystem::path former; // where the replaced file is until all is done
        bool hasFormer = false;
        bool isInPlace = false;
    };

    std::filesystem::path m_folder;
    std::vector<Staged> m_staged;
    bool m_isKept = false;
};

} // namespace winport::spooler
