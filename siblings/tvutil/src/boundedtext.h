// BoundedText: a line of text in a fixed room, for places that must not allocate. What does not fit is cut.
#pragma once

#include <charconv>
#include <cstddef>
#include <iterator>
#include <string_view>

#include "utf.h"
#include "utilitiesstaticlib/wideliteral.h"

class BoundedText
{
public:
    BoundedText& operator<<(WStringView text) noexcept
    {
        for (std::size_t index = 0; index < text.size() && m_length + 1 < kRoom; ++index)
            m_text[m_length++] = text[index];
        m_text[m_length] = WCHAR();
        return *this;
    }

    BoundedText& operator<<(std::string_view utf8) noexcept
    {
        m_length += utf::ToUtf16Bounded(utf8, m_text + m_length, kRoom - m_length);
        return *this;
    }

    BoundedText& operator<<(int number) noexcept
    {
        char digits[16];
        const auto [end, error] = std::to_chars(std::begin(digits), std::end(digits), number);
        return *this << std::string_view(digits, static_cast<std::size_t>(end - digits));
    }

    // A line end, in the place of the last character where there is no room for more.
    void EndLine() noexcept
    {
        if (m_length + 1 == kRoom)
            --m_length;
        *this << WStringView(W("\n"));
    }

    [[nodiscard]] const WCHAR* c_str() const noexcept
    {
        return m_text;
    }

private:
    static constexpr std::size_t kRoom = 1024;

    WCHAR m_text[kRoom] = {};
    std::size_t m_length = 0; // below kRoom: the terminator stands behind
};
