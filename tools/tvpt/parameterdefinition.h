// What a ParameterDef of print capabilities asks of its parameter's value.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "decimalnumber.h"
#include "faultlist.h"

class ParameterDefinition
{
public:
    // Of an element that outlives it. A bound that is no number is none.
    explicit ParameterDefinition(const SchemaElement& definition);

    // Empty when the text is a number or a text as it is defined; else what is wrong: "5 is below MinValue". Of a value
    // its type counts, too, where it tells one.
    [[nodiscard]] std::string DescribeMisfit(const std::string& text) const;
    [[nodiscard]] std::string DescribeMisfit(const SchemaElement& value) const;
    // The minimum when it is above the maximum, or null.
    [[nodiscard]] const SchemaElement* ReversedMinimum() const;

private:
    [[nodiscard]] bool IsNumber() const;
    [[nodiscard]] std::optional<DecimalNumber> Bound(std::string_view property) const;

    const SchemaElement* m_definition;
    std::string m_type; // of XML Schema; empty for another one
    std::string_view m_leastName;
    std::string_view m_mostName;
    std::optional<DecimalNumber> m_least;
    std::optional<DecimalNumber> m_most;
    std::optional<DecimalNumber> m_step;
};

// What it lacks, a minimum above its maximum, and a default that does not fit.
void CheckDefinition(const ElementPath& place, FaultList& faults);
