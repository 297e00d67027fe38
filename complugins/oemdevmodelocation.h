// Where a devmode's driver extra, the bytes behind its public part, holds the maker's part. One rule for everybody who
// looks for it.
#pragma once

#include <array>
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

// Whether the bytes begin as a maker's part of ours does: with its size and signature.
[[nodiscard]] bool BeginsAsOemDevmode(std::span<const std::byte> bytes) noexcept;

// How far the search comes at one place.
enum class OemDevmodeFinding
{
    NoCoreSize, // no core driver notes its own size there
    NoRoom,     // the note leads to the end of the driver extra or beyond it
    WrongSignature,
    WrongSize, // what the part says its size is
    CutOff,    // the driver extra ends within the part
    Part,
};

struct OemDevmodeSearch
{
    OemDevmodeFinding finding;
    OemDevmodeLocation location; // without a meaning for NoCoreSize
};

// The same for people who want to know why there is no part: what is at either place, in the order of the search.
[[nodiscard]] std::array<OemDevmodeSearch, 2> SearchOemDevmode(std::span<const std::byte> driverExtra) noexcept;
