// Lower case of Latin letters: Basic Latin, Latin-1 and Latin Extended-A, one character to one character. The same on
// every platform and in every locale, which the C library's towlower is not.
#pragma once

#include "utilitiesstaticlib/wideliteral.h"

namespace latincase
{

constexpr char16_t ToLower(char16_t unit) noexcept
{
    const auto shifted = [unit](int by)
    {
        return static_cast<char16_t>(unit + by);
    };
    if ((unit >= u'A' && unit <= u'Z') || (unit >= 0xC0 && unit <= 0xDE && unit != 0xD7))
        return shifted(0x20);
    if (unit < 0x100 || unit > 0x17D)
        return unit;
    // In this block capital and small letter alternate; where the capitals stand on odd places, and the exceptions:
    if (unit == 0x130) // dotted capital I
        return u'i';
    if (unit == 0x178) // capital Y with diaeresis: its small letter is in Latin-1
        return 0xFF;
    if (unit == 0x138 || unit == 0x149) // no capitals
        return unit;
    const bool capitalsAreOdd = (unit >= 0x139 && unit <= 0x148) || unit >= 0x179;
    return (unit % 2 == 1) == capitalsAreOdd ? shifted(1) : unit;
}

static_assert(ToLower(u'Z') == u'z' && ToLower(u'[') == u'[' && ToLower(0xD7) == 0xD7 && ToLower(0xDE) == 0xFE);
static_assert(ToLower(0x139) == 0x13A && ToLower(0x13A) == 0x13A && ToLower(0x148) == 0x148);
static_assert(ToLower(0x14A) == 0x14B && ToLower(0x131) == 0x131 && ToLower(0x17D) == 0x17E && ToLower(0x17E) == 0x17E);

// The order of two texts by their characters in lower case: below, at or above 0.
constexpr int Compare(WStringView left, WStringView right) noexcept
{
    const std::size_t common = left.size() < right.size() ? left.size() : right.size();
    for (std::size_t index = 0; index < common; ++index)
    {
        const char16_t leftUnit = ToLower(static_cast<char16_t>(left[index]));
        const char16_t rightUnit = ToLower(static_cast<char16_t>(right[index]));
        if (leftUnit != rightUnit)
            return leftUnit < rightUnit ? -1 : 1;
    }
    if (left.size() == right.size())
        return 0;
    return left.size() < right.size() ? -1 : 1;
}

} // namespace latincase
