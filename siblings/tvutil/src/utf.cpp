#include "utf.h"

namespace utf
{
namespace
{

constexpr char32_t kReplacement = 0xFFFD;

constexpr bool IsHighSurrogate(char32_t unit)
{
    return unit >= 0xD800 && unit <= 0xDBFF;
}

constexpr bool IsLowSurrogate(char32_t unit)
{
    return unit >= 0xDC00 && unit <= 0xDFFF;
}

char32_t NextOfUtf16(WStringView text, std::size_t& position)
{
    const char32_t unit = static_cast<char16_t>(text[position++]);
    if (!IsHighSurrogate(unit) && !IsLowSurrogate(unit))
        return unit;
    if (IsLowSurrogate(unit) || position == text.size())
        return kReplacement;
    const char32_t low = static_cast<char16_t>(text[position]);
    if (!IsLowSurrogate(low))
        return kReplacement;
    ++position;
    return 0x10000 + ((unit - 0xD800) << 10) + (low - 0xDC00);
}

// What a lead byte promises: how many bytes follow, and the range of the first of them, which rules out overlong
// forms, surrogates and what lies beyond U+10FFFF.
struct Lead
{
    unsigned char first;
    unsigned char last;
    unsigned char following;
    unsigned char secondFirst;
    unsigned char secondLast;
};

constexpr Lead kLeads[] = {
    {0xC2, 0xDF, 1, 0x80, 0xBF}, //
    {0xE0, 0xE0, 2, 0xA0, 0xBF}, //
    {0xE1, 0xEC, 2, 0x80, 0xBF}, //
    {0xED, 0xED, 2, 0x80, 0x9F}, //
    {0xEE, 0xEF, 2, 0x80, 0xBF}, //
    {0xF0, 0xF0, 3, 0x90, 0xBF}, //
    {0xF1, 0xF3, 3, 0x80, 0xBF}, //
    {0xF4, 0xF4, 3, 0x80, 0x8F}, //
};

const Lead* FindLead(unsigned char byte)
{
    for (const Lead& lead : kLeads)
        if (byte >= lead.first && byte <= lead.last)
            return &lead;
    return nullptr;
}

char32_t NextOfUtf8(std::string_view text, std::size_t& position)
{
    const auto byte = static_cast<unsigned char>(text[position++]);
    if (byte < 0x80)
        return byte;
    const Lead* const lead = FindLead(byte);
    if (lead == nullptr)
        return kReplacement;
    char32_t point = byte & (0x3Fu >> lead->following);
    for (unsigned index = 0; index < lead->following; ++index)
    {
        if (position == text.size())
            return kReplacement;
        const auto next = static_cast<unsigned char>(text[position]);
        const unsigned char first = index == 0 ? lead->secondFirst : static_cast<unsigned char>(0x80);
        const unsigned char last = index == 0 ? lead->secondLast : static_cast<unsigned char>(0xBF);
        if (next < first || next > last)
            return kReplacement;
        point = (point << 6) | (next & 0x3Fu);
        ++position;
    }
    return point;
}

void AppendUtf8(std::string& target, char32_t point)
{
    const auto add = [&target](char32_t byte)
    {
        target.push_back(static_cast<char>(static_cast<unsigned char>(byte)));
    };
    if (point < 0x80)
        return add(point);
    if (point < 0x800)
        add(0xC0 | (point >> 6));
    else
    {
        if (point < 0x10000)
            add(0xE0 | (point >> 12));
        else
        {
            add(0xF0 | (point >> 18));
            add(0x80 | ((point >> 12) & 0x3F));
        }
        add(0x80 | ((point >> 6) & 0x3F));
    }
    add(0x80 | (point & 0x3F));
}

// One or two units; returns how many.
std::size_t EncodeUtf16(char32_t point, WCHAR (&units)[2]) noexcept
{
    if (point < 0x10000)
    {
        units[0] = static_cast<WCHAR>(point);
        return 1;
    }
    units[0] = static_cast<WCHAR>(0xD800 + ((point - 0x10000) >> 10));
    units[1] = static_cast<WCHAR>(0xDC00 + ((point - 0x10000) & 0x3FF));
    return 2;
}

} // namespace

std::string ToUtf8(WStringView text)
{
    std::string result;
    result.reserve(text.size());
    for (std::size_t position = 0; position < text.size();)
        AppendUtf8(result, NextOfUtf16(text, position));
    return result;
}

WideString ToUtf16(std::string_view text)
{
    WideString result;
    result.reserve(text.size());
    for (std::size_t position = 0; position < text.size();)
    {
        WCHAR units[2];
        result.append(units, EncodeUtf16(NextOfUtf8(text, position), units));
    }
    return result;
}

std::size_t ToUtf16Bounded(std::string_view text, WCHAR* room, std::size_t roomLength) noexcept
{
    std::size_t length = 0;
    for (std::size_t position = 0; position < text.size();)
    {
        WCHAR units[2];
        const std::size_t count = EncodeUtf16(NextOfUtf8(text, position), units);
        if (length + count >= roomLength)
            break;
        for (std::size_t index = 0; index < count; ++index)
            room[length++] = units[index];
    }
    room[length] = WCHAR();
    return length;
}

} // namespace utf
