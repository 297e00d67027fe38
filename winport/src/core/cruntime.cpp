// The C runtime's wide functions that the C library has for 32-bit characters only.
#include <windows.h>

#include <cstdint>
#include <limits>
#include <string_view>

namespace
{

constexpr bool IsDigit(WCHAR unit)
{
    return unit >= u'0' && unit <= u'9';
}

} // namespace

int _wtoi(const WCHAR* text)
{
    constexpr std::u16string_view kBlanks = u" \t\n\v\f\r";
    constexpr std::int64_t kLargest = std::numeric_limits<int>::max();

    if (text == nullptr)
        return 0;
    while (*text != 0 && kBlanks.find(*text) != std::u16string_view::npos)
        ++text;
    const bool negative = *text == u'-';
    if (negative || *text == u'+')
        ++text;

    // One above the largest: the smallest negative number needs it, anything beyond is cut to the range.
    std::int64_t value = 0;
    for (; IsDigit(*text) && value <= kLargest; ++text)
        value = value * 10 + (*text - u'0');
    if (negative)
        return value > kLargest ? std::numeric_limits<int>::min() : static_cast<int>(-value);
    return value > kLargest ? std::numeric_limits<int>::max() : static_cast<int>(value);
}
