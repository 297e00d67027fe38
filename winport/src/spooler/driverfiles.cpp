#include "spooler/driverfiles.h"

#include <unistd.h>

#include <atomic>

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

bool IsNotOlder(const fs::path& target, const fs::path& source)
{
    std::error_code error;
    const auto targetTime = fs::last_write_time(target, error);
    if (error)
        return false;
    const auto sourceTime = fs::last_write_time(source, error);
    return !error && targetTime >= sourceTime;
}

} // namespace

fs::path ExistingFile(const fs::path& named)
{
    std::error_code error;
    if (fs::is_regular_file(named, error))
        return named;
    const bool isModule = named.extension() == ".dll" || named.extension() == ".DLL";
    const fs::path sibling = fs::path(named).replace_extension(".so");
    Require(isModule && fs::is_regular_file(sibling, error), ERROR_FILE_NOT_FOUND);
    return sibling;
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
    for (const Staged& staged : m_staged)
        fs::remove(staged.copy, ignored);
}

void DriverFileCopy::Stage(const fs::path& source, bool onlyNewer)
{
    const fs::path target = m_folder / source.filename();
    std::error_code error;
    if (fs::equivalent(source, target, error) || (onlyNewer && IsNotOlder(target, source)))
        return;
    const fs::path copy = m_folder / (source.filename().native() + TemporarySuffix());
    m_staged.push_back({copy, target}); // before the copy, so that half of one is removed too
    fs::copy_file(source, copy, error);
    RequireNoError(error);
}

void DriverFileCopy::PutInPlace()
{
    while (!m_staged.empty())
    {
        std::error_code error;
        fs::rename(m_staged.back().copy, m_staged.back().target, error);
        RequireNoError(error);
        m_staged.pop_back();
    }
}

} // namespace winport::spooler
