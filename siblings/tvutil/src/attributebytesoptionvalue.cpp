#include <tvutil/attributebytesoptionvalue.h>

#include <utility>

#include <tvutil/bytereader.h>
#include <tvutil/bytewriter.h>
#include <tvutil/singleline.h>

AttributeBytesOptionValue::AttributeBytesOptionValue(AttributeBytesValueId value, bool isChoice) noexcept
    : m_value(value.GetId()), m_isChoice(isChoice)
{
}

AttributeBytesOptionValue::AttributeBytesOptionValue(const AttributeBytesNewValueId& value, bool isChoice)
    : m_value(value.GetId()), m_name(SingleLine(value.GetName())), m_isChoice(isChoice)
{
}

std::optional<AttributeBytesOptionValue> AttributeBytesOptionValue::FromAttributeBytes(const AttributeBytesValue& value)
{
    if (value.kind != AttributeBytesKind::Option || value.data.size() % sizeof(WCHAR) != 0)
        return std::nullopt;
    ByteReader reader(value.data.bytes());
    const auto id = reader.I32();
    const WideString name = reader.String(reader.Remaining() / sizeof(WCHAR));
    if (!reader.Ok())
        return std::nullopt;
    return AttributeBytesOptionValue(AttributeBytesNewValueId(id, CXString(name)),
                                     (value.flags & AttributeBytesValue::kIsChoice) != 0);
}

AttributeBytesValue AttributeBytesOptionValue::ToAttributeBytes() const
{
    ByteBuffer data(sizeof(m_value) + m_name.Length() * sizeof(WCHAR));
    ByteWriter writer(data.bytes());
    writer.I32(m_value);
    writer.String(m_name);
    return {AttributeBytesKind::Option, m_isChoice ? AttributeBytesValue::kIsChoice : std::uint8_t{0}, std::move(data)};
}

std::int32_t AttributeBytesOptionValue::GetValueId() const noexcept
{
    return m_value;
}

const CXString& AttributeBytesOptionValue::GetValueName() const noexcept
{
    return m_name;
}

bool AttributeBytesOptionValue::IsChoice() const noexcept
{
    return m_isChoice;
}
