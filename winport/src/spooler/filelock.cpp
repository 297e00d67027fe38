#include "spooler/filelock.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <cerrno>

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

void FileLock::Unlock() const noexcept
{
    flock(m_file, LOCK_UN);
}

} // namespace winport::spooler
