// Code pages and the C runtime's wide functions.
#include <windows.h>

#include <climits>
#include <string>
#include <string_view>

#include <gtest/gtest.h>

#include "tests/platform/wine.h"
#include "tests/platform/withlasterror.h"
#include "utilitiesstaticlib/wideliteral.h"

namespace
{

constexpr UINT kWestern = 1252;

// By the two-call idiom; an empty answer after a failure.
WideString ToWide(UINT codePage, DWORD flags, std::string_view text)
{
    const int length = static_cast<int>(text.size());
    const int size = MultiByteToWideChar(codePage, flags, text.data(), length, nullptr, 0);
    WideString wide(static_cast<std::size_t>(size), W('~'));
    EXPECT_EQ(MultiByteToWideChar(codePage, flags, text.data(), length, wide.data(), size), size);
    return wide;
}

} // namespace

TEST(CodePages, ConvertToWideCharacters)
{
    struct Pair
    {
        const char* name;
        UINT codePage;
        std::string_view bytes;
        WStringView wide;
    };
    constexpr Pair kPairs[] = {
        {"two bytes", CP_UTF8, "A4\xC3\x84\xDF\xBF", W("A4\x00C4\x07FF")},
        {"three bytes", CP_UTF8, "\xE0\xA0\x80\xEF\xBF\xBF", W("\x0800\xFFFF")},
        {"four bytes", CP_UTF8, "\xF0\x90\x80\x80\xF4\x8F\xBF\xBF", W("\xD800\xDC00\xDBFF\xDFFF")},
        {"zero inside", CP_UTF8, {"a\0b", 3}, {W("a\0b"), 3}},
        {"Latin-1", kWestern, "A4\xA0\xC4\xFF", W("A4\x00A0\x00C4\x00FF")},
        {"where it differs from Latin-1", kWestern, "\x80\x85\x99\x9F", W("\x20AC\x2026\x2122\x0178")},
        {"bytes without a character", kWestern, "\x81\x8D\x8F\x90\x9D", W("\x0081\x008D\x008F\x0090\x009D")},
    };
    for (const Pair& pair : kPairs)
    {
        SCOPED_TRACE(pair.name);
        EXPECT_EQ(ToWide(pair.codePage, pair.codePage == CP_UTF8 ? MB_ERR_INVALID_CHARS : 0, pair.bytes), pair.wide);
        if (pair.codePage == kWestern)
        {
            EXPECT_EQ(ToWide(CP_ACP, 0, pair.bytes), pair.wide);
        }
    }
}

TEST(CodePages, IllFormedTextIsReplacedOrRefused)
{
    constexpr std::string_view kBadUtf8[] = {
        "\x80",             // continuation alone
        "\xC0\x80",         // overlong
        "\xE0\x9F\xBF",     // overlong
        "\xED\xA0\x80",     // surrogate
        "\xF4\x90\x80\x80", // above U+10FFFF
        "\xE2\x82",         // cut short
    };
    for (const std::string_view bad : kBadUtf8)
    {
        SCOPED_TRACE(testing::PrintToString(bad));
        // How many replacements a bad sequence gives differs between versions of the platform: at least one.
        const WideString replaced = ToWide(CP_UTF8, 0, "<" + std::string(bad) + ">");
        ASSERT_GE(replaced.size(), 3u);
        EXPECT_EQ(replaced, W("<") + WideString(replaced.size() - 2, W('\xFFFD')) + W(">"));
        const auto refused = WithLastError(
            [bad] {
                return MultiByteToWideChar(CP_UTF8, MB_ERR_INVALID_CHARS, bad.data(), static_cast<int>(bad.size()),
                                           nullptr, 0);
            });
        EXPECT_EQ(refused, std::pair(0, DWORD{ERROR_NO_UNICODE_TRANSLATION}));
    }
}

TEST(CodePages, SizesAreCheckedAndCountTheTerminatorOnlyWhenItWasAskedFor)
{
    struct Case
    {
        const char* name;
        UINT page;
        DWORD flags;
        const char* text; // into a room of three
        int length;
        int size;
        DWORD error;
    };
    constexpr Case kCases[] = {
        {"all with the terminator", CP_UTF8, 0, "ab", -1, 3, 0},
        {"a part without", CP_UTF8, 0, "abc", 2, 2, 0},
        {"too small", CP_UTF8, 0, "abc", -1, 0, ERROR_INSUFFICIENT_BUFFER},
        {"room for half a pair", CP_UTF8, 0, "ab\xF0\x90\x80\x80", 6, 0, ERROR_INSUFFICIENT_BUFFER},
        {"no length", CP_UTF8, 0, "abc", 0, 0, ERROR_INVALID_PARAMETER},
        {"no text", CP_UTF8, 0, nullptr, -1, 0, ERROR_INVALID_PARAMETER},
        {"no such page", 64999, 0, "a", -1, 0, ERROR_INVALID_PARAMETER},
        {"no such flag", CP_UTF8, 0x40000000, "a", -1, 0, ERROR_INVALID_FLAGS},
    };
    for (const Case& test : kCases)
    {
        if (test.length == 6 && IsWine()) // which writes the first half and calls it success
            continue;
        SCOPED_TRACE(test.name);
        WCHAR wide[4] = {W('~'), W('~'), W('~'), W('~')};
        const auto [size, error] =
            WithLastError([&] { return MultiByteToWideChar(test.page, test.flags, test.text, test.length, wide, 3); });
        EXPECT_EQ(size, test.size);
        EXPECT_EQ(error, test.error);
        EXPECT_EQ(wide[3], W('~')) << "beyond the room";
        if (size != 0)
        {
            EXPECT_EQ(WideString(wide, 3), WideString(W("ab")) + (size == 3 ? W('\0') : W('~')));
        }
    }
}

TEST(CRuntime, TakesNumbers)
{
    struct Case
    {
        const WCHAR* text;
        int value;
    };
    constexpr Case kCases[] = {
        {W(""), 0},
        {W("600dpi"), 600},
        {W("-12"), -12},
        {W("+-12"), 0},
        {W("- 12"), 0},
        {W(" \t\n\v\f\r+12 34"), 12},
        {W("0x10"), 0},
        {W("2147483647"), INT_MAX},
        {W("4294967297"), INT_MAX},
        {W("-2147483648"), INT_MIN},
        {W("-99999999999999999999999999"), INT_MIN},
    };
    for (const Case& test : kCases)
        EXPECT_EQ(_wtoi(test.text), test.value) << testing::PrintToString(WideString(test.text));
}
