#include "core/utf.h"

#include <cstddef>

namespace winport
{
namespace
{

constexpr char32_t kReplacement = 0xFFFD;

// One step over a text: the character it found, or the replacement and `wellFormed` false.
struct Decoded
{
    char32_t character;
    std::size_t length;
    bool wellFormed;
};

constexpr bool IsHighSurrogate(char16_t unit)
{
    return (unit & 0xFC00) == 0xD800;
}

constexpr bool IsLowSurrogate(char16_t unit)
{
    return (unit & 0xFC00) == 0xDC00;
}

// `text` is not empty.
Decoded DecodeUtf16(std::u16string_view text)
{
    const char16_t first = text[0];
    if (!IsHighSurrogate(first) && !IsLowSurrogate(first))
        return {first, 1, true};
    if (IsHighSurrogate(first) && text.size() > 1 && IsLowSurrogate(text[1]))
        return {0x10000 + ((static_cast<char32_t>(first) & 0x3FF) << 10) + (static_cast<char32_t>(text[1]) & 0x3FF), 2,
                true};
    return {kReplacement, 1, false};
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

// `text` is not empty.
Decoded DecodeUtf8(std::string_view text)
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
        const unsigned char low = index == 1 ? kind.firstLow : 0x80;
        const unsigned char high = index == 1 ? kind.firstHigh : 0xBF;
        if (index == text.size())
            return {kReplacement, index, false};
        const auto next = static_cast<unsigned char>(text[index]);
        if (next < low || next > high)
            return {kReplacement, index, false};
        character = (character << 6) | (next & 0x3Fu);
    }
    return {character, kind.continuations + 1, true};
}

void Append(std::u16string& target, char32_t character)
{
    if (character < 0x10000)
    {
        target.push_back(static_cast<char16_t>(character));
        return;
    }
    const char32_t offset = character - 0x10000;
    target.push_back(static_cast<char16_t>(0xD800 + (offset >> 10)));
    target.push_back(static_cast<char16_t>(0xDC00 + (offset & 0x3FF)));
}

void Append(std::string& target, char32_t character)
{
    if (character < 0x80)
    {
        target.push_back(static_cast<char>(character));
        return;
    }
    const unsigned continuations = character < 0x800 ? 1 : character < 0x10000 ? 2 : 3;
    const unsigned leadMark = 0xFF00u >> (continuations + 1);
    target.push_back(static_cast<char>((leadMark & 0xFF) | (character >> (6 * continuations))));
    for (unsigned left = continuations; left-- != 0;)
        target.push_back(static_cast<char>(0x80 | ((character >> (6 * left)) & 0x3F)));
}

} // namespace

std::u16string ToUtf16(std::string_view text)
{
    std::u16string result;
    result.reserve(text.size());
    while (!text.empty())
    {
        const Decoded step = DecodeUtf8(text);
        Append(result, step.character);
        text.remove_prefix(step.length);
    }
    return result;
}

std::string ToUtf8(std::u16string_view text)
{
    std::string result;
    result.reserve(text.size());
    while (!text.empty())
    {
        const Decoded step = DecodeUtf16(text);
        Append(result, step.character);
        text.remove_prefix(step.length);
    }
    return result;
}

bool IsWellFormedUtf16(std::u16string_view text)
{
    while (!text.empty())
    {
        const Decoded step = DecodeUtf16(text);
        if (!step.wellFormed)
            return false;
        text.remove_prefix(step.length);
    }
    return true;
}

bool IsWellFormedUtf8(std::string_view text)
{
    while (!text.empty())
    {
        const Decoded step = DecodeUtf8(text);
        if (!step.wellFormed)
            return false;
        text.remove_prefix(step.length);
    }
    return true;
}

bool ToUtf8Strict(std::u16string_view text, std::string& target)
{
    if (!IsWellFormedUtf16(text))
        return false;
    target = ToUtf8(text);
    return true;
}

bool ToUtf16Strict(std::string_view text, std::u16string& target)
{
    if (!IsWellFormedUtf8(text))
        return false;
    target = ToUtf16(text);
    return true;
}

} // namespace winport
