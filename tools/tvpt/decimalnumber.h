// A number of XML Schema, exact whatever its length.
#pragma once

#include <optional>
#include <string>
#include <string_view>

class DecimalNumber
{
public:
    // The text of an xsd:decimal or xsd:integer, blanks around it allowed; nothing for any other.
    [[nodiscard]] static std::optional<DecimalNumber> Parse(std::string_view text);

    [[nodiscard]] bool IsInteger() const noexcept; // written as one: 1.0 is none
    // Also true for a step by which nothing can be told: zero, a fraction, one of more than 17 digits.
    [[nodiscard]] bool IsMultipleOf(const DecimalNumber& step) const;

    friend bool operator<(const DecimalNumber& left, const DecimalNumber& right) noexcept;
    friend bool operator==(const DecimalNumber& left, const DecimalNumber& right) noexcept; // 1.0 is 1

private:
    [[nodiscard]] int CompareMagnitude(const DecimalNumber& other) const noexcept; // as std::string::compare

    bool m_isNegative = false;
    bool m_hasPoint = false;
    std::string m_whole;    // digits without zeros in front
    std::string m_fraction; // digits without zeros at the end
};
