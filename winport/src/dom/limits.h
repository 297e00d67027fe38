// The bounds that foreign text must keep, checked before the parser sees it.
//
// The parser compares each attribute of an element with all others before it tells anybody, so counting must come
// first: 100,000 attributes on one element take it 14 seconds. The scan follows well-formed text exactly; where the
// text is not well-formed the two may differ, and there the parser stops anyway (loader.h).
#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

namespace winport::dom
{

inline constexpr std::size_t kMaximumTextBytes = 16 * 1024 * 1024; // of UTF-8
inline constexpr unsigned kMaximumAttributes = 1000;               // of one element, declarations among them
inline constexpr unsigned kMaximumDepth = 256;                     // the root element is level 1

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

// The first place where the text exceeds a bound; nothing for a text that keeps them. One pass.
std::optional<Excess> FindExcess(std::string_view utf8);

} // namespace winport::dom
