#include <tvutil/attributebytesrawlist.h>

#include <utility>

#include <tvutil/attributebytesindexedlist.h>
#include <tvutil/bytewriter.h>

#include "attributebytesformat.h"

AttributeBytesRawList::AttributeBytesRawList() noexcept = default;

AttributeBytesRawList::AttributeBytesRawList(std::span<const std::byte> bytes) : m_bytes(bytes)
{
}

AttributeBytesRawList::AttributeBytesRawList(const AttributeBytesIndexedList& list)
{
    ImportFromIndexedList(list);
}

void AttributeBytesRawList::ImportFromIndexedList(const AttributeBytesIndexedList& list)
{
    std::size_t size = 0;
    for (std::size_t position = 0; position < list.GetCount(); ++position)
        size += attributebytesformat::kAttributeHeaderSize + list.GetValue(position).data.size();

    ByteBuffer bytes(size);
    ByteWriter writer(bytes.bytes());
    for (std::size_t position = 0; position < list.GetCount(); ++position)
    {
        const AttributeBytesValue& value = list.GetValue(position);
        writer.I32(list.GetFeature(position).GetId());
        writer.U8(static_cast<std::uint8_t>(value.kind));
        writer.U8(value.flags);
        writer.U16(static_cast<std::uint16_t>(value.data.size())); // the list takes no longer ones
        writer.Bytes(value.data.bytes());
    }
    m_bytes = std::move(bytes);
}

std::span<const std::byte> AttributeBytesRawList::GetBytes() const noexcept
{
    return m_bytes.bytes();
}

bool AttributeBytesRawList::IsEmpty() const noexcept
{
    return m_bytes.empty();
}
