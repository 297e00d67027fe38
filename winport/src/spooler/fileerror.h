// The C library's errors as Win32 errors.
#pragma once

#include <windef.h>

namespace winport::spooler
{

DWORD Win32ErrorOfErrno(int error) noexcept;
// The same where a folder was to be found or made.
DWORD Win32ErrorOfFolder(int error) noexcept;

} // namespace winport::spooler
