#include "spooler/fileerror.h"

#include <winerror.h>

#include <cerrno>

namespace winport::spooler
{

DWORD Win32ErrorOfErrno(int error) noexcept
{
    switch (error)
    {
    case EACCES:
    case EPERM:
    case EROFS:
    case EISDIR:
        return ERROR_ACCESS_DENIED;
    case ENOENT:
        return ERROR_FILE_NOT_FOUND;
    case ENOTDIR:
        return ERROR_PATH_NOT_FOUND;
    case ENAMETOOLONG:
    case ELOOP:
        return ERROR_BAD_PATHNAME;
    case ENOSPC:
    case EDQUOT:
        return ERROR_DISK_FULL;
    case ENOMEM:
        return ERROR_NOT_ENOUGH_MEMORY;
    default:
        return ERROR_WRITE_FAULT;
    }
}

DWORD Win32ErrorOfFolder(int error) noexcept
{
    return error == ENOENT ? ERROR_PATH_NOT_FOUND : Win32ErrorOfErrno(error);
}

} // namespace winport::spooler
