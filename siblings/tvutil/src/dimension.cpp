#include <tvutil/dimension.h>

#include <limits>
#include <stdexcept>

namespace
{

constexpr LONGLONG kMost = std::numeric_limits<LONGLONG>::max();
constexpr int kMaxPrecision = 9;

LONGLONG NanometersIn(Dimension::UnitsEnum unit)
{
    switch (unit)
    {
    case Dimension::Inches:
        return 25'400'000;
    case Dimension::ThousandthsOfAnInch:
        return 25'400;
    case Dimension::Microns:
        return 1'000;
    case Dimension::TenthsOfAMillimeter:
        return 100'000;
    case Dimension::Millimeters:
        return 1'000'000;
    case Dimension::Centimeters:
        return 10'000'000;
    }
    throw std::invalid_argument("no such unit of length");
}

// number * factor, whole and towards zero; symmetric: the least LONGLONG never comes out.
LONGLONG Times(const Number& number, LONGLONG factor)
{
    const LONGLONG whole = number.GetNumerator() / number.GetDenominator();
    const LONGLONG rest = number.GetNumerator() % number.GetDenominator();
    const LONGLONG part = rest * factor / number.GetDenominator(); // at most 1e9 * 2.54e7: no overflow
    if (whole >= kMost / factor)
        return kMost;
    if (whole <= -(kMost / factor))
        return -kMost;
    return whole * factor + part;
}

// The distance of two lengths, which may be more than a LONGLONG holds.
ULONGLONG Distance(LONGLONG left, LONGLONG right) noexcept
{
    return left < right ? static_cast<ULONGLONG>(right) - static_cast<ULONGLONG>(left)
                        : static_cast<ULONGLONG>(left) - static_cast<ULONGLONG>(right);
}

} // namespace

Dimension::Dimension() noexcept = default;

Dimension::Dimension(const Number& value, UnitsEnum unit) : m_nanometers(Times(value, NanometersIn(unit)))
{
}

Number Dimension::GetValue(UnitsEnum unit) const
{
    return Number(m_nanometers, NanometersIn(unit));
}

bool Dimension::IsEquivalent(const Dimension& left, const Dimension& right, UnitsEnum unit, int precision,
                             const Number& tolerance)
{
    if (precision < 0 || precision > kMaxPrecision)
        throw std::invalid_argument("a precision must be from 0 to 9 decimal places");
    LONGLONG allowed = Times(tolerance, NanometersIn(unit));
    for (int place = 0; place < precision; ++place)
        allowed /= 10;
    return allowed >= 0 && Distance(left.m_nanometers, right.m_nanometers) <= static_cast<ULONGLONG>(allowed);
}
