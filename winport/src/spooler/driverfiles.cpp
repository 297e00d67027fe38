#include "spooler/driverfiles.h"

#include <strings.h>
#include <unistd.h>

#include <atomic>

#include "core/existingfile.h"
#include "spooler/fileerror.h"
#include "spooler/names.h"
#include "spooler/win32error.h"

namespace winport::spooler
{

namespace fs = std::filesystem;

namespace
{

void RequireNoError(const std::error_code& error)
{
    Require(!error, Win32ErrorOfErrno(error.value()));
}

// Unlike any other process's and thread's.
std::string TemporarySuffix()
{
    static std::atomic<unsigned> counter = 0;
    return "." + std::to_string(getpid()) + "." + std::to_string(++counter) + ".tmp";
}

bool IsSameIgnoringCase(const fs::path& left, const fs::path& right)
{
    return strcasecmp(left.c_str(), right.c_str()) == 0;
}

bool IsNotOlder(const fs::path& target, const fs::path& source)
{
    std::error_code error;
    const auto targetTime = fs::last_write_time(target, error);
    if (error)
        return false;
    const auto sourceTime = fs::last_write_time(source, error);
    return !error && targetTime >= sourceTime;
}

// A second name for a file that is about to be replaced, or a copy where the file system knows no second names. False
// when there is no file.
bool KeepFormer(const fs::path& target, const fs::path& former)
{
    std::error_code error;
    fs::create_hard_link(target, former, error);
    if (error == std::errc::no_such_file_or_directory)
        return false;
    if (error)
        fs::copy_file(target, former, error);
    RequireNoError(error);
    return true;
}

} // namespace

fs::path ExistingFile(const fs::path& named)
{
    std::vector<fs::path> names = {named};
    if (IsSameIgnoringCase(named.extension(), ".dll"))
        names.push_back(fs::path(named).replace_extension(".so"));
    fs::path file = FindExistingFile(names);
    Require(!file.empty(), ERROR_FILE_NOT_FOUND);
    return file;
}

DriverFileCopy::DriverFileCopy(fs::path targetFolder) : m_folder(std::move(targetFolder))
{
    std::error_code error;
    fs::create_directories(m_folder, error);
    Require(!error, Win32ErrorOfFolder(error.value()));
}

DriverFileCopy::~DriverFileCopy()
{
    std::error_code ignored; // what cannot be removed now is a file that nobody names
    // The last first: a file that was staged twice goes back through both of its states.
    for (auto staged = m_staged.rbegin(); staged != m_staged.rend(); ++staged)
    {
        const bool goesBack = staged->isInPlace && !m_isKept;
        if (goesBack && staged->hasFormer)
        {
            // The only file of the former package: where it cannot go back it stays under its second name.
            fs::rename(staged->former, staged->target, ignored);
            continue;
        }
        if (goesBack)
            fs::remove(staged->target, ignored);
        fs::remove(staged->copy, ignored);
        fs::remove(staged->former, ignored);
    }
}

void DriverFileCopy::Stage(const fs::path& named, const fs::path& source, bool onlyNewer)
{
    fs::path name = named.filename();
    if (!IsSameIgnoringCase(name.extension(), source.extension())) // a module under the name that it goes by
        name.replace_extension(source.extension());
    // A file whose name differs in case only is replaced: on Windows the two could not lie side by side.
    const fs::path there = FindExistingFile({m_folder / name});
    const fs::path target = there.empty() ? m_folder / name : there;
    std::error_code error;
    if (fs::equivalent(source, target, error) || (onlyNewer && IsNotOlder(target, source)))
        return;
    const fs::path copy = m_folder / (name.native() + TemporarySuffix());
    const fs::path former = m_folder / (name.native() + TemporarySuffix());
    m_staged.push_back({copy, target, former, false, false}); // before the copy, so that half of one is removed too
    fs::copy_file(source, copy, error);
    RequireNoError(error);
}

void DriverFileCopy::PutInPlace()
{
    for (Staged& staged : m_staged)
    {
        staged.hasFormer = KeepFormer(staged.target, staged.former);
        std::error_code error;
        fs::rename(staged.copy, staged.target, error);
        RequireNoError(error);
        staged.isInPlace = true;
    }
}

void DriverFileCopy::Keep() noexcept
{
    m_isKept = true;
}

} // namespace winport::spooler
