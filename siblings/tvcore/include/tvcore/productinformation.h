// Items of a product's information, and what they say.
#pragma once

#include <cstdint>

#include <tvutil/cxstring.h>

namespace ProductInformation
{

inline constexpr std::int32_t kColor = 13; // "Color", in any case of letters, for a colour device; or another word

[[nodiscard]] inline bool SaysColor(const CXString& text)
{
    return text.CompareNoCase(W("Color")) == 0;
}

} // namespace ProductInformation
