#include "decimalnumber.h"

#include <algorithm>
#include <cstdint>

#include "documenttree.h"

namespace
{

bool AreDigits(std::string_view text)
{
    return std::ranges::all_of(text, [](char character) { return character >= '0' && character <= '9'; });
}

} // namespace

std::optional<DecimalNumber> DecimalNumber::Parse(std::string_view text)
{
    text = WithoutBlanksAround(text);
    DecimalNumber number;
    number.m_isNegative = text.starts_with('-');
    if (number.m_isNegative || text.starts_with('+'))
        text.remove_prefix(1);
    const std::size_t point = std::min(text.find('.'), text.size());
    number.m_hasPoint = point < text.size();
    std::string_view whole = text.substr(0, point);
    std::string_view fraction = number.m_hasPoint ? text.substr(point + 1) : std::string_view();
    if ((whole.empty() && fraction.empty()) || !AreDigits(whole) || !AreDigits(fraction))
        return std::nullopt;
    whole.remove_prefix(std::min(whole.find_first_not_of('0'), whole.size()));
    number.m_whole = whole;
    number.m_fraction = fraction.substr(0, fraction.find_last_not_of('0') + 1);
    number.m_isNegative = number.m_isNegative && !(number.m_whole.empty() && number.m_fraction.empty());
    return number;
}

bool DecimalNumber::IsInteger() const noexcept
{
    return !m_hasPoint;
}

bool DecimalNumber::IsMultipleOf(const DecimalNumber& step) const
{
    constexpr std::size_t kMostDigits = 17; // ten times the step fits 64 bits
    if (step.m_whole.empty() || step.m_whole.size() > kMostDigits || !step.m_fraction.empty())
        return true;
    const std::uint64_t divisor = std::stoull(step.m_whole);
    std::uint64_t remainder = 0;
    for (const char digit : m_whole)
        remainder = (remainder * 10 + static_cast<std::uint64_t>(digit - '0')) % divisor;
    return remainder == 0 && m_fraction.empty();
}

int DecimalNumber::CompareMagnitude(const DecimalNumber& other) const noexcept
{
    if (m_whole.size() != other.m_whole.size())
        return m_whole.size() < other.m_whole.size() ? -1 : 1;
    const int order = m_whole.compare(other.m_whole);
    return order != 0 ? order : m_fraction.compare(other.m_fraction);
}

bool operator<(const DecimalNumber& left, const DecimalNumber& right) noexcept
{
    if (left.m_isNegative != right.m_isNegative)
        return left.m_isNegative;
    return left.m_isNegative ? right.CompareMagnitude(left) < 0 : left.CompareMagnitude(right) < 0;
}

bool operator==(const DecimalNumber& left, const DecimalNumber& right) noexcept
{
    return left.m_isNegative == right.m_isNegative && left.CompareMagnitude(right) == 0;
}
