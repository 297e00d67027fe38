#include "complugins/oemdevmodecontent.h"

#include <algorithm>
#include <utility>

#include <tvutil/bytereader.h>
#include <tvutil/bytewriter.h>
#include <tvutil/crc32.h>

namespace Format = OemDevmodeFormat;

namespace
{

ByteReader ReaderAt(const OemDevmode& part, std::size_t offset) noexcept
{
    return ByteReader(std::span(part.bytes).subspan(offset));
}

DWORD ComputeCrc(const OemDevmode& part) noexcept
{
    return Crc32::GetCrc(part.bytes + Format::kCountOffset, Format::kCheckedSize);
}

} // namespace

DWORD OemDevmodeContent::GetStoredCrc(const OemDevmode& part) noexcept
{
    return ReaderAt(part, Format::kCrcOffset).U32();
}

std::uint16_t OemDevmodeContent::GetCount(const OemDevmode& part) noexcept
{
    return ReaderAt(part, Format::kCountOffset).U16();
}

bool OemDevmodeContent::IsEmpty(const OemDevmode& part) noexcept
{
    return GetStoredCrc(part) == 0 && ReaderAt(part, Format::kCountOffset).U32() == 0;
}

bool OemDevmodeContent::IsUnchecked(const OemDevmode& part) noexcept
{
    return GetStoredCrc(part) == 0 && GetCount(part) == 0;
}

bool OemDevmodeContent::HasRightCrc(const OemDevmode& part) noexcept
{
    return IsUnchecked(part) || GetStoredCrc(part) == ComputeCrc(part);
}

std::optional<OemDevmodeContent::Entries> OemDevmodeContent::ReadEntries(const OemDevmode& part)
{
    ByteReader reader = ReaderAt(part, Format::kEntriesOffset);
    Entries entries;
    for (std::size_t left = GetCount(part); left != 0 && reader.Ok(); --left)
    {
        const auto key = reader.U16();
        const auto length = reader.U16();
        entries.emplace_back(key, GlobalCaches::MakeBuffer(reader.Bytes(length)));
    }
    return reader.Ok() ? std::optional(std::move(entries)) : std::nullopt;
}

std::size_t OemDevmodeContent::MeasureEntries(const OemDevmode& part) noexcept
{
    std::size_t size = Format::kEntriesOffset;
    for (std::size_t left = GetCount(part); left != 0 && size + sizeof(std::uint16_t) <= Format::kSize; --left)
    {
        // A length outside of the part is not read: with it the entry ends where the part does, or beyond.
        ByteReader length = ReaderAt(part, std::min(size + sizeof(std::uint16_t), Format::kSize));
        size += Format::kEntryHeaderSize + length.U16();
    }
    return std::min(size, Format::kSize);
}

std::size_t OemDevmodeContent::MeasureEntries(const PropertyBag& bag) noexcept
{
    std::size_t size = Format::kEntriesOffset;
    for (const auto& [key, value] : bag)
        size += Format::kEntryHeaderSize + value->size();
    return size;
}

bool OemDevmodeContent::WriteEntries(OemDevmode& part, const PropertyBag& bag) noexcept
{
    if (MeasureEntries(bag) > Format::kSize)
        return false;
    std::fill(part.bytes + Format::kCrcOffset, part.bytes + Format::kSize, std::byte{});
    ByteWriter entries(std::span(part.bytes).subspan(Format::kCountOffset));
    entries.U16(static_cast<std::uint16_t>(bag.size()));
    for (const auto& [key, value] : bag)
    {
        entries.U16(key);
        entries.U16(static_cast<std::uint16_t>(value->size()));
        entries.Bytes(value->bytes());
    }
    ByteWriter(std::span(part.bytes).subspan(Format::kCrcOffset)).U32(ComputeCrc(part));
    return true;
}
