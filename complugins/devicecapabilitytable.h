// The caches of a printer's capabilities: which there are, which capability each answers, and when it can be one.
//
// Their contents are laid out in docs/device-capabilities-caches.md.
#pragma once

#include <windows.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <iterator>

#include "utilitiesstaticlib/wideliteral.h"

namespace DeviceCapabilityTable
{

enum class Cache : std::uint8_t
{
    Papers,
    Bins,
    Resolutions,
    DependentFiles,
    MediaReady,
    Staple,
    MediaTypes,
    Device,
    Flags,
};

// Capability indices: DC_..., and from 65526 to 65533 the driver's own.
struct Indices
{
    WORD first = 1;
    WORD last = 0; // below the first: none
};

struct Row
{
    Cache cache = Cache::Papers;
    const WCHAR* name = nullptr;
    std::array<Indices, 4> indices;
    std::size_t minimumSize = 0; // bytes
    DWORD dirtyBits = 0;
};

// clang-format off
inline constexpr Row kRows[] = {
    // cache                name                      indices                                       least  dirty bits
    {Cache::Papers,         W("XPaperCaps"),          {{{0, 3}, {65529, 65529}}},                      16, 0x02000},
    {Cache::Bins,           W("XBinCaps"),            {{{6, 6}, {65526, 65526}}},                       8, 0x04000},
    {Cache::Resolutions,    W("XResolutions"),        {{{13, 13}, {65527, 65527}}},                    12, 0x00800},
    {Cache::DependentFiles, W("XDependentFilesCaps"), {{{14, 14}}},                                     8, 0x01000},
    {Cache::MediaReady,     W("XMediaReady"),         {{{29, 29}, {65528, 65528}}},                     8, 0x20000},
    {Cache::Staple,         W("XStaple"),             {{{30, 30}}},                                     8, 0x10000},
    {Cache::MediaTypes,     W("XMediaCaps"),          {{{34, 35}}},                                     8, 0x08000},
    {Cache::Device,         W("XDevCaps"),            {{{4, 5}, {26, 28}, {31, 32}, {65533, 65533}}},  48, 0x007FF},
    {Cache::Flags,          W("XCapsFlags"),          {{}},                                            12, 0},
};
// clang-format on

inline constexpr std::size_t kCacheCount = std::size(kRows);

// The flags come last, when all others are there.
inline constexpr Cache kSavingOrder[] = {
    Cache::Papers,         Cache::Bins,   Cache::MediaTypes, Cache::MediaReady,
    Cache::DependentFiles, Cache::Device, Cache::Staple,     Cache::Resolutions,
};

[[nodiscard]] constexpr const Row& RowOf(Cache cache) noexcept
{
    return kRows[static_cast<std::size_t>(cache)];
}

// Null for an index that no cache answers.
[[nodiscard]] constexpr const Row* FindRow(WORD index) noexcept
{
    for (const Row& row : kRows)
        for (const Indices& range : row.indices)
            if (index >= range.first && index <= range.last)
                return &row;
    return nullptr;
}

namespace Checks
{

constexpr bool RowsStandInTheOrderOfTheirCaches()
{
    for (std::size_t at = 0; at < kCacheCount; ++at)
        if (kRows[at].cache != static_cast<Cache>(at))
            return false;
    return true;
}

constexpr bool DirtyBitsAreTheirCachesOwn()
{
    DWORD seen = 0;
    for (const Row& row : kRows)
    {
        if ((seen & row.dirtyBits) != 0)
            return false;
        seen |= row.dirtyBits;
    }
    return true;
}

constexpr bool EveryIndexHasOneCache()
{
    for (const Row& row : kRows)
        for (const Indices& range : row.indices)
            for (std::uint32_t index = range.first; index <= range.last; ++index)
                if (FindRow(static_cast<WORD>(index)) != &row)
                    return false;
    return true;
}

constexpr bool EveryDirtyCacheIsSavedOnce()
{
    DWORD saved = 0;
    for (const Cache cache : kSavingOrder)
        saved += RowOf(cache).dirtyBits; // disjoint: a cache that stands twice makes the sum another
    DWORD all = 0;
    for (const Row& row : kRows)
        all += row.dirtyBits;
    return saved == all;
}

static_assert(RowsStandInTheOrderOfTheirCaches());
static_assert(DirtyBitsAreTheirCachesOwn());
static_assert(EveryIndexHasOneCache());
static_assert(EveryDirtyCacheIsSavedOnce());

} // namespace Checks

} // namespace DeviceCapabilityTable
