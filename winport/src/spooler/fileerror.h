// The C library's errors as Win32 errors.
#pragma once

#include <windef.h>

namespace winport::spooler
{

DWORD Win32ErrorOfErrno(int error) noexcept;

} // namespace winport::spooler
