// Where the core drivers' private parts hold their settings: 16-bit values at fixed byte offsets, one set of them for
// each layout. Constant data.
#pragma once

#include <cstddef>
#include <cstdint>
#include <iterator>
#include <optional>

#include "complugins/msdriverkind.h"

// How a setting lies at its place.
enum class MsDevmodeCell : std::uint8_t
{
    NotAvailable,  // the layout knows no such setting
    NoOffset,      // the layout has lost its place: an offset that is beyond every part
    Public,        // in a field of DEVMODEW
    PublicRotated, // in a field of DEVMODEW; for drivers of the PostScript kind the bit tells one landscape from
                   // another
    Word,
    Bit,
    InverseBit,
    PagesPerSheet, // a word that it shares with the booklet
    Booklet,
    QualityMacro, // a word, and behind it another that says whether it is a negative number
    Driver,       // at kDriverBase plus what the driver's own table says
};

struct MsDevmodePlace
{
    MsDevmodeCell cell = MsDevmodeCell::NotAvailable;
    std::uint32_t offset = 0;
    std::uint16_t mask = 0; // of the word at the offset
};

struct MsDevmodeOffsetRow
{
    std::uint32_t feature = 0;
    MsDevmodePlace postScript;
    MsDevmodePlace unidrv;
};

struct MsUnidrvOffset
{
    std::uint32_t feature;
    std::uint32_t relativeOffset;
};

struct MsUnidrvOffsetTable
{
    std::uint32_t kind;
    std::uint32_t platform;    // 0: any that no row before has
    MsUnidrvOffset offsets[5]; // the end is a row of zeros
};

namespace MsDevmodeOffsets
{

inline constexpr std::uint32_t kNoOffset = static_cast<std::uint32_t>(-1);
inline constexpr std::uint32_t kDriverBase = 48;
inline constexpr std::uint16_t kBookletInPagesPerSheet = 6; // the pages of a sheet that say "booklet"

// The sizes of the private parts whose layouts are known, as they note them (complugins/oemdevmode.h).
inline constexpr std::uint16_t kPostScriptSizes[] = {708, 724};
inline constexpr std::uint16_t kUnidrvSizes[] = {560, 564, 572};

namespace Rows
{
using enum MsDevmodeCell;

// clang-format off
inline constexpr MsDevmodeOffsetRow kRows[] = {
    //  feature  PostScript layout             Unidrv layout
    {   3,       {PublicRotated, 5, 0x2},      {Public} },
    {   19,      {PagesPerSheet, 136},         {PagesPerSheet, 24} },
    {   20,      {Booklet, 136},               {Booklet, 24} },
    {   21,      {Word, 132},                  {Word, 20} },
    {   22,      {NotAvailable},               {QualityMacro, 28} },
    {   23,      {Bit, 5, 0x20},               {InverseBit, 16, 0x10} },
    {   24,      {Word, 124},                  {NoOffset, kNoOffset} },
    {   25,      {Word, 140},                  {NoOffset, kNoOffset} },
    {   26,      {Bit, 4, 0x2},                {NotAvailable} },
    {   27,      {Bit, 4, 0x4},                {NotAvailable} },
    {   28,      {Bit, 4, 0x10},               {NotAvailable} },
    {   29,      {Word, 128},                  {NoOffset, kNoOffset} },
    {   30,      {NotAvailable},               {InverseBit, 16, 0x2} },
    {   31,      {NotAvailable},               {Driver} },
    {   32,      {NotAvailable},               {Driver} },
    {   33,      {NotAvailable},               {Driver} },
    {   34,      {NotAvailable},               {Driver} },
    {   35,      {NotAvailable},               {Driver} },
};
// clang-format on
} // namespace Rows
using Rows::kRows;

// clang-format off
// The first row that fits counts.
inline constexpr MsUnidrvOffsetTable kUnidrvTables[] = {
    //  kind                     platform                  feature and offset
    {   MsDriverKind::kUnidrvB,  MsDriverKind::kPlatformA, {{31, 4}, {32, 6}, {35, 8}, {34, 10}, {}} },
    {   MsDriverKind::kUnidrvB,  0,                        {{31, 4}, {32, 6}, {35, 8}, {33, 10}, {}} },
    {   MsDriverKind::kUnidrvA,  MsDriverKind::kPlatformA, {{32, 4}, {35, 6}, {34, 8}, {}} },
    {   MsDriverKind::kUnidrvA,  0,                        {{32, 4}, {35, 6}, {33, 8}, {}} },
};
// clang-format on

// Whether the place depends on the driver's kind and platform, and not on its layout alone.
constexpr bool DependsOnDriver(std::uint32_t feature) noexcept
{
    for (const MsDevmodeOffsetRow& row : kRows)
        if (row.feature == feature)
            return row.unidrv.cell == MsDevmodeCell::Driver;
    return false;
}

// From the beginning of the part; nothing when this driver's table does not have the feature.
constexpr std::optional<std::uint32_t> FindDriverOffset(std::uint32_t feature, const MsDriverKind& driver) noexcept
{
    for (const MsUnidrvOffsetTable& table : kUnidrvTables)
    {
        if ((table.kind & driver.kind) == 0 || (table.platform != 0 && table.platform != driver.platform))
            continue;
        for (const MsUnidrvOffset& row : table.offsets)
            if (row.feature == feature && feature != 0)
                return kDriverBase + row.relativeOffset;
        return std::nullopt;
    }
    return std::nullopt;
}

// Where this driver keeps the setting. A feature without a row is a field of DEVMODEW, or nothing.
constexpr MsDevmodePlace FindPlace(std::uint32_t feature, const MsDriverKind& driver) noexcept
{
    for (const MsDevmodeOffsetRow& row : kRows)
    {
        if (row.feature != feature)
            continue;
        const MsDevmodePlace place = driver.HasPostScriptLayout() ? row.postScript : row.unidrv;
        if (place.cell != MsDevmodeCell::Driver)
            return place;
        const std::optional<std::uint32_t> offset = FindDriverOffset(feature, driver);
        return offset ? MsDevmodePlace{MsDevmodeCell::Word, *offset} : MsDevmodePlace{};
    }
    return {MsDevmodeCell::Public};
}

} // namespace MsDevmodeOffsets
