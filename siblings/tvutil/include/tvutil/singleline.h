// Texts of the data model are one line each: what could break a line, or hide something in it, becomes a blank, so that
// no value can forge a line of a job ticket.
#pragma once

#include <algorithm>

#include <tvutil/cxstring.h>

// The control characters of both kinds, and the separators of lines and paragraphs.
[[nodiscard]] constexpr bool BreaksALine(WCHAR character) noexcept
{
    return character < WCHAR(0x20) || (character >= WCHAR(0x7F) && character <= WCHAR(0x9F)) ||
           character == WCHAR(0x2028) || character == WCHAR(0x2029);
}

[[nodiscard]] inline bool IsSingleLine(WStringView text) noexcept
{
    return std::none_of(text.begin(), text.end(), BreaksALine);
}

// Nothing to be seen in it, also when it is empty.
[[nodiscard]] inline bool IsBlank(WStringView text) noexcept
{
    return text.find_first_not_of(W(" \x00A0\x3000")) == WStringView::npos;
}

[[nodiscard]] inline CXString SingleLine(WStringView text)
{
    WideString line(text);
    std::replace_if(line.begin(), line.end(), BreaksALine, W(' '));
    return CXString(line);
}
