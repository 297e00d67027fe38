// Number: an exact number, as dimensions give it.
//
// A ratio of integers: nothing is lost until somebody asks for a whole number, and no floating-point value ever
// crosses the boundary of a module.
#pragma once

#include <windows.h>

class TVUTIL_API Number
{
public:
    // Integers are numbers as they stand.
    constexpr Number(LONGLONG value = 0) noexcept : m_numerator(value)
    {
    }
    // The denominator is from 1 to 1,000,000,000, or std::invalid_argument.
    Number(LONGLONG numerator, LONGLONG denominator);

    [[nodiscard]] LONGLONG GetNumerator() const noexcept;
    [[nodiscard]] LONGLONG GetDenominator() const noexcept;

    // The nearest whole number, with the rounding constant 0.499999: a fraction is rounded away from zero from
    // 0.500001 on, so a half goes towards zero. What a LONG cannot hold becomes its nearest value.
    [[nodiscard]] LONG GetLongValue() const noexcept;

    // The rounding constant itself, 0.499999.
    [[nodiscard]] static Number RoundingConstant() noexcept;

private:
    LONGLONG m_numerator;
    LONGLONG m_denominator = 1;
};
