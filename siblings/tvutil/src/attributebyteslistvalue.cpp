#include <tvutil/attributebyteslistvalue.h>

#include <stdexcept>
#include <utility>

#include <tvutil/bytereader.h>
#include <tvutil/bytewriter.h>

#include "attributebytesformat.h"

AttributeBytesListValue::AttributeBytesListValue() noexcept = default;

AttributeBytesListValue::AttributeBytesListValue(AttributeBytesRawList level)
{
    AddLevel(std::move(level));
}

std::optional<AttributeBytesListValue> AttributeBytesListValue::FromAttributeBytes(const AttributeBytesValue& value)
{
    if (value.kind != AttributeBytesKind::List)
        return std::nullopt;
    AttributeBytesListValue list;
    ByteReader reader(value.data.bytes());
    for (auto count = reader.U16(); count != 0 && reader.Ok(); --count)
    {
        const auto length = reader.U16();
        const auto level = reader.Bytes(length);
        list.AddLevel(AttributeBytesRawList(level));
    }
    if (!reader.Ok() || reader.Remaining() != 0)
        return std::nullopt;
    return list;
}

AttributeBytesValue AttributeBytesListValue::ToAttributeBytes() const
{
    std::size_t size = sizeof(std::uint16_t);
    for (const AttributeBytesRawList& level : m_levels)
        size += sizeof(std::uint16_t) + level.GetBytes().size();
    // Short enough as a whole, it is so in its count and in each level.
    if (size > attributebytesformat::kLongestValue)
        throw std::length_error("the levels of a list value are longer than 65535 bytes");

    ByteBuffer data(size);
    ByteWriter writer(data.bytes());
    writer.U16(static_cast<std::uint16_t>(m_levels.size()));
    for (const AttributeBytesRawList& level : m_levels)
    {
        writer.U16(static_cast<std::uint16_t>(level.GetBytes().size()));
        writer.Bytes(level.GetBytes());
    }
    return {AttributeBytesKind::List, 0, std::move(data)};
}

void AttributeBytesListValue::AddLevel(AttributeBytesRawList level)
{
    m_levels.push_back(std::move(level));
}

std::size_t AttributeBytesListValue::GetLevelCount() const noexcept
{
    return m_levels.size();
}

const AttributeBytesRawList& AttributeBytesListValue::GetLevel(std::size_t level) const
{
    return m_levels.at(level);
}
