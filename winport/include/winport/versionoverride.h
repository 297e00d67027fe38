// The version that GetVersionExW answers, for tests.
#pragma once

#include "../windef.h"

namespace winport
{

WINPORT_API void SetVersion(DWORD major, DWORD minor) noexcept;
WINPORT_API void ResetVersion() noexcept; // 10.0 again

} // namespace winport
