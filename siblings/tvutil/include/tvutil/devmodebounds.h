// Whether a devmode from outside may be believed what it says of its own size.
#pragma once

#include <windows.h>

#include <cstddef>

// The end of dmDitherType: what comes later was added to the structure afterwards, and is never read unasked.
inline constexpr WORD kSmallestPublicDevmode = offsetof(DEVMODEW, dmDitherType) + sizeof(DEVMODEW::dmDitherType);
static_assert(kSmallestPublicDevmode == 204);

// Whether it lies within `size` bytes: its public part reaches the end of dmDitherType, and what dmSize and
// dmDriverExtra declare is there. False for null.
[[nodiscard]] inline bool DevmodeFitsIn(const DEVMODEW* devmode, std::size_t size) noexcept
{
    constexpr std::size_t kSizesEnd = offsetof(DEVMODEW, dmDriverExtra) + sizeof(DEVMODEW::dmDriverExtra);
    if (devmode == nullptr || size < kSizesEnd)
        return false;
    return devmode->dmSize >= kSmallestPublicDevmode && std::size_t{devmode->dmSize} + devmode->dmDriverExtra <= size;
}
