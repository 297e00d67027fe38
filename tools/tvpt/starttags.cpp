#include "starttags.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <string_view>
#include <utility>

#include <tvutil/cxstring.h>

namespace
{

constexpr WStringView kWhiteSpace = W(" \t\r\n");
constexpr WStringView kNameEnd = W(" \t\r\n/>=");

std::string Utf8(WStringView text)
{
    return CXString(text).ToUtf8();
}

std::string Utf8(char32_t character)
{
    if (character < 0x10000)
        return Utf8(WideString(1, static_cast<WCHAR>(character)));
    character -= 0x10000;
    return Utf8(
        WideString{static_cast<WCHAR>(0xD800 + (character >> 10)), static_cast<WCHAR>(0xDC00 + (character & 0x3FF))});
}

// What a reference stands for; empty for one that no text without declarations can have.
std::string Resolve(std::string_view reference)
{
    struct Named
    {
        std::string_view name;
        const char* text;
    };
    constexpr Named kNamed[] = {{"amp", "&"}, {"lt", "<"}, {"gt", ">"}, {"quot", "\""}, {"apos", "'"}};
    for (const Named& row : kNamed)
        if (reference == row.name)
            return row.text;
    if (!reference.starts_with('#'))
        return {};
    const bool isHexadecimal = reference.starts_with("#x");
    reference.remove_prefix(isHexadecimal ? 2 : 1);
    std::uint32_t character = 0;
    std::from_chars(reference.data(), reference.data() + reference.size(), character, isHexadecimal ? 16 : 10);
    return Utf8(static_cast<char32_t>(character));
}

std::string Unescaped(WStringView value)
{
    std::string text;
    const std::string written = Utf8(value);
    for (std::size_t at = 0; at < written.size();)
    {
        const std::size_t end = written[at] == '&' ? written.find(';', at) : std::string::npos;
        if (end != std::string::npos)
        {
            text += Resolve(std::string_view(written).substr(at + 1, end - at - 1));
            at = end + 1;
        }
        else
            text += written[at++];
    }
    return text;
}

} // namespace

StartTagScanner::StartTagScanner(WStringView text) : m_text(text)
{
}

std::optional<StartTag> StartTagScanner::Next()
{
    while ((m_at = m_text.find(W('<'), m_at)) < m_text.size())
    {
        const WStringView rest = m_text.substr(m_at);
        if (rest.starts_with(W("<!--")))
            SkipPast(W("-->"), 4);
        else if (rest.starts_with(W("<![CDATA[")))
            SkipPast(W("]]>"), 9);
        else if (rest.starts_with(W("<?")))
            SkipPast(W("?>"), 2);
        else if (rest.starts_with(W("</")))
            SkipPast(W(">"), 2);
        else
            return ReadTag();
    }
    return std::nullopt;
}

void StartTagScanner::SkipPast(WStringView end, std::size_t openingLength)
{
    const std::size_t place = m_text.find(end, m_at + openingLength);
    m_at = place != WStringView::npos ? place + end.size() : m_text.size();
}

StartTag StartTagScanner::ReadTag()
{
    StartTag tag{m_at, EndOf(kNameEnd), {}};
    m_at = tag.nameEnd;
    while (const std::optional<Attribute> attribute = ReadAttribute())
    {
        if (attribute->name == WStringView(W("xmlns")))
            tag.declarations.push_back({{}, Unescaped(attribute->value)});
        else if (attribute->name.starts_with(W("xmlns:")))
            tag.declarations.push_back({Utf8(attribute->name.substr(6)), Unescaped(attribute->value)});
    }
    return tag;
}

// Nothing at the end of the tag, or of what can be followed.
std::optional<StartTagScanner::Attribute> StartTagScanner::ReadAttribute()
{
    m_at = std::min(m_text.find_first_not_of(kWhiteSpace, m_at), m_text.size());
    const std::size_t nameEnd = EndOf(kNameEnd);
    const WStringView name = m_text.substr(m_at, nameEnd - m_at);
    const std::size_t quote = m_text.find_first_not_of(W(" \t\r\n="), nameEnd);
    const std::size_t close =
        !name.empty() && quote != WStringView::npos ? m_text.find(m_text[quote], quote + 1) : WStringView::npos;
    if (close == WStringView::npos)
    {
        m_at = std::min(nameEnd + 1, m_text.size());
        return std::nullopt;
    }
    m_at = close + 1;
    return Attribute{name, m_text.substr(quote + 1, close - quote - 1)};
}

std::size_t StartTagScanner::EndOf(WStringView ends) const
{
    return std::min(m_text.find_first_of(ends, m_at), m_text.size());
}

std::vector<StartTag> FindStartTags(WStringView text)
{
    std::vector<StartTag> tags;
    StartTagScanner scanner(text);
    while (std::optional<StartTag> tag = scanner.Next())
        if (tags.empty() || !tag->declarations.empty())
            tags.push_back(std::move(*tag));
    return tags;
}
