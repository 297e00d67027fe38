#include <tvutil/number.h>

#include <algorithm>
#include <limits>
#include <stdexcept>

namespace
{

// The rounding constant is 499,999 of these.
constexpr LONGLONG kMillion = 1'000'000;
constexpr LONGLONG kRounding = 499'999;

// A part of a whole, times a million, must fit.
constexpr LONGLONG kMaxDenominator = 1'000'000'000;
static_assert(kMaxDenominator <= std::numeric_limits<LONGLONG>::max() / kMillion);

} // namespace

Number::Number(LONGLONG numerator, LONGLONG denominator) : m_numerator(numerator), m_denominator(denominator)
{
    if (denominator < 1 || denominator > kMaxDenominator)
        throw std::invalid_argument("a denominator must be from 1 to 1000000000");
}

LONGLONG Number::GetNumerator() const noexcept
{
    return m_numerator;
}

LONGLONG Number::GetDenominator() const noexcept
{
    return m_denominator;
}

LONG Number::GetLongValue() const noexcept
{
    LONGLONG whole = m_numerator / m_denominator;
    const LONGLONG rest = m_numerator % m_denominator; // has the sign of the number
    const LONGLONG part = (rest < 0 ? -rest : rest) * kMillion;
    whole = std::clamp<LONGLONG>(whole, std::numeric_limits<LONG>::min(), std::numeric_limits<LONG>::max());
    if (part >= (kMillion - kRounding) * m_denominator)
        whole += rest < 0 ? -1 : 1;
    return static_cast<LONG>(
        std::clamp<LONGLONG>(whole, std::numeric_limits<LONG>::min(), std::numeric_limits<LONG>::max()));
}

Number Number::RoundingConstant() noexcept
{
    Number number(kRounding);
    number.m_denominator = kMillion;
    return number;
}
