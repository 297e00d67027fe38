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
constexpr DWORD kStrict = MB_ERR_INVALID_CHARS;

// By the two-call idiom.
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
    EXPECT_EQ(ToWide(CP_UTF8, kStrict, "A4\xC3\x84\xDF\xBF"), W("A4\x00C4\x07FF"));
    EXPECT_EQ(ToWide(CP_UTF8, kStrict, "\xE0\xA0\x80\xEF\xBF\xBF"), W("\x0800\xFFFF"));
    EXPECT_EQ(ToWide(CP_UTF8, kStrict, "\xF0\x90\x80\x80\xF4\x8F\xBF\xBF"), W("\xD800\xDC00\xDBFF\xDFFF"));
    EXPECT_EQ(ToWide(CP_UTF8, kStrict, {"a\0b", 3}), WStringView(W("a\0b"), 3));
    EXPECT_EQ(ToWide(CP_ACP, 0, "A4\xA0\xC4\xFF"), W("A4\x00A0\x00C4\x00FF"));
    EXPECT_EQ(ToWide(kWestern, 0, "\x80\x85\x99\x9F"), W("\x20AC\x2026\x2122\x0178")); // unlike Latin-1
    EXPECT_EQ(ToWide(kWestern, 0, "\x81\x9D"), W("\x0081\x009D"));                     // no characters
}

TEST(CodePages, IllFormedTextIsReplacedOrRefused)
{
    // A continuation alone, overlong ones, a surrogate, one above U+10FFFF, one cut short.
    for (const std::string_view bad :
         {"\x80", "\xC0\x80", "\xE0\x9F\xBF", "\xED\xA0\x80", "\xF4\x90\x80\x80", "\xE2\x82"})
    {
        SCOPED_TRACE(testing::PrintToString(bad));
        // How many replacements a bad sequence gives differs between versions of the platform: at least one.
        const WideString replaced = ToWide(CP_UTF8, 0, "<" + std::string(bad) + ">");
        ASSERT_GE(replaced.size(), 3u);
        EXPECT_EQ(replaced, W("<") + WideString(replaced.size() - 2, W('\xFFFD')) + W(">"));
        EXPECT_EQ(WithLastError([&] { return MultiByteToWideChar(CP_UTF8, kStrict, bad.data(), -1, nullptr, 0); }),
                  std::pair(0, DWORD{ERROR_NO_UNICODE_TRANSLATION}));
    }
}

TEST(CodePages, SizesAreCheckedAndCountTheTerminatorOnlyWhenItWasAskedFor)
{
    WCHAR wide[4] = {};
    const auto intoThree = [&wide](const char* text, int length, UINT page = CP_UTF8, DWORD flags = 0)
    {
        wide[2] = wide[3] = W('~');
        const auto answer = WithLastError([&] { return MultiByteToWideChar(page, flags, text, length, wide, 3); });
        EXPECT_EQ(wide[3], W('~')) << "beyond the room";
        return answer;
    };
    EXPECT_EQ(intoThree("abc", 2), std::pair(2, DWORD{ERROR_SUCCESS}));
    EXPECT_EQ(wide[2], W('~'));
    EXPECT_EQ(intoThree("ab", -1), std::pair(3, DWORD{ERROR_SUCCESS}));
    EXPECT_EQ(WStringView(wide), W("ab"));
    EXPECT_EQ(intoThree("abc", -1), std::pair(0, DWORD{ERROR_INSUFFICIENT_BUFFER}));
    EXPECT_EQ(intoThree(nullptr, -1), std::pair(0, DWORD{ERROR_INVALID_PARAMETER}));
    EXPECT_EQ(intoThree("a", -1, 64999), std::pair(0, DWORD{ERROR_INVALID_PARAMETER}));
    EXPECT_EQ(intoThree("a", -1, CP_UTF8, 0x40000000), std::pair(0, DWORD{ERROR_INVALID_FLAGS}));
    if (!IsWine()) // which writes the first half of a pair and calls it success
    {
        EXPECT_EQ(intoThree("ab\xF0\x90\x80\x80", 6), std::pair(0, DWORD{ERROR_INSUFFICIENT_BUFFER}));
    }
}

TEST(CRuntime, TakesNumbers)
{
    EXPECT_EQ(_wtoi(W(" \t\n\v\f\r+12 34")), 12);
    EXPECT_EQ(_wtoi(W("4294967297")), INT_MAX);
    EXPECT_EQ(_wtoi(W("-2147483648")), INT_MIN);
    EXPECT_EQ(_wtoi(W("-99999999999999999999999999")), INT_MIN);
}
