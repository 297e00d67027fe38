// SQLite's results as Win32 errors.
#pragma once

#include <windef.h>

namespace winport::spooler
{

DWORD Win32ErrorOfSqlite(int result) noexcept;

// Throws unless the result is SQLITE_OK.
void RequireSqlite(int result);

} // namespace winport::spooler
