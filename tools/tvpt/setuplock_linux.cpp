#include "setuplock.h"

#include <windows.h>
#include <winspool.h>

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>

#include "driverpackage.h"
#include "failure.h"
#include "filebytes.h"
#include "printerhandle.h"

// An advisory lock on the folder of drivers: the system opens it when the process ends, and no file is left behind.
class SetupLock::Owner
{
public:
    explicit Owner(const std::filesystem::path& folder)
        : m_folder(open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC))
    {
        if (m_folder < 0)
            FailWithErrno();
        while (flock(m_folder, LOCK_EX) != 0)
        {
            const int error = errno;
            if (error == EINTR)
                continue;
            close(m_folder);
            errno = error;
            FailWithErrno();
        }
    }

    ~Owner()
    {
        close(m_folder);
    }

    Owner(const Owner&) = delete;
    Owner& operator=(const Owner&) = delete;

private:
    [[noreturn]] static void FailWithErrno()
    {
        Fail("locking the printers' set-up", SpoolerPlace(), std::generic_category().message(errno));
    }

    int m_folder;
};

SetupLock::SetupLock() : m_owner(std::make_unique<Owner>(DriverFolder()))
{
}

SetupLock::~SetupLock() = default;
