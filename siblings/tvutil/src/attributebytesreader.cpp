#include <tvutil/attributebytesreader.h>

#include <tvutil/bytereader.h>
#include <tvutil/bytewriter.h>
#include <tvutil/singleline.h>

namespace
{

constexpr LONGLONG kNanometersInAMicron = 1'000;

// Null when the list has none of this kind.
const AttributeBytesValue* Find(const AttributeBytesIndexedList& list, AttributeBytesFeatureId feature,
                                AttributeBytesKind kind) noexcept
{
    const AttributeBytesValue* const value = list.GetAttributeBytes(feature);
    return value != nullptr && value->kind == kind ? value : nullptr;
}

AttributeBytesValue ValueOf(AttributeBytesKind kind, std::span<const std::byte> bytes)
{
    return {kind, 0, ByteBuffer(bytes)};
}

template <class Number>
AttributeBytesValue ValueOf(AttributeBytesKind kind, const Number& number)
{
    return ValueOf(kind, std::as_bytes(std::span(&number, 1)));
}

} // namespace

AttributeBytesReader::AttributeBytesReader() noexcept = default;
AttributeBytesReader::AttributeBytesReader(const AttributeBytesReader&) noexcept = default;
AttributeBytesReader& AttributeBytesReader::operator=(const AttributeBytesReader&) noexcept = default;
AttributeBytesReader::~AttributeBytesReader() = default;

std::optional<bool> AttributeBytesReader::GetBooleanValueFromAttributeBytes(AttributeBytesFeatureId feature)
{
    return GetBooleanValueFromAttributeBytes(*GetDefaultAttributeBytesIndexedList(), feature);
}

std::optional<std::int32_t> AttributeBytesReader::GetIntegerValueFromAttributeBytes(AttributeBytesFeatureId feature)
{
    return GetIntegerValueFromAttributeBytes(*GetDefaultAttributeBytesIndexedList(), feature);
}

std::optional<CXString> AttributeBytesReader::GetStringValueFromAttributeBytes(AttributeBytesFeatureId feature)
{
    return GetStringValueFromAttributeBytes(*GetDefaultAttributeBytesIndexedList(), feature);
}

std::optional<AttributeBytesOptionValue>
AttributeBytesReader::GetOptionValueFromAttributeBytes(AttributeBytesFeatureId feature)
{
    return GetOptionValueFromAttributeBytes(*GetDefaultAttributeBytesIndexedList(), feature);
}

std::optional<Dimension> AttributeBytesReader::GetDimensionValueFromAttributeBytes(AttributeBytesFeatureId feature)
{
    return GetDimensionValueFromAttributeBytes(*GetDefaultAttributeBytesIndexedList(), feature);
}

std::optional<bool> AttributeBytesReader::GetBooleanValueFromAttributeBytes(const AttributeBytesIndexedList& list,
                                                                            AttributeBytesFeatureId feature)
{
    const AttributeBytesValue* const value = Find(list, feature, AttributeBytesKind::Boolean);
    if (value == nullptr || value->data.size() != 1 || *value->data.data() > 1)
        return std::nullopt;
    return *value->data.data() == 1;
}

std::optional<std::int32_t>
AttributeBytesReader::GetIntegerValueFromAttributeBytes(const AttributeBytesIndexedList& list,
                                                        AttributeBytesFeatureId feature)
{
    const AttributeBytesValue* const value = Find(list, feature, AttributeBytesKind::Integer);
    if (value == nullptr || value->data.size() != sizeof(std::int32_t))
        return std::nullopt;
    return ByteReader(value->data.bytes()).I32();
}

std::optional<CXString> AttributeBytesReader::GetStringValueFromAttributeBytes(const AttributeBytesIndexedList& list,
                                                                               AttributeBytesFeatureId feature)
{
    const AttributeBytesValue* const value = Find(list, feature, AttributeBytesKind::String);
    if (value == nullptr || value->data.size() % sizeof(WCHAR) != 0)
        return std::nullopt;
    return SingleLine(ByteReader(value->data.bytes()).String(value->data.size() / sizeof(WCHAR)));
}

std::optional<AttributeBytesOptionValue>
AttributeBytesReader::GetOptionValueFromAttributeBytes(const AttributeBytesIndexedList& list,
                                                       AttributeBytesFeatureId feature)
{
    const AttributeBytesValue* const value = list.GetAttributeBytes(feature);
    return value != nullptr ? AttributeBytesOptionValue::FromAttributeBytes(*value) : std::nullopt;
}

std::optional<Dimension>
AttributeBytesReader::GetDimensionValueFromAttributeBytes(const AttributeBytesIndexedList& list,
                                                          AttributeBytesFeatureId feature)
{
    const AttributeBytesValue* const value = Find(list, feature, AttributeBytesKind::Dimension);
    if (value == nullptr || value->data.size() != sizeof(std::int64_t))
        return std::nullopt;
    return Dimension(Number(ByteReader(value->data.bytes()).I64(), kNanometersInAMicron), Dimension::Microns);
}

AttributeBytesValue MakeBooleanAttributeBytes(bool value)
{
    return ValueOf(AttributeBytesKind::Boolean, static_cast<std::uint8_t>(value ? 1 : 0));
}

AttributeBytesValue MakeIntegerAttributeBytes(std::int32_t value)
{
    return ValueOf(AttributeBytesKind::Integer, value);
}

AttributeBytesValue MakeStringAttributeBytes(WStringView value)
{
    return ValueOf(AttributeBytesKind::String, std::as_bytes(std::span(SingleLine(value).View())));
}

AttributeBytesValue MakeDimensionAttributeBytes(const Dimension& value)
{
    // A dimension holds whole nanometres: nothing is lost.
    const Number microns = value.GetValue(Dimension::Microns);
    const std::int64_t nanometers = microns.GetNumerator() * (kNanometersInAMicron / microns.GetDenominator());
    return ValueOf(AttributeBytesKind::Dimension, nanometers);
}
