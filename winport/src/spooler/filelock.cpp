#include "spooler/filelock.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <cerrno>
#include <thread>

#include "spooler/fileerror.h"
#include "spooler/win32error.h"

namespace winport::spooler
{

FileLock::FileLock(const std::filesystem::path& file) : m_file(open(file.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0644))
{
    Require(m_file >= 0, Win32ErrorOfErrno(errno));
}

FileLock::~FileLock()
{
    close(m_file);
}

void FileLock::Lock() const
{
    while (flock(m_file, LOCK_EX) != 0)
        Require(errno == EINTR, Win32ErrorOfErrno(errno));
}

// The system has no such lock that ends by a time: it is tried again and again.
bool FileLock::LockWithin(std::chrono::milliseconds limit) const
{
    constexpr std::chrono::milliseconds kPause(5);
    const auto end = std::chrono::steady_clock::now() + limit;
    while (flock(m_file, LOCK_EX | LOCK_NB) != 0)
    {
        Require(errno == EWOULDBLOCK || errno == EINTR, Win32ErrorOfErrno(errno));
        if (std::chrono::steady_clock::now() >= end)
            return false;
        std::this_thread::sleep_for(kPause);
    }
    return true;
}

void FileLock::Unlock() const noexcept
{
    flock(m_file, LOCK_UN);
}

} // namespace winport::spooler
