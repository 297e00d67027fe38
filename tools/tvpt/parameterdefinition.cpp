#include "parameterdefinition.h"

#include <algorithm>

#include "failure.h"
#include "printschemadocument.h"

namespace
{

constexpr std::string_view kInteger = "integer";
constexpr std::string_view kDecimal = "decimal";
constexpr std::string_view kString = "string";

struct RequiredRow
{
    std::string_view property;
    std::string_view type; // of parameters that need it; empty: of all
};

constexpr RequiredRow kRequired[] = {
    {"DataType", ""},       {"UnitType", ""},       {"Mandatory", ""},
    {"DefaultValue", ""},   {"MinValue", kInteger}, {"MaxValue", kInteger},
    {"Multiple", kInteger}, {"MinLength", kString}, {"MaxLength", kString},
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
    return m_type == kInteger || m_type == kDecimal;
}

std::optional<DecimalNumber> ParameterDefinition::Bound(std::string_view property) const
{
    const SchemaElement* const value = ValueOf(*m_definition, property);
    return value != nullptr ? DecimalNumber::Parse(value->text) : std::nullopt;
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
        if ((row.type.empty() || row.type == type) && element.FrameworkProperty(row.property) == nullptr)
            faults.Add(rules::kDefinitionProperty, place, "lacks the property " + std::string(row.property));

    const ParameterDefinition definition(element);
    if (const SchemaElement* const minimum = definition.ReversedMinimum())
        faults.Add(rules::kDefinitionRange, {*minimum, &place}, "the minimum is above the maximum");
    const SchemaElement* const value = ValueOf(element, "DefaultValue");
    if (value == nullptr)
        return;
    if (const std::string misfit = definition.DescribeMisfit(value->text); !misfit.empty())
        faults.Add(rules::kDefinitionDefault, {*element.FrameworkProperty("DefaultValue"), &place}, misfit);
}
