// The core driver's private part of a devmode, as far as the service's documents show it: 16-bit values at fixed
// offsets, one set for each layout.
#pragma once

#include <cstdint>
#include <optional>
#include <span>

#include "oempart.h"

struct CoreSettings
{
    std::uint16_t pagesPerSheet = 1;
    bool booklet = false;
    bool reversePageOrder = false;
    bool rotatedLandscape = false;                 // PostScript only
    std::optional<std::uint16_t> trueTypeDownload; // PostScript only: 0 automatic, 1 outline, 2 bitmap, 3 native
};

// What lies beyond the part keeps its default.
[[nodiscard]] CoreSettings ReadCoreSettings(CoreDriverLayout layout, std::span<const std::byte> core);
