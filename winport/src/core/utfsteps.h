// Single steps of UTF-8 and UTF-16, without allocation: one character in, one character out.
#pragma once

#include <cstddef>
#include <string_view>

namespace winport
{

// What stands first in a text. A part that is not well-formed is U+FFFD with `wellFormed` false; `length` counts the
// code units that it covers, 1 or more.
struct DecodedStep
{
    char32_t character;
    std::size_t length;
    bool wellFormed;
};

// The text is not empty.
DecodedStep DecodeUtf16(std::u16string_view text) noexcept;
DecodedStep DecodeUtf8(std::string_view text) noexcept;

// One character in code units.
template <class Unit, std::size_t Most>
struct EncodedStep
{
    Unit units[Most];
    std::size_t length;

    [[nodiscard]] std::basic_string_view<Unit> View() const noexcept
    {
        return {units, length};
    }
};

// The character is a Unicode scalar value.
EncodedStep<char16_t, 2> EncodeUtf16(char32_t character) noexcept;
EncodedStep<char, 4> EncodeUtf8(char32_t character) noexcept;

} // namespace winport
