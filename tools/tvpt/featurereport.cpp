#include "featurereport.h"

#include <tvcore/featurecatalogue.h>
#include <tvutil/attributebyteslistvalue.h>
#include <tvutil/attributebytesreader.h>

#include <nlohmann/json.hpp>

namespace
{

using nlohmann::ordered_json;

std::string HexBytes(std::span<const std::byte> bytes)
{
    constexpr char kDigits[] = "0123456789ABCDEF";
    std::string text;
    for (const std::byte byte : bytes)
    {
        text += kDigits[std::to_integer<unsigned>(byte) >> 4];
        text += kDigits[std::to_integer<unsigned>(byte) & 0xF];
    }
    return text;
}

// "12.5mm", exactly.
std::string LengthText(const Dimension& length)
{
    const Number millimeters = length.GetValue(Dimension::Millimeters);
    const LONGLONG whole = millimeters.GetNumerator() / millimeters.GetDenominator();
    const LONGLONG rest = millimeters.GetNumerator() % millimeters.GetDenominator();
    const auto fraction = static_cast<ULONGLONG>(rest < 0 ? -rest : rest);
    std::string decimals = std::to_string(static_cast<ULONGLONG>(millimeters.GetDenominator()) + fraction).substr(1);
    decimals.erase(decimals.find_last_not_of('0') + 1); // nothing is left of zeros alone
    return (millimeters.GetNumerator() < 0 && whole == 0 ? "-" : "") + std::to_string(whole) +
           (decimals.empty() ? "" : "." + decimals) + "mm";
}

ordered_json OptionJson(const AttributeBytesOptionValue& value)
{
    const std::string name = value.GetValueName().ToUtf8();
    if (name.empty() == (value.GetValueId() < FeatureCatalogue::kFirstCustomValue))
        return name.empty() ? ordered_json(value.GetValueId())
                            : ordered_json(std::to_string(value.GetValueId()) + ":" + name);
    // A name where the catalogue has one, or none where it has not: no setting makes such a value.
    return {{"value", value.GetValueId()}, {"name", name}};
}

ordered_json LevelJson(const AttributeBytesRawList& level)
{
    AttributeBytesIndexedList inside;
    if (!inside.ImportFromRawList(level))
        return HexBytes(level.GetBytes());
    return DescribeFeatures(inside);
}

ordered_json ListJson(AttributeBytesFeatureId feature, const AttributeBytesListValue& value)
{
    const FeatureCatalogue::Row* const row = FeatureCatalogue::Find(feature.GetId());
    if (row != nullptr && row->kind == FeatureCatalogue::Kind::Collection && value.GetLevelCount() == 1)
        return LevelJson(value.GetLevel(0));
    ordered_json levels = ordered_json::array();
    for (std::size_t level = 0; level < value.GetLevelCount(); ++level)
        levels.push_back(LevelJson(value.GetLevel(level)));
    return levels;
}

// Null when the bytes make no value of their kind.
ordered_json KnownValueJson(const AttributeBytesIndexedList& features, AttributeBytesFeatureId feature,
                            const AttributeBytesValue& value)
{
    using Reader = AttributeBytesReader;
    if (const auto boolean = Reader::GetBooleanValueFromAttributeBytes(features, feature))
        return *boolean;
    if (const auto integer = Reader::GetIntegerValueFromAttributeBytes(features, feature))
        return *integer;
    if (const auto text = Reader::GetStringValueFromAttributeBytes(features, feature))
        return text->ToUtf8();
    if (const auto option = Reader::GetOptionValueFromAttributeBytes(features, feature))
        return OptionJson(*option);
    if (const auto length = Reader::GetDimensionValueFromAttributeBytes(features, feature))
        return LengthText(*length);
    if (const auto list = AttributeBytesListValue::FromAttributeBytes(value))
        return ListJson(feature, *list);
    return nullptr;
}

void AppendChoices(const AttributeBytesIndexedList& features, ordered_json& choices)
{
    for (std::size_t at = 0; at < features.GetCount(); ++at)
    {
        const AttributeBytesValue& value = features.GetValue(at);
        if ((value.flags & AttributeBytesValue::kIsChoice) != 0)
            choices.push_back(features.GetFeature(at).GetId());
        const auto list = AttributeBytesListValue::FromAttributeBytes(value);
        AttributeBytesIndexedList inside;
        for (std::size_t level = 0; list && level < list->GetLevelCount(); ++level)
            if (inside.ImportFromRawList(list->GetLevel(level)))
                AppendChoices(inside, choices);
    }
}

} // namespace

ordered_json DescribeFeatures(const AttributeBytesIndexedList& features)
{
    ordered_json described = ordered_json::object();
    for (std::size_t at = 0; at < features.GetCount(); ++at)
    {
        const AttributeBytesFeatureId feature = features.GetFeature(at);
        const std::string number = std::to_string(feature.GetId());
        if (described.contains(number))
            continue;
        const AttributeBytesValue& value = features.GetValue(at);
        ordered_json known = KnownValueJson(features, feature, value);
        if (known.is_null())
            known = {{"kind", static_cast<unsigned>(value.kind)},
                     {"flags", value.flags},
                     {"bytes", HexBytes(value.data.bytes())}};
        described[number] = std::move(known);
    }
    return described;
}

ordered_json DescribeChoices(const AttributeBytesIndexedList& features)
{
    ordered_json choices = ordered_json::array();
    AppendChoices(features, choices);
    return choices;
}
