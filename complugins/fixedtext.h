// Text in a character array of fixed size, as devmodes and form records have it: bounded by the array, whether somebody
// else has terminated it or not.
#pragma once

#include <algorithm>
#include <cstddef>
#include <iterator>

#include "utilitiesstaticlib/wideliteral.h"

template <std::size_t Capacity>
[[nodiscard]] WStringView GetFixedText(const WCHAR (&field)[Capacity]) noexcept
{
    const auto* const end = std::find(std::begin(field), std::end(field), WCHAR());
    return {field, static_cast<std::size_t>(end - field)};
}

// A text that is too long is cut, so that it is always terminated; zeros fill up the array.
template <std::size_t Capacity>
void SetFixedText(WCHAR (&field)[Capacity], WStringView text) noexcept
{
    text = text.substr(0, Capacity - 1);
    std::fill(std::copy(text.begin(), text.end(), std::begin(field)), std::end(field), WCHAR());
}
