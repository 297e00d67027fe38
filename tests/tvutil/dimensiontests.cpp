// Lengths and numbers: exact units, rounding at the edges, nothing overflows.
#include <gtest/gtest.h>

#include <limits>
#include <stdexcept>
#include <tuple>

#include <tvutil/dimension.h>
#include <tvutil/number.h>

namespace
{

constexpr LONGLONG kMost = std::numeric_limits<LONGLONG>::max();

TEST(Numbers, RoundWithTheConstantAwayFromZeroOnlyBeyondAHalf)
{
    constexpr LONGLONG kRows[][3] = {
        // numerator, denominator, rounded
        {0, 1, 0},
        {500'000'999, 1'000'000'000, 0}, // a half, and even a little more, is not enough
        {500'001, 1'000'000, 1},
        {1'500'000, 1'000'000, 1},
        {-500'001, 1'000'000, -1},
        {-1'500'000, 1'000'000, -1},
        {4'294'967'295, 2, 2'147'483'647},
        {kMost, 1'000'000'000, 2'147'483'647},
        {-kMost - 1, 1, -2'147'483'648},
        {-kMost - 1, 999'999'999, -2'147'483'648},
    };
    for (const auto& [numerator, denominator, rounded] : kRows)
        EXPECT_EQ(Number(numerator, denominator).GetLongValue(), rounded) << numerator << "/" << denominator;
    for (const LONGLONG denominator : {LONGLONG(0), LONGLONG(-1), LONGLONG(1'000'000'001)})
        EXPECT_THROW(Number(1, denominator), std::invalid_argument) << denominator;
}

TEST(Dimensions, ConvertBetweenUnits)
{
    using D = Dimension;
    constexpr std::tuple<LONGLONG, D::UnitsEnum, D::UnitsEnum, LONG> kRows[] = {
        {184'150, D::Microns, D::TenthsOfAMillimeter, 1841}, // 1841.5: a half goes down
        {184'151, D::Microns, D::TenthsOfAMillimeter, 1842},
        {2970, D::TenthsOfAMillimeter, D::Microns, 297'000},
        {8500, D::ThousandthsOfAnInch, D::Microns, 215'900},
        {11, D::Inches, D::TenthsOfAMillimeter, 2794},
        {254, D::Millimeters, D::Inches, 10},
        {30, D::Centimeters, D::Inches, 12}, // 11.81
        {-12, D::TenthsOfAMillimeter, D::Millimeters, -1},
        {-16, D::TenthsOfAMillimeter, D::Millimeters, -2},
        {kMost, D::Inches, D::Microns, 2'147'483'647},
        {-kMost - 1, D::Inches, D::Microns, -2'147'483'647 - 1},
    };
    for (const auto& [value, from, to, expected] : kRows)
        EXPECT_EQ(D(value, from).GetValue(to).GetLongValue(), expected)
            << value << " of unit " << from << " in unit " << to;
    EXPECT_EQ(D(Number(125, 10), D::Millimeters), D(125, D::TenthsOfAMillimeter));
    EXPECT_THROW(D(1, static_cast<D::UnitsEnum>(0)), std::invalid_argument);
    EXPECT_THROW((void)D().GetValue(static_cast<D::UnitsEnum>(7)), std::invalid_argument);
}

TEST(Dimensions, AreEquivalentWithinTheTolerance)
{
    const auto areEquivalent = [](LONGLONG left, LONGLONG right, int precision)
    {
        return Dimension::IsEquivalent(Dimension(left, Dimension::Microns), Dimension(right, Dimension::Microns),
                                       Dimension::Millimeters, precision, Number::RoundingConstant());
    };
    EXPECT_TRUE(areEquivalent(210'000, 210'499, 0));
    EXPECT_TRUE(areEquivalent(210'499, 210'000, 0));
    EXPECT_FALSE(areEquivalent(210'000, 210'500, 0)); // half a millimetre is more than 0.499999
    EXPECT_FALSE(areEquivalent(209'600, 210'400, 0)); // though both are nearest to 210
    EXPECT_TRUE(areEquivalent(210'000, 210'049, 1));  // a precision of one place: a tenth of the tolerance
    EXPECT_FALSE(areEquivalent(210'000, 210'050, 1));
    EXPECT_TRUE(areEquivalent(-100, 100, 0));
    EXPECT_FALSE(areEquivalent(kMost, -kMost, 0));
    EXPECT_FALSE(Dimension::IsEquivalent({}, {}, Dimension::Millimeters, 0, Number(-1)));
    EXPECT_THROW((void)areEquivalent(0, 0, 10), std::invalid_argument);
}

} // namespace
