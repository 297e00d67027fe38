#include <tvcore/featurevalues.h>

#include <algorithm>
#include <charconv>
#include <optional>
#include <stdexcept>
#include <vector>

#include <tvutil/attributebyteslistvalue.h>
#include <tvutil/attributebytesoptionvalue.h>
#include <tvutil/attributebytesrawlist.h>
#include <tvutil/attributebytesreader.h>
#include <tvutil/cxstring.h>
#include <tvutil/dimension.h>
#include <tvutil/singleline.h>

namespace FeatureCatalogue
{

namespace
{

constexpr std::int64_t kMicronsPerMillimeter = 1000;

// ---- What a feature takes ------------------------------------------------------------------------

std::string RangeText(const Range& range)
{
    if (range.last == kLastValue)
        return "from " + std::to_string(range.first) + " on with a name (" + std::to_string(range.first) + ":NAME)";
    return std::to_string(range.first) + (range.last != range.first ? " to " + std::to_string(range.last) : "");
}

std::string OptionLimit(const Row& row)
{
    std::string text;
    for (const Range& range : row.values)
        text += (text.empty() ? "must be one of " : ", ") + RangeText(range);
    if (TakesCustomValues(row))
        text += " of at most " + std::to_string(kMaxValueNameLength) + " characters";
    return text;
}

std::string LimitText(const Row& row)
{
    switch (row.kind)
    {
    case Kind::Boolean:
        return "must be true or false";
    case Kind::Integer:
        return "must be a whole number from " + RangeText(row.values.front());
    case Kind::String:
        return "must be a text in UTF-8, on one line, of at most " + std::to_string(row.values.front().last) +
               " characters";
    case Kind::Option:
        return OptionLimit(row);
    case Kind::Dimension:
        return "must be a length from " + std::to_string(row.values.front().first / kMicronsPerMillimeter) + "mm to " +
               std::to_string(row.values.front().last / kMicronsPerMillimeter) + "mm, such as 12.5mm or 0.5in";
    case Kind::Collection:
    case Kind::List:
        return "has no value of its own, only features";
    case Kind::Binary:
        break;
    }
    return "is written by the driver only";
}

// ---- Text to value -------------------------------------------------------------------------------

template <class Number_>
std::optional<Number_> WholeNumber(std::string_view text)
{
    Number_ number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc() || end != text.data() + text.size())
        return std::nullopt;
    return number;
}

// Nothing when it is not UTF-8 on one line, or its length is outside of the range.
std::optional<CXString> TextOf(std::string_view utf8, const Range& length)
{
    CXString text = CXString::FromUtf8(utf8);
    const auto characters = static_cast<std::int64_t>(text.Length());
    if (characters < length.first || characters > length.last || text.ToUtf8() != utf8 || !IsSingleLine(text.View()))
        return std::nullopt;
    return text;
}

std::optional<AttributeBytesValue> ParseBoolean(const Row&, std::string_view text)
{
    if (text != "true" && text != "false")
        return std::nullopt;
    return MakeBooleanAttributeBytes(text == "true");
}

std::optional<AttributeBytesValue> ParseInteger(const Row& row, std::string_view text)
{
    const auto number = WholeNumber<std::int32_t>(text);
    if (!number || !Allows(row, *number))
        return std::nullopt;
    return MakeIntegerAttributeBytes(*number);
}

std::optional<AttributeBytesValue> ParseString(const Row& row, std::string_view text)
{
    const auto characters = TextOf(text, row.values.front());
    return characters ? std::optional(MakeStringAttributeBytes(*characters)) : std::nullopt;
}

// "5421", "9700:Blue 90g"
std::optional<AttributeBytesValue> ParseOption(const Row& row, std::string_view text, bool isChosen)
{
    const std::size_t colon = text.find(':');
    const auto number = WholeNumber<std::int32_t>(text.substr(0, colon));
    const bool hasName = colon != std::string_view::npos;
    if (!number || !Allows(row, *number) || hasName != (*number >= kFirstCustomValue))
        return std::nullopt;
    const bool isChoice = isChosen && *number != DataModelIds::Value::Automatic;
    if (!hasName)
        return AttributeBytesOptionValue(AttributeBytesValueId(*number), isChoice).ToAttributeBytes();
    const auto name = TextOf(text.substr(colon + 1), {1, kMaxValueNameLength});
    if (!name || IsBlank(name->View()))
        return std::nullopt;
    return AttributeBytesOptionValue(AttributeBytesNewValueId(*number, *name), isChoice).ToAttributeBytes();
}

struct Unit
{
    std::string_view name;
    Dimension::UnitsEnum unit;
};

constexpr Unit kUnits[] = {
    {"mm", Dimension::Millimeters},
    {"cm", Dimension::Centimeters},
    {"um", Dimension::Microns},
    {"in", Dimension::Inches},
};

// "-12.5": at most nine digits before and after the point.
std::optional<Number> DecimalNumber(std::string_view text)
{
    constexpr std::size_t kMaxDigits = 9;
    const bool isNegative = text.starts_with('-');
    text.remove_prefix(isNegative ? 1 : 0);
    const std::size_t point = std::min(text.find('.'), text.size());
    std::string digits(text.substr(0, point));
    const std::string_view decimals = text.substr(std::min(point + 1, text.size()));
    if (digits.empty() || digits.size() > kMaxDigits || decimals.size() > kMaxDigits ||
        (point < text.size() && decimals.empty()))
        return std::nullopt;
    digits += decimals;
    if (!std::all_of(digits.begin(), digits.end(), [](char digit) { return digit >= '0' && digit <= '9'; }))
        return std::nullopt;
    LONGLONG denominator = 1;
    for (std::size_t place = 0; place < decimals.size(); ++place)
        denominator *= 10;
    const auto numerator = WholeNumber<LONGLONG>(digits);
    return numerator ? std::optional(Number(isNegative ? -*numerator : *numerator, denominator)) : std::nullopt;
}

std::optional<AttributeBytesValue> ParseDimension(const Row& row, std::string_view text)
{
    const auto length = FeatureCatalogue::ParseLength(text);
    if (!length || !AllowsLength(row, length->value))
        return std::nullopt;
    return MakeDimensionAttributeBytes(length->value);
}

std::optional<AttributeBytesValue> TryToParse(const Row& row, std::string_view text, bool isChosen)
{
    switch (row.kind)
    {
    case Kind::Boolean:
        return ParseBoolean(row, text);
    case Kind::Integer:
        return ParseInteger(row, text);
    case Kind::String:
        return ParseString(row, text);
    case Kind::Option:
        return ParseOption(row, text, isChosen);
    case Kind::Dimension:
        return ParseDimension(row, text);
    case Kind::Collection:
    case Kind::List:
    case Kind::Binary:
        break;
    }
    return std::nullopt;
}

// ---- A value's place -----------------------------------------------------------------------------

// The collections around a feature, outermost first.
std::vector<std::int32_t> CollectionsAround(const Row& row)
{
    std::vector<std::int32_t> collections;
    for (std::int32_t parent = row.parent; parent != 0; parent = Find(parent)->parent)
        collections.insert(collections.begin(), parent);
    return collections;
}

[[noreturn]] void ThrowNoCollection(std::int32_t feature)
{
    throw std::invalid_argument("something else is stored where the features of " + std::to_string(feature) +
                                " should be");
}

// Null takes the value away. Whether anything is there or was.
bool StoreWithin(AttributeBytesIndexedList& settings, std::span<const std::int32_t> collections, const Row& row,
                 const AttributeBytesValue* value)
{
    if (collections.empty() && value == nullptr)
        return settings.RemoveAttributeBytes(row.feature);
    if (collections.empty())
    {
        settings.SetAttributeBytes(row.feature, *value);
        return true;
    }
    const AttributeBytesFeatureId collection(collections.front());
    const AttributeBytesValue* const stored = settings.GetAttributeBytes(collection);
    AttributeBytesIndexedList inside;
    if (stored != nullptr)
    {
        const auto levels = AttributeBytesListValue::FromAttributeBytes(*stored);
        if (!levels || (levels->GetLevelCount() > 0 && !inside.ImportFromRawList(levels->GetLevel(0))))
            ThrowNoCollection(collection.GetId());
    }
    if (!StoreWithin(inside, collections.subspan(1), row, value))
        return false;
    settings.SetCollection(collection, inside);
    return true;
}

} // namespace

std::string DescribeLimit(const Row& row)
{
    return std::string(row.name) + " " + LimitText(row);
}

bool AllowsLength(const Row& row, const Dimension& length)
{
    const Number microns = length.GetValue(Dimension::Microns);
    // What is finer than a micron counts: a metre and a bit is more than a metre.
    return microns.GetNumerator() >= row.values.front().first * microns.GetDenominator() &&
           microns.GetNumerator() <= row.values.front().last * microns.GetDenominator();
}

std::optional<Length> ParseLength(std::string_view text)
{
    for (const Unit& unit : kUnits)
    {
        if (!text.ends_with(unit.name))
            continue;
        const auto number = DecimalNumber(text.substr(0, text.size() - unit.name.size()));
        return number ? std::optional(Length{Dimension(*number, unit.unit), unit.unit}) : std::nullopt;
    }
    return std::nullopt;
}

AttributeBytesValue ParseValue(const Row& row, std::string_view text, bool isChosen)
{
    auto value = TryToParse(row, text, isChosen);
    if (!value)
        throw std::invalid_argument(DescribeLimit(row));
    return std::move(*value);
}

void StoreValue(AttributeBytesIndexedList& settings, const Row& row, const AttributeBytesValue& value)
{
    StoreWithin(settings, CollectionsAround(row), row, &value);
}

bool RemoveValue(AttributeBytesIndexedList& settings, const Row& row)
{
    return StoreWithin(settings, CollectionsAround(row), row, nullptr);
}

AttributeBytesIndexedList MakeSettings(const DefaultValues& defaults, Scope scope)
{
    AttributeBytesIndexedList settings;
    for (const auto& [feature, value] : defaults)
        if (const Row* const row = Find(feature); row != nullptr && row->scope == scope)
            StoreValue(settings, *row, value);
    return settings;
}

} // namespace FeatureCatalogue
