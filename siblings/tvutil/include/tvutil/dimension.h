// Dimension: a length, whatever unit it was given in.
//
// Held in whole nanometres, of which every unit here has a whole number: lengths given in these units are exact. A
// finer part is dropped; a length beyond 9.2 million kilometres becomes the greatest one.
#pragma once

#include <windows.h>

#include <tvutil/number.h>

class TVUTIL_API Dimension
{
public:
    // The numbers are known outside: 5 is what paper sizes are compared in.
    enum UnitsEnum : LONG
    {
        Inches = 1,
        ThousandthsOfAnInch = 2,
        Microns = 3, // also thousandths of a millimetre
        TenthsOfAMillimeter = 4,
        Millimeters = 5,
        Centimeters = 6,
    };

    Dimension() noexcept;
    // A unit that is none of the above is std::invalid_argument, here and below.
    Dimension(const Number& value, UnitsEnum unit);

    [[nodiscard]] Number GetValue(UnitsEnum unit) const;

    // Whether two lengths differ by no more than the tolerance. The tolerance counts in the last digit that matters:
    // units of which `precision` decimal places (0 to 9) are looked at.
    [[nodiscard]] static bool IsEquivalent(const Dimension& left, const Dimension& right, UnitsEnum unit, int precision,
                                           const Number& tolerance);

    friend bool operator==(const Dimension& left, const Dimension& right) noexcept = default;

private:
    LONGLONG m_nanometers = 0;
};
