#include "core/utfsteps.h"

namespace winport
{
namespace
{

constexpr char32_t kReplacement = 0xFFFD;

constexpr bool IsHighSurrogate(char16_t unit)
{
    return (unit & 0xFC00) == 0xD800;
}

constexpr bool IsLowSurrogate(char16_t unit)
{
    return (unit & 0xFC00) == 0xDC00;
}

// What may follow a lead byte. The bounds of the first continuation byte exclude overlong forms, surrogates and
// numbers above U+10FFFF (The Unicode Standard, table 3-7).
struct LeadByte
{
    std::size_t continuations; // 0: no lead byte
    unsigned char firstLow;
    unsigned char firstHigh;
};

constexpr LeadByte Classify(unsigned char lead)
{
    if (lead >= 0xC2 && lead <= 0xDF)
        return {1, 0x80, 0xBF};
    if (lead == 0xE0)
        return {2, 0xA0, 0xBF};
    if (lead == 0xED)
        return {2, 0x80, 0x9F};
    if (lead >= 0xE1 && lead <= 0xEF)
        return {2, 0x80, 0xBF};
    if (lead == 0xF0)
        return {3, 0x90, 0xBF};
    if (lead >= 0xF1 && lead <= 0xF3)
        return {3, 0x80, 0xBF};
    if (lead == 0xF4)
        return {3, 0x80, 0x8F};
    return {0, 0, 0};
}

} // namespace

DecodedStep DecodeUtf16(std::u16string_view text) noexcept
{
    const char16_t first = text[0];
    if (!IsHighSurrogate(first) && !IsLowSurrogate(first))
        return {first, 1, true};
    if (!IsHighSurrogate(first) || text.size() == 1 || !IsLowSurrogate(text[1]))
        return {kReplacement, 1, false};
    const char32_t high = first & 0x3FFu;
    const char32_t low = text[1] & 0x3FFu;
    return {0x10000 + (high << 10) + low, 2, true};
}

DecodedStep DecodeUtf8(std::string_view text) noexcept
{
    const auto lead = static_cast<unsigned char>(text[0]);
    if (lead < 0x80)
        return {lead, 1, true};
    const LeadByte kind = Classify(lead);
    if (kind.continuations == 0)
        return {kReplacement, 1, false};

    char32_t character = lead & (0x3Fu >> kind.continuations);
    for (std::size_t index = 1; index <= kind.continuations; ++index)
    {
        if (index == text.size())
            return {kReplacement, index, false};
        const auto next = static_cast<unsigned char>(text[index]);
        const unsigned char low = index == 1 ? kind.firstLow : 0x80;
        const unsigned char high = index == 1 ? kind.firstHigh : 0xBF;
        if (next < low || next > high)
            return {kReplacement, index, false};
        character = (character << 6) | (next & 0x3Fu);
    }
    return {character, kind.continuations + 1, true};
}

EncodedStep<char16_t, 2> EncodeUtf16(char32_t character) noexcept
{
    if (character < 0x10000)
        return {{static_cast<char16_t>(character)}, 1};
    const char32_t offset = character - 0x10000;
    return {{static_cast<char16_t>(0xD800 + (offset >> 10)), static_cast<char16_t>(0xDC00 + (offset & 0x3FF))}, 2};
}

EncodedStep<char, 4> EncodeUtf8(char32_t character) noexcept
{
    const auto continuation = [character](unsigned bits)
    {
        return static_cast<char>(0x80 | ((character >> bits) & 0x3F));
    };

    if (character < 0x80)
        return {{static_cast<char>(character)}, 1};
    if (character < 0x800)
        return {{static_cast<char>(0xC0 | (character >> 6)), continuation(0)}, 2};
    if (character < 0x10000)
        return {{static_cast<char>(0xE0 | (character >> 12)), continuation(6), continuation(0)}, 3};
    return {{static_cast<char>(0xF0 | (character >> 18)), continuation(12), continuation(6), continuation(0)}, 4};
}

} // namespace winport
