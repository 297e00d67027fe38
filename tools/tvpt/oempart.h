// The maker's part of a devmode, as a reader from outside sees it: where it is, whether it is sound, what it holds.
// Format: complugins/oemdevmode.h.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

enum class CoreDriverLayout
{
    PostScript,
    Unidrv,
};

[[nodiscard]] std::string_view LayoutName(CoreDriverLayout layout) noexcept;

// Where a devmode's driver area, the bytes behind the public part, holds which part.
struct DriverParts
{
    CoreDriverLayout layout = CoreDriverLayout::Unidrv;
    std::span<const std::byte> core; // the core driver's private part
    std::span<const std::byte> oem;  // the maker's part, OemDevmodeFormat::kSize bytes
};

struct OemEntry
{
    std::uint16_t key = 0;
    std::span<const std::byte> data;
};

struct OemContent
{
    std::uint32_t version = 0;
    std::uint32_t crc = 0;
    bool crcValid = false; // also for a part that holds no data
    std::size_t usedBytes = 0;
    // No value: entries run past the part, so none of them is believed.
    std::optional<std::vector<OemEntry>> entries;
};

// The PostScript place is asked first, the Unidrv place is the fallback; nothing when neither leads to a part with the
// right size and signature. The spans refer to the area that was given.
[[nodiscard]] std::optional<DriverParts> LocateDriverParts(std::span<const std::byte> driverExtra);
[[nodiscard]] OemContent ReadOemPart(std::span<const std::byte> part);
