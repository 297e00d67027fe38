#include "spooler/sqliteerror.h"

#include <sqlite3.h>

#include "spooler/win32error.h"

namespace winport::spooler
{

DWORD Win32ErrorOfSqlite(int result) noexcept
{
    switch (result & 0xFF) // the primary code
    {
    case SQLITE_CANTOPEN:
    case SQLITE_READONLY:
    case SQLITE_PERM:
    case SQLITE_AUTH:
        return ERROR_ACCESS_DENIED;
    case SQLITE_FULL:
        return ERROR_DISK_FULL;
    case SQLITE_IOERR:
        return ERROR_WRITE_FAULT;
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
        return ERROR_BUSY;
    case SQLITE_NOMEM:
    case SQLITE_TOOBIG:
        return ERROR_NOT_ENOUGH_MEMORY;
    case SQLITE_CORRUPT:
    case SQLITE_NOTADB:
    case SQLITE_ERROR: // a table or a column that is missing: the file is not a store of ours
        return ERROR_INVALID_DATA;
    default:
        return ERROR_GEN_FAILURE;
    }
}

void RequireSqlite(int result)
{
    if (result != SQLITE_OK)
        throw Win32Error(Win32ErrorOfSqlite(result));
}

} // namespace winport::spooler
