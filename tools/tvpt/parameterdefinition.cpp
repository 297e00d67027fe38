#include "parameterdefinition.h"

#include <algorithm>

#include "failure.h"
#include "printschemadocument.h"

namespace
{

constexpr std::string_view kInteger = "integer";
constexpr std::string_view kDecimal = "decimal";
constexpr std::string_view kString = "string";
constexpr std::string_view kQName = "QName";

struct RequiredRow
{
    enum class For
    {
        All,
        Numbers,
        Strings,
    };

    std::string_view property;
    For parameters = For::All; // a bound of those of one kind is a number
};

constexpr RequiredRow kRequired[] = {
    {"DataType"},
    {"UnitType"},
    {"Mandatory"},
    {"DefaultValue"},
    {"MinValue", RequiredRow::For::Numbers},
    {"MaxValue", RequiredRow::For::Numbers},
    {"Multiple", RequiredRow::For::Numbers},
    {"MinLength", RequiredRow::For::Strings},
    {"MaxLength", RequiredRow::For::Strings},
};

const SchemaElement* ValueOf(const SchemaElement& parent, std::string_view property)
{
    const SchemaElement* const found = parent.FrameworkProperty(property);
    return found != nullptr ? found->Child("Value") : nullptr;
}

std::string TypeOf(const SchemaElement& definition)
{
    const SchemaElement* const type = ValueOf(definition, "DataType");
    return type != nullptr && type->textName.uri == kXmlSchema.uri ? type->textName.local : std::string();
}

bool IsNumberType(std::string_view type)
{
    return type == kInteger || type == kDecimal;
}

// A type of another namespace is its owner's matter.
bool HasKnownType(const SchemaElement& definition)
{
    const SchemaElement* const value = ValueOf(definition, "DataType");
    const std::string type = TypeOf(definition);
    return value == nullptr || IsNumberType(type) || type == kString || type == kQName ||
           (!value->textName.local.empty() && value->textName.uri != kXmlSchema.uri);
}

bool IsFor(const RequiredRow& row, std::string_view type)
{
    return row.parameters == RequiredRow::For::All ||
           (row.parameters == RequiredRow::For::Numbers ? IsNumberType(type) : type == kString);
}

// Empty when the definition has what the row asks for.
std::string DescribeLack(const SchemaElement& definition, const RequiredRow& row)
{
    const std::string property(row.property);
    if (definition.FrameworkProperty(row.property) == nullptr)
        return "lacks the property " + property;
    const SchemaElement* const value = ValueOf(definition, row.property);
    if (value == nullptr)
        return "the property " + property + " has no value";
    if (row.parameters != RequiredRow::For::All && !DecimalNumber::Parse(value->text))
        return "the property " + property + ", \"" + Shortened(value->text) + "\", is no number";
    return {};
}

std::size_t CharactersOf(std::string_view utf8)
{
    return static_cast<std::size_t>(
        std::ranges::count_if(utf8, [](char unit) { return (static_cast<unsigned char>(unit) & 0xC0) != 0x80; }));
}

} // namespace

ParameterDefinition::ParameterDefinition(const SchemaElement& definition)
    : m_definition(&definition),
      m_type(TypeOf(definition)),
      m_leastName(IsNumber() ? "MinValue" : "MinLength"),
      m_mostName(IsNumber() ? "MaxValue" : "MaxLength"),
      m_least(Bound(m_leastName)),
      m_most(Bound(m_mostName)),
      m_step(IsNumber() ? Bound("Multiple") : std::nullopt)
{
}

bool ParameterDefinition::IsNumber() const
{
    return IsNumberType(m_type);
}

std::optional<DecimalNumber> ParameterDefinition::Bound(std::string_view property) const
{
    const SchemaElement* const value = ValueOf(*m_definition, property);
    return value != nullptr ? DecimalNumber::Parse(value->text) : std::nullopt;
}

std::string ParameterDefinition::DescribeMisfit(const SchemaElement& value) const
{
    const std::string& type = value.type.local;
    const bool isOther = value.type.uri == kXmlSchema.uri && !m_type.empty() && type != m_type;
    if (isOther && (m_type != kDecimal || type != kInteger)) // each whole number is a decimal one
        return "its type is " + Shortened(type) + ", not " + Shortened(m_type);
    return DescribeMisfit(value.text);
}

std::string ParameterDefinition::DescribeMisfit(const std::string& text) const
{
    const std::string length = std::to_string(CharactersOf(text));
    const auto measured = DecimalNumber::Parse(IsNumber() ? text : length);
    const std::string subject = IsNumber() ? "\"" + Shortened(text) + "\"" : "the length " + length;
    if (!measured || (m_type == kInteger && !measured->IsInteger()))
        return subject + " is no " + m_type;
    const auto fault = [&](const char* how, std::string_view bound)
    {
        return subject + how + std::string(bound) + ", " + Shortened(ValueOf(*m_definition, bound)->text);
    };
    if (m_least && *measured < *m_least)
        return fault(" is below ", m_leastName);
    if (m_most && *m_most < *measured)
        return fault(" is above ", m_mostName);
    if (m_step && !measured->IsMultipleOf(*m_step))
        return fault(" is no multiple of ", "Multiple");
    return {};
}

const SchemaElement* ParameterDefinition::ReversedMinimum() const
{
    return m_least && m_most && *m_most < *m_least ? m_definition->FrameworkProperty(m_leastName) : nullptr;
}

void CheckDefinition(const ElementPath& place, FaultList& faults)
{
    const SchemaElement& element = place.element;
    const std::string type = TypeOf(element);
    for (const RequiredRow& row : kRequired)
        if (std::string lack = IsFor(row, type) ? DescribeLack(element, row) : std::string(); !lack.empty())
            faults.Add(rules::kDefinitionProperty, place, std::move(lack));
    if (!HasKnownType(element))
        faults.Add(rules::kDefinitionProperty, place, "its DataType is none of integer, decimal, string and QName");

    const ParameterDefinition definition(element);
    if (const SchemaElement* const minimum = definition.ReversedMinimum())
        faults.Add(rules::kDefinitionRange, {*minimum, &place}, "the minimum is above the maximum");
    const SchemaElement* const value = ValueOf(element, "DefaultValue");
    if (value == nullptr)
        return;
    if (const std::string misfit = definition.DescribeMisfit(value->text); !misfit.empty())
        faults.Add(rules::kDefinitionDefault, {*element.FrameworkProperty("DefaultValue"), &place}, misfit);
}
