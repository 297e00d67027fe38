// Code pages and the C runtime's wide functions.
#include <windows.h>

#include <climits>
#include <cwchar>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include "tests/platform/wine.h"
#include "tests/platform/withlasterror.h"
#include "utilitiesstaticlib/wideliteral.h"

namespace
{

constexpr UINT kWestern = 1252;

int Length(const auto& text)
{
    return static_cast<int>(text.size());
}

// Both by the two-call idiom; an empty answer after a failure.
WideString ToWide(UINT codePage, DWORD flags, std::string_view text)
{
    const int size = MultiByteToWideChar(codePage, flags, text.data(), Length(text), nullptr, 0);
    WideString wide(static_cast<std::size_t>(size), W('~'));
    EXPECT_EQ(MultiByteToWideChar(codePage, flags, text.data(), Length(text), wide.data(), size), size);
    return wide;
}

std::string ToBytes(UINT codePage, DWORD flags, WStringView wide)
{
    const int size = WideCharToMultiByte(codePage, flags, wide.data(), Length(wide), nullptr, 0, nullptr, nullptr);
    std::string text(static_cast<std::size_t>(size), '~');
    EXPECT_EQ(WideCharToMultiByte(codePage, flags, wide.data(), Length(wide), text.data(), size, nullptr, nullptr),
              size);
    return text;
}

} // namespace

TEST(CodePages, ConvertBothWays)
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
        const bool isUtf8 = pair.codePage == CP_UTF8;
        EXPECT_EQ(ToWide(pair.codePage, isUtf8 ? MB_ERR_INVALID_CHARS : 0, pair.bytes), pair.wide);
        EXPECT_EQ(ToBytes(pair.codePage, isUtf8 ? WC_ERR_INVALID_CHARS : WC_NO_BEST_FIT_CHARS, pair.wide), pair.bytes);
        if (!isUtf8 && GetACP() == kWestern)
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
        const auto [count, error] = WithLastError(
            [bad] { return MultiByteToWideChar(CP_UTF8, MB_ERR_INVALID_CHARS, bad.data(), Length(bad), nullptr, 0); });
        EXPECT_EQ(count, 0);
        EXPECT_EQ(error, DWORD{ERROR_NO_UNICODE_TRANSLATION});
    }

    for (const WideString& bad : {WideString{0xD800}, WideString{0xDC00, 'x'}, WideString{0xDC00, 0xD800}})
    {
        EXPECT_EQ(ToBytes(CP_UTF8, 0, bad).substr(0, 3), "\xEF\xBF\xBD");
        const auto convert = [&bad]
        {
            return WideCharToMultiByte(CP_UTF8, WC_ERR_INVALID_CHARS, bad.data(), Length(bad), nullptr, 0, nullptr,
                                       nullptr);
        };
        const auto [count, error] = WithLastError(convert);
        EXPECT_EQ(count, 0);
        EXPECT_EQ(error, DWORD{ERROR_NO_UNICODE_TRANSLATION});
    }
}

TEST(CodePages, SizesCountTheTerminatorOnlyWhenItWasAskedFor)
{
    WCHAR wide[4] = {W('~'), W('~'), W('~'), W('~')};
    EXPECT_EQ(MultiByteToWideChar(CP_UTF8, 0, "abc", -1, nullptr, 0), 4);
    EXPECT_EQ(MultiByteToWideChar(CP_UTF8, 0, "abc", -1, wide, 4), 4);
    EXPECT_EQ(WStringView(wide), W("abc"));
    EXPECT_EQ(MultiByteToWideChar(CP_UTF8, 0, "xyz", 2, wide, 4), 2);
    EXPECT_EQ(WStringView(wide), W("xyc"));
    EXPECT_EQ(WideCharToMultiByte(CP_UTF8, 0, W("\x20AC"), -1, nullptr, 0, nullptr, nullptr), 4);
    if (!IsWine()) // which writes the first half of a pair and calls it success
    {
        EXPECT_EQ(MultiByteToWideChar(CP_UTF8, 0, "\xF0\x90\x80\x80", 4, wide, 1), 0);
    }
}

TEST(CodePages, ArgumentsThatCannotBeMetAreErrors)
{
    constexpr DWORD kUnknownFlag = 0x40000000;
    constexpr UINT kUnknownPage = 64999;
    struct Case
    {
        const char* name;
        UINT page;
        DWORD flags;
        const char* text;  // converted to wide characters into a room of two, when it is given;
        const WCHAR* wide; // else this to bytes into a room of three
        int length;
        DWORD error;
    };
    constexpr Case kCases[] = {
        {"too small", CP_UTF8, 0, "abc", nullptr, -1, ERROR_INSUFFICIENT_BUFFER},
        {"too small for bytes", kWestern, 0, nullptr, W("abc"), -1, ERROR_INSUFFICIENT_BUFFER},
        {"room for half a character", CP_UTF8, 0, nullptr, W("a\x20AC"), 2, ERROR_INSUFFICIENT_BUFFER},
        {"no length", CP_UTF8, 0, "abc", nullptr, 0, ERROR_INVALID_PARAMETER},
        {"no text", CP_UTF8, 0, nullptr, nullptr, -1, ERROR_INVALID_PARAMETER},
        {"no such page", kUnknownPage, 0, "a", nullptr, -1, ERROR_INVALID_PARAMETER},
        {"no such page for bytes", kUnknownPage, 0, nullptr, W("a"), -1, ERROR_INVALID_PARAMETER},
        {"no such flag", CP_UTF8, kUnknownFlag, "a", nullptr, -1, ERROR_INVALID_FLAGS},
    };
    for (const Case& test : kCases)
    {
        SCOPED_TRACE(test.name);
        WCHAR wide[3] = {W('~'), W('~'), W('~')};
        char bytes[4] = "~~~";
        const auto convert = [&]
        {
            return test.text != nullptr
                       ? MultiByteToWideChar(test.page, test.flags, test.text, test.length, wide, 2)
                       : WideCharToMultiByte(test.page, test.flags, test.wide, test.length, bytes, 3, nullptr, nullptr);
        };
        const auto [count, error] = WithLastError(convert);
        EXPECT_EQ(count, 0);
        EXPECT_EQ(error, test.error);
        EXPECT_EQ(wide[2], W('~'));
        EXPECT_EQ(bytes[3], 0);
    }
}

TEST(CRuntime, TakesNumbersAndIgnoresCase)
{
    struct Case
    {
        const WCHAR* text;
        int value;
    };
    constexpr Case kCases[] = {
        {W(""), 0},
        {W("600dpi"), 600},
        {W("dpi"), 0},
        {W("-12"), -12},
        {W("+12"), 12},
        {W("+-12"), 0},
        {W("- 12"), 0},
        {W(" \t\n\v\f\r12 34"), 12},
        {W("0x10"), 0},
        {W("2147483647"), INT_MAX},
        {W("4294967297"), INT_MAX},
        {W("-2147483648"), INT_MIN},
        {W("-99999999999999999999999999"), INT_MIN},
    };
    for (const Case& test : kCases)
        EXPECT_EQ(_wtoi(test.text), test.value) << testing::PrintToString(WideString(test.text));
    EXPECT_EQ(_wcsicmp(W("Excel.EXE"), W("excel.exe")), 0);
    EXPECT_LT(_wcsicmp(W("_"), W("A")), 0); // compared as lower case: the underscore stands between the cases
}
