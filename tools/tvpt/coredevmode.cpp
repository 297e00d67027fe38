#include "coredevmode.h"

#include <tvutil/bytereader.h>

#include <array>

namespace
{

struct Offsets
{
    std::size_t pagesPerSheet;
    std::size_t pageOrder;
};

constexpr Offsets kPostScriptOffsets = {136, 132};
constexpr Offsets kUnidrvOffsets = {24, 20};
constexpr std::size_t kPostScriptTrueTypeDownload = 128;
constexpr std::size_t kPostScriptFlags = 5;      // a byte
constexpr std::uint8_t kRotatedLandscape = 0x02; // of these flags

constexpr std::array<std::uint16_t, 6> kPagesPerSheet = {1, 2, 4, 6, 9, 16};
constexpr std::uint16_t kBooklet = 6; // where the pages per sheet stand

std::uint16_t WordAt(std::span<const std::byte> part, std::size_t offset)
{
    ByteReader reader(part);
    reader.Skip(offset);
    return reader.U16(); // 0 beyond the end
}

std::uint8_t ByteAt(std::span<const std::byte> part, std::size_t offset)
{
    ByteReader reader(part);
    reader.Skip(offset);
    return reader.U8();
}

} // namespace

CoreSettings ReadCoreSettings(CoreDriverLayout layout, std::span<const std::byte> core)
{
    const Offsets& offsets = layout == CoreDriverLayout::PostScript ? kPostScriptOffsets : kUnidrvOffsets;
    const std::uint16_t pages = WordAt(core, offsets.pagesPerSheet);

    CoreSettings settings;
    settings.booklet = pages == kBooklet;
    if (pages < kPagesPerSheet.size())
        settings.pagesPerSheet = kPagesPerSheet[pages];
    settings.reversePageOrder = WordAt(core, offsets.pageOrder) == 1;
    if (layout == CoreDriverLayout::PostScript)
    {
        settings.rotatedLandscape = (ByteAt(core, kPostScriptFlags) & kRotatedLandscape) != 0;
        settings.trueTypeDownload = WordAt(core, kPostScriptTrueTypeDownload);
    }
    return settings;
}
