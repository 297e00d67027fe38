// The bounds that a foreign document must keep, checked before any parser sees it.
//
// Not every DOM has bounds of its own, and some parsers compare each attribute of an element with all others before
// they tell anybody: 100,000 attributes on one element take libxml2 14 seconds. So counting comes first. The scan
// follows well-formed text exactly; where the text is not well-formed the two may differ, and there a parser stops
// anyway.
//
// Headers of the standard library only: the portability layer stands on this too.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

namespace documentlimits
{

inline constexpr std::size_t kMaximumTextBytes = 16 * 1024 * 1024; // of UTF-8
// UTF-16 of such a text has at most twice as many bytes, and its mark: of a larger file nothing needs to be read.
inline constexpr std::size_t kMaximumFileBytes = 2 * kMaximumTextBytes + 2;
inline constexpr unsigned kMaximumAttributes = 1000; // of one element, declarations among them
inline constexpr unsigned kMaximumDepth = 256;       // the root element is level 1

inline constexpr const char* kTooLarge = "The text is larger than 16 MB.";
inline constexpr const char* kTooManyAttributes = "An element has more than 1000 attributes.";
inline constexpr const char* kTooManyComparisons = "The elements have too many attributes in all.";
inline constexpr const char* kTooDeep = "The elements are nested more than 256 levels deep.";
inline constexpr const char* kDoctype = "A document type declaration (DOCTYPE) is not allowed.";
inline constexpr const char* kLoneSurrogate = "The text has a surrogate without its partner.";
inline constexpr const char* kZeroCharacter = "The text has a zero character.";

struct Excess
{
    const char* reason;
    std::size_t offset;
};

namespace detail
{

// The sum of the squares of the attribute counts: what the parser's comparisons cost in all. A 16 MB text of elements
// with 60 attributes each, a worse one than any real document, stays below it.
inline constexpr std::uint64_t kMaximumComparisons = 1ull << 28;

inline constexpr std::size_t kEnd = std::string_view::npos;

class Scanner
{
public:
    explicit Scanner(std::string_view text) : m_text(text)
    {
    }

    std::optional<Excess> Scan()
    {
        while ((m_at = m_text.find('<', m_at)) != kEnd)
        {
            const std::size_t start = m_at;
            const std::string_view rest = m_text.substr(start);
            const char* reason = nullptr;
            if (rest.starts_with("<!--"))
                SkipPast("-->", 4);
            else if (rest.starts_with("<![CDATA["))
                SkipPast("]]>", 9);
            else if (rest.starts_with("<!DOCTYPE"))
                reason = kDoctype;
            else if (rest.starts_with("<?"))
                SkipPast("?>", 2);
            else if (rest.starts_with("</"))
                LeaveElement();
            else
                reason = EnterElement();
            if (reason != nullptr)
                return Excess{reason, start};
        }
        return std::nullopt;
    }

private:
    // An end that is missing ends the scan: the text is not well-formed.
    void SkipPast(std::string_view end, std::size_t openingLength)
    {
        const std::size_t place = m_text.find(end, m_at + openingLength);
        m_at = place != kEnd ? place + end.size() : m_text.size();
    }

    void LeaveElement()
    {
        if (m_depth > 0)
            --m_depth;
        m_at += 2;
    }

    const char* EnterElement()
    {
        std::uint64_t attributes = 0;
        for (m_at = m_text.find_first_of("=\"'>", m_at); m_at != kEnd && m_text[m_at] != '>';
             m_at = m_text.find_first_of("=\"'>", m_at + 1))
        {
            if (m_text[m_at] == '=')
                ++attributes;
            else if (m_at = m_text.find(m_text[m_at], m_at + 1); m_at == kEnd)
                break;
        }
        m_comparisons += attributes * attributes;
        const unsigned level = m_depth + 1;
        if (m_at == kEnd)
            m_at = m_text.size();
        else if (m_text[m_at - 1] != '/')
            m_depth = level;
        if (attributes > kMaximumAttributes)
            return kTooManyAttributes;
        if (m_comparisons > kMaximumComparisons)
            return kTooManyComparisons;
        return level > kMaximumDepth ? kTooDeep : nullptr;
    }

    std::string_view m_text;
    std::size_t m_at = 0;
    unsigned m_depth = 0;
    std::uint64_t m_comparisons = 0;
};

} // namespace detail

// The first place where the text exceeds a bound; nothing for a text that keeps them. One pass.
inline std::optional<Excess> FindExcess(std::string_view utf8)
{
    if (utf8.size() > kMaximumTextBytes)
        return Excess{kTooLarge, 0};
    // The parser would take a zero near the start for a sign of UTF-16.
    if (const std::size_t zero = utf8.find('\0'); zero != detail::kEnd)
        return Excess{kZeroCharacter, zero};
    return detail::Scanner(utf8).Scan();
}

} // namespace documentlimits
