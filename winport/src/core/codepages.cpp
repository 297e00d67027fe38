// Conversion between code pages and UTF-16. Nothing here allocates.
#include <windows.h>

#include <climits>
#include <cstdint>
#include <string_view>

#include "core/utfsteps.h"

namespace
{

constexpr UINT kWestern = 1252;

// Windows-1252 where it differs from Latin-1: 0x80 to 0x9F. The five bytes without a character stand for the control
// characters of the same number, on Windows too.
// Source: https://www.unicode.org/Public/MAPPINGS/VENDORS/MICSFT/WindowsBestFit/bestfit1252.txt
constexpr WCHAR kWesternFrom80[] = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, // 80
    0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0x008D, 0x017D, 0x008F, // 88
    0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014, // 90
    0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178, // 98
};
static_assert(std::size(kWesternFrom80) == 0x20);

// Takes what a conversion makes, and counts it whether it fits or not.
template <class Unit>
class Output
{
public:
    Output(Unit* target, int size) : m_target(target), m_size(size)
    {
    }

    void Append(std::basic_string_view<Unit> units)
    {
        for (const Unit unit : units)
        {
            if (m_count < m_size)
                m_target[m_count] = unit;
            ++m_count;
        }
    }

    // The count, or 0 with the last error set. A size of 0 asked for the count.
    [[nodiscard]] int Finish() const
    {
        if (m_count <= INT_MAX && (m_size == 0 || m_count <= m_size))
            return static_cast<int>(m_count);
        SetLastError(m_count > INT_MAX ? ERROR_INVALID_PARAMETER : ERROR_INSUFFICIENT_BUFFER);
        return 0;
    }

private:
    Unit* m_target;
    std::int64_t m_size;
    std::int64_t m_count = 0;
};

int Fail(DWORD error)
{
    SetLastError(error);
    return 0;
}

WCHAR WesternToWide(char byte)
{
    const auto value = static_cast<unsigned char>(byte);
    return value >= 0x80 && value < 0xA0 ? kWesternFrom80[value - 0x80] : WCHAR{value};
}

bool IsWestern(UINT codePage)
{
    return codePage == CP_ACP || codePage == kWestern;
}

template <class From, class To>
bool AreUsable(UINT codePage, const From* source, int length, const To* target, int size)
{
    const bool known = IsWestern(codePage) || codePage == CP_UTF8;
    const bool sourceUsable = source != nullptr && length != 0;
    const bool targetUsable = size == 0 || (size > 0 && target != nullptr);
    const bool apart = static_cast<const void*>(source) != static_cast<const void*>(target);
    return known && sourceUsable && targetUsable && apart;
}

// Any negative length means zero-terminated, and the terminator counts.
template <class Unit>
std::basic_string_view<Unit> View(const Unit* text, int length)
{
    if (length < 0)
        return {text, std::char_traits<Unit>::length(text) + 1};
    return {text, static_cast<std::size_t>(length)};
}

// False for an ill-formed text in strict mode.
bool Utf8ToWide(std::string_view text, bool strict, Output<WCHAR>& output)
{
    while (!text.empty())
    {
        const winport::DecodedStep step = winport::DecodeUtf8(text);
        if (strict && !step.wellFormed)
            return false;
        output.Append(winport::EncodeUtf16(step.character).View());
        text.remove_prefix(step.length);
    }
    return true;
}

} // namespace

int WINAPI MultiByteToWideChar(UINT codePage, DWORD flags, LPCSTR text, int length, LPWSTR wide, int wideSize)
{
    if (!AreUsable(codePage, text, length, wide, wideSize))
        return Fail(ERROR_INVALID_PARAMETER);
    if ((flags & ~MB_ERR_INVALID_CHARS) != 0)
        return Fail(ERROR_INVALID_FLAGS);

    Output<WCHAR> output(wide, wideSize);
    const std::string_view source = View(text, length);
    if (codePage == CP_UTF8)
    {
        if (!Utf8ToWide(source, flags != 0, output))
            return Fail(ERROR_NO_UNICODE_TRANSLATION);
        return output.Finish();
    }
    for (const char byte : source)
    {
        const WCHAR unit = WesternToWide(byte);
        output.Append({&unit, 1});
    }
    return output.Finish();
}
