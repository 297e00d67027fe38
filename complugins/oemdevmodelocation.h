// Where a devmode's driver extra, the bytes behind its public part, holds the maker's part. One rule for everybody who
// looks for it.
#pragma once

#include <cstddef>
#include <optional>
#include <span>

enum class CoreDriverLayout
{
    PostScript,
    Unidrv,
};

struct OemDevmodeLocation
{
    CoreDriverLayout layout; // the one whose size field led there
    std::size_t offset;      // into the driver extra; the core driver's private part is what lies before it
};

// The PostScript layout is asked first, on purpose; the Unidrv layout is only the fallback. Nothing when neither leads
// to a whole part with the right size and signature.
[[nodiscard]] std::optional<OemDevmodeLocation> LocateOemDevmode(std::span<const std::byte> driverExtra) noexcept;
