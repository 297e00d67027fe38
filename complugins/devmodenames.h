// The two names of a devmode, which others may have left without an end.
#pragma once

#include <windows.h>

#include <iterator>

// Only in a public part with everything that was ever added to the structure: of a shorter one nobody knows whether it
// is a devmode of that kind.
inline void TerminateDevmodeNames(DEVMODEW& devmode) noexcept
{
    constexpr WORD kFullPublicPart = 220;
    static_assert(sizeof(DEVMODEW) == kFullPublicPart);
    if (devmode.dmSize < kFullPublicPart)
        return;
    devmode.dmDeviceName[std::size(devmode.dmDeviceName) - 1] = WCHAR();
    devmode.dmFormName[std::size(devmode.dmFormName) - 1] = WCHAR();
}
