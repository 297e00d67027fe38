#include "oempart.h"

#include <tvutil/bytereader.h>
#include <tvutil/crc32.h>

#include "complugins/oemdevmode.h"

namespace
{

namespace Format = OemDevmodeFormat;

std::size_t SizeFieldAt(std::span<const std::byte> area, std::size_t offset)
{
    ByteReader reader(area);
    reader.Skip(offset);
    return reader.U16();
}

// The maker's part when it begins at this offset of the area.
std::optional<std::span<const std::byte>> PartAt(std::span<const std::byte> area, std::size_t offset)
{
    if (offset == 0 || offset > area.size())
        return std::nullopt;
    ByteReader reader(area.subspan(offset));
    const auto size = reader.U32();
    const auto signature = reader.U32();
    if (!reader.Ok() || size != Format::kSize || signature != Format::kSignature ||
        area.size() - offset < Format::kSize)
        return std::nullopt;
    return area.subspan(offset, Format::kSize);
}

std::optional<std::vector<OemEntry>> ReadEntries(ByteReader& reader, std::size_t count)
{
    std::vector<OemEntry> entries;
    for (std::size_t index = 0; index < count && reader.Ok(); ++index)
    {
        const auto key = reader.U16();
        const auto length = reader.U16();
        entries.push_back({key, reader.Bytes(length)});
    }
    return reader.Ok() ? std::optional(std::move(entries)) : std::nullopt;
}

} // namespace

std::string_view LayoutName(CoreDriverLayout layout) noexcept
{
    return layout == CoreDriverLayout::PostScript ? "postscript" : "unidrv";
}

std::optional<DriverParts> LocateDriverParts(std::span<const std::byte> driverExtra)
{
    struct Place
    {
        CoreDriverLayout layout;
        std::size_t sizeOffset;
    };
    constexpr Place kPlaces[] = {
        {CoreDriverLayout::PostScript, Format::kPostScriptSizeOffset},
        {CoreDriverLayout::Unidrv, Format::kUnidrvSizeOffset},
    };
    for (const Place& place : kPlaces)
    {
        const std::size_t coreSize = SizeFieldAt(driverExtra, place.sizeOffset);
        if (const auto part = PartAt(driverExtra, coreSize))
            return DriverParts{place.layout, driverExtra.first(coreSize), *part};
    }
    return std::nullopt;
}

OemContent ReadOemPart(std::span<const std::byte> part)
{
    OemContent content;
    ByteReader reader(part);
    reader.Skip(Format::kVersionOffset);
    content.version = reader.U32();
    reader.Skip(Format::kCrcOffset - Format::kHeaderSize);
    content.crc = reader.U32();
    const auto count = reader.U16();
    content.entries = ReadEntries(reader, count);

    const bool holdsNothing = content.crc == 0 && count == 0;
    const auto checked = part.subspan(Format::kCountOffset);
    content.crcValid = holdsNothing || Crc32::GetCrc(checked.data(), checked.size()) == content.crc;
    content.usedBytes = Format::kEntriesOffset;
    for (const OemEntry& entry : content.entries.value_or(std::vector<OemEntry>()))
        content.usedBytes += Format::kEntryHeaderSize + entry.data.size();
    return content;
}
