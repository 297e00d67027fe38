#include <windows.h>

#include <atomic>

#include "winport/versionoverride.h"

namespace
{

// Aligned so that both numbers change in one store; clang calls a library for a pair that is not.
struct alignas(2 * sizeof(DWORD)) Version
{
    DWORD major;
    DWORD minor;
};

constexpr Version kWindows10 = {10, 0};
constexpr DWORD kBuildNumber = 19045; // the last Windows 10, 22H2
constexpr DWORD kPlatformNt = 2;      // VER_PLATFORM_WIN32_NT

std::atomic<Version> g_version{kWindows10};
static_assert(std::atomic<Version>::is_always_lock_free);

} // namespace

void winport::SetVersion(DWORD major, DWORD minor) noexcept
{
    g_version.store({major, minor});
}

void winport::ResetVersion() noexcept
{
    g_version.store(kWindows10);
}

BOOL WINAPI GetVersionExW(OSVERSIONINFOW* versionInformation)
{
    if (versionInformation->dwOSVersionInfoSize != sizeof(OSVERSIONINFOW))
    {
        SetLastError(ERROR_INSUFFICIENT_BUFFER);
        return FALSE;
    }
    const Version version = g_version.load();
    *versionInformation = {sizeof(OSVERSIONINFOW), version.major, version.minor, kBuildNumber, kPlatformNt, {}};
    return TRUE;
}
