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

struct Pair
{
    const char* name;
    std::string_view bytes;
    WStringView wide;
};

constexpr Pair kUtf8Pairs[] = {
    {"ASCII", "A4", W("A4")},
    {"two bytes", "\xC3\x84\xDF\xBF", W("\x00C4\x07FF")},
    {"three bytes", "\xE0\xA0\x80\xEF\xBF\xBF", W("\x0800\xFFFF")},
    {"four bytes", "\xF0\x90\x80\x80\xF4\x8F\xBF\xBF", W("\xD800\xDC00\xDBFF\xDFFF")},
    {"zero inside", {"a\0b", 3}, {W("a\0b"), 3}},
};

constexpr Pair kWesternPairs[] = {
    {"ASCII", "A4", W("A4")},
    {"Latin-1", "\xA0\xC4\xFF", W("\x00A0\x00C4\x00FF")},
    {"where it differs from Latin-1", "\x80\x85\x99\x9F", W("\x20AC\x2026\x2122\x0178")},
    {"bytes without a character", "\x81\x8D\x8F\x90\x9D", W("\x0081\x008D\x008F\x0090\x009D")},
};

int Length(std::string_view text)
{
    return static_cast<int>(text.size());
}

int Length(WStringView text)
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
    for (const Pair& pair : kUtf8Pairs)
    {
        SCOPED_TRACE(pair.name);
        EXPECT_EQ(ToWide(CP_UTF8, MB_ERR_INVALID_CHARS, pair.bytes), pair.wide);
        EXPECT_EQ(ToBytes(CP_UTF8, WC_ERR_INVALID_CHARS, pair.wide), pair.bytes);
    }
    std::vector<UINT> westernPages = {kWestern};
    if (GetACP() == kWestern)
        westernPages.push_back(CP_ACP);
    for (const UINT page : westernPages)
    {
        for (const Pair& pair : kWesternPairs)
        {
            SCOPED_TRACE(pair.name);
            EXPECT_EQ(ToWide(page, 0, pair.bytes), pair.wide);
            EXPECT_EQ(ToBytes(page, WC_NO_BEST_FIT_CHARS, pair.wide), pair.bytes);
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
        "\xFF",
    };
    for (const std::string_view bad : kBadUtf8)
    {
        SCOPED_TRACE(testing::PrintToString(bad));
        // How many replacements a bad sequence gives differs between versions of the platform: at least one.
        std::string text = "<";
        text += bad;
        text += '>';
        const WideString replaced = ToWide(CP_UTF8, 0, text);
        EXPECT_EQ(replaced.front(), W('<'));
        EXPECT_EQ(replaced.back(), W('>'));
        ASSERT_GE(replaced.size(), 3u);
        for (const WCHAR unit : WStringView(replaced).substr(1, replaced.size() - 2))
            EXPECT_EQ(unit, W('\xFFFD'));

        const auto [count, error] = WithLastError(
            [bad] { return MultiByteToWideChar(CP_UTF8, MB_ERR_INVALID_CHARS, bad.data(), Length(bad), nullptr, 0); });
        EXPECT_EQ(count, 0);
        EXPECT_EQ(error, DWORD{ERROR_NO_UNICODE_TRANSLATION});
    }

    const WCHAR loneHigh[] = {0xD800};
    const WCHAR loneLow[] = {0xDC00, 'x'};
    const WCHAR swapped[] = {0xDC00, 0xD800};
    for (const WStringView bad : {WStringView(loneHigh, 1), WStringView(loneLow, 2), WStringView(swapped, 2)})
    {
        EXPECT_EQ(ToBytes(CP_UTF8, 0, bad).substr(0, 3), "\xEF\xBF\xBD");
        const auto convert = [bad]
        {
            return WideCharToMultiByte(CP_UTF8, WC_ERR_INVALID_CHARS, bad.data(), Length(bad), nullptr, 0, nullptr,
                                       nullptr);
        };
        const auto [count, error] = WithLastError(convert);
        EXPECT_EQ(count, 0);
        EXPECT_EQ(error, DWORD{ERROR_NO_UNICODE_TRANSLATION});
    }
}

TEST(CodePages, WhatIsMissingBecomesTheDefaultCharacterAndIsReported)
{
    char text[8] = {};
    BOOL used = FALSE;
    // A letter without a counterpart, and a surrogate pair: each of its halves counts.
    const WStringView wide = W("a\x0416\xD83D\xDE00");
    EXPECT_EQ(WideCharToMultiByte(kWestern, WC_NO_BEST_FIT_CHARS, wide.data(), 4, text, 8, "#", &used), 4);
    EXPECT_STREQ(text, "a###");
    EXPECT_TRUE(used);
    EXPECT_EQ(ToBytes(kWestern, WC_NO_BEST_FIT_CHARS, W("\x0100")), "?");
    EXPECT_EQ(WideCharToMultiByte(kWestern, WC_NO_BEST_FIT_CHARS, W("a\x00C4"), 2, text, 8, "#", &used), 2);
    EXPECT_FALSE(used);
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
}

TEST(CodePages, ArgumentsThatCannotBeMetAreErrors)
{
    constexpr DWORD kUnknownFlag = 0x40000000;
    constexpr UINT kUnknownPage = 64999;
    struct WideCase
    {
        const char* name;
        UINT page;
        DWORD flags;
        const char* text;
        int length;
        int size;
        DWORD error;
    };
    constexpr WideCase kToWide[] = {
        {"too small", CP_UTF8, 0, "abc", -1, 2, ERROR_INSUFFICIENT_BUFFER},
        {"no length", CP_UTF8, 0, "abc", 0, 2, ERROR_INVALID_PARAMETER},
        {"negative size", CP_UTF8, 0, "abc", 3, -1, ERROR_INVALID_PARAMETER},
        {"no text", CP_UTF8, 0, nullptr, -1, 2, ERROR_INVALID_PARAMETER},
        {"no such page", kUnknownPage, 0, "a", -1, 2, ERROR_INVALID_PARAMETER},
        {"no such flag", CP_UTF8, kUnknownFlag, "a", -1, 2, ERROR_INVALID_FLAGS},
    };
    for (const WideCase& test : kToWide)
    {
        SCOPED_TRACE(test.name);
        WCHAR wide[3] = {W('~'), W('~'), W('~')};
        const auto [count, error] = WithLastError(
            [&] { return MultiByteToWideChar(test.page, test.flags, test.text, test.length, wide, test.size); });
        EXPECT_EQ(count, 0);
        EXPECT_EQ(error, test.error);
        EXPECT_EQ(wide[2], W('~'));
    }

    struct ByteCase
    {
        const char* name;
        UINT page;
        DWORD flags;
        const WCHAR* text;
        int length;
        DWORD error;
    };
    constexpr ByteCase kToBytes[] = {
        {"too small", kWestern, 0, W("abc"), -1, ERROR_INSUFFICIENT_BUFFER},
        {"room for half a character", CP_UTF8, 0, W("a\x20AC"), 2, ERROR_INSUFFICIENT_BUFFER},
        {"no length", kWestern, 0, W("abc"), 0, ERROR_INVALID_PARAMETER},
        {"no such page", kUnknownPage, 0, W("a"), -1, ERROR_INVALID_PARAMETER},
        {"no such flag", CP_UTF8, kUnknownFlag, W("a"), -1, ERROR_INVALID_FLAGS},
    };
    for (const ByteCase& test : kToBytes)
    {
        SCOPED_TRACE(test.name);
        char text[4] = "~~~";
        const auto convert = [&]
        {
            return WideCharToMultiByte(test.page, test.flags, test.text, test.length, text, 3, nullptr, nullptr);
        };
        const auto [count, error] = WithLastError(convert);
        EXPECT_EQ(count, 0);
        EXPECT_EQ(error, test.error);
        EXPECT_EQ(text[3], 0);
    }
}

TEST(CodePages, AHalfOfAPairIsNoSuccess)
{
    if (IsWine())
        GTEST_SKIP() << "Wine writes the first half and calls it success";
    WCHAR wide[1] = {};
    EXPECT_EQ(MultiByteToWideChar(CP_UTF8, 0, "\xF0\x90\x80\x80", 4, wide, 1), 0);
}

TEST(CRuntime, WtoiTakesWhatLooksLikeANumber)
{
    struct Case
    {
        const WCHAR* text;
        int value;
    };
    constexpr Case kCases[] = {
        {W(""), 0},
        {W("600"), 600},
        {W("600dpi"), 600},
        {W("dpi"), 0},
        {W("-12"), -12},
        {W("+12"), 12},
        {W("--12"), 0},
        {W("+-12"), 0},
        {W("- 12"), 0},
        {W(" \t\n\v\f\r12"), 12},
        {W("12 34"), 12},
        {W("0x10"), 0},
        {W("007"), 7},
        {W("2147483647"), INT_MAX},
        {W("2147483648"), INT_MAX},
        {W("4294967297"), INT_MAX},
        {W("99999999999999999999999999"), INT_MAX},
        {W("-2147483648"), INT_MIN},
        {W("-2147483649"), INT_MIN},
        {W("-99999999999999999999999999"), INT_MIN},
    };
    for (const Case& test : kCases)
        EXPECT_EQ(_wtoi(test.text), test.value) << testing::PrintToString(WideString(test.text));
}

TEST(CRuntime, WcsicmpFoldsTheLettersFromAToZOnly)
{
    struct Case
    {
        const WCHAR* left;
        const WCHAR* right;
        int sign;
    };
    constexpr Case kCases[] = {
        {W("Excel.EXE"), W("excel.exe"), 0},
        {W("A4"), W("a5"), -1},
        {W("a4 "), W("A4"), 1},
        {W(""), W("a"), -1},
        {W("_"), W("a"), -1}, // compared as lower case: the underscore stands between the cases
        {W("_"), W("A"), -1},
        {W("\x00C4"), W("\x00E4"), -1}, // the "C" locale's rule
    };
    for (const Case& test : kCases)
    {
        SCOPED_TRACE(testing::PrintToString(WideString(test.left)));
        const auto sign = [](int value)
        {
            return value < 0 ? -1 : value > 0 ? 1 : 0;
        };
        EXPECT_EQ(sign(_wcsicmp(test.left, test.right)), test.sign);
        EXPECT_EQ(sign(_wcsicmp(test.right, test.left)), -test.sign);
    }
}
