#include <stdexcept>
#include <string>
#include <tuple>

#include <gtest/gtest.h>

#include <tvutil/cxstring.h>

TEST(CXString, FormatReplacesDirectivesInOrder)
{
    const CXString text =
        CXString::Format(W("%s: %i, %u%% of %s%s"),
                         {W("A4"), -2147483647 - 1, 4294967295u, W("\u00e9"), static_cast<const WCHAR*>(nullptr)});
    EXPECT_EQ(text.ToUtf8(), "A4: -2147483648, 4294967295% of \xC3\xA9");
    EXPECT_EQ(CXString::Format(W("%u"), {~0ull}).ToUtf8(), "18446744073709551615");
}

TEST(CXString, FormatRefusesWhatDoesNotMatch)
{
    const auto refuses = [](WStringView format, std::initializer_list<CXString::Argument> arguments)
    {
        EXPECT_THROW(CXString::Format(format, arguments), std::invalid_argument) << CXString(format).ToUtf8();
    };
    refuses(W("%i%i too few"), {1});
    refuses(W("%i too many"), {1, 1});
    refuses(W("%i is no text"), {W("x")});
    refuses(W("%s is no number"), {1});
    refuses(W("%u is not signed"), {1});
    refuses(W("%d is unknown"), {1});
    refuses(W("100%"), {});
}

TEST(CXString, ReplaceAllGoesLeftToRightOverTheOriginalText)
{
    const auto replaced = [](CXString text, WStringView from, WStringView to)
    {
        text.ReplaceAll(from, to);
        return text.ToUtf8();
    };
    EXPECT_EQ(replaced(W("ns1:a ns1:b"), W("ns1:"), W("tk:")), "tk:a tk:b") << "shorter";
    EXPECT_EQ(replaced(W("aa"), W("a"), W("aa")), "aaaa") << "longer, not searched again";
    EXPECT_EQ(replaced(W("aaa"), W("aa"), W("b")), "ba") << "overlapping";
    EXPECT_EQ(replaced(W("abc"), W(""), W("x")), "abc") << "nothing to search for";
    EXPECT_EQ(replaced(W("abc"), W("abc"), W("")), "") << "all of it";
    CXString self(W("abab"));
    self.ReplaceAll(self.View().substr(0, 1), self.View()); // parts of the string that changes
    EXPECT_EQ(self.ToUtf8(), "ababbababb");
}

TEST(CXString, ConvertsFromUtf8AndReplacesEachMaximalPartThatIsInvalid)
{
    const std::tuple<const char*, std::string, WideString> cases[] = {
        {"one to four bytes", "a\xC3\xA9\xE2\x82\xAC\xF0\x9F\x96\xA8", W("a\u00e9\u20ac\U0001F5A8")},
        {"zero character", std::string("a\0b", 3), WideString(W("a\0b"), 3)},
        {"lone continuation", "\x80z", W("\uFFFDz")},
        {"overlong", "\xC0\x80", W("\uFFFD\uFFFD")},
        {"overlong of three", "\xE0\x80\x80", W("\uFFFD\uFFFD\uFFFD")},
        {"surrogate", "\xED\xA0\x80", W("\uFFFD\uFFFD\uFFFD")},
        {"beyond Unicode", "\xF4\x90\x80\x80", W("\uFFFD\uFFFD\uFFFD\uFFFD")},
        {"truncated, then text", "\xF0\x9F\x96z", W("\uFFFDz")},
        {"truncated at the end", "\xE2\x82", W("\uFFFD")},
    };
    for (const auto& [what, utf8, wide] : cases)
    {
        SCOPED_TRACE(what);
        EXPECT_TRUE(CXString::FromUtf8(utf8) == WStringView(wide));
    }
    EXPECT_EQ(CXString(W("a\u00e9\u20ac\U0001F5A8")).ToUtf8(), "a\xC3\xA9\xE2\x82\xAC\xF0\x9F\x96\xA8");
}

TEST(CXString, ConvertsLoneSurrogatesToReplacementCharacters)
{
    constexpr WCHAR kHigh = static_cast<WCHAR>(0xD83D);
    constexpr WCHAR kLow = static_cast<WCHAR>(0xDDA8);
    const std::string replacement = "\xEF\xBF\xBD";
    EXPECT_EQ(CXString(WideString{kLow, kHigh}).ToUtf8(), replacement + replacement);
    EXPECT_EQ(CXString(WideString{kHigh, W('x')}).ToUtf8(), replacement + "x");
    EXPECT_EQ(CXString(WideString{kHigh, kHigh, kLow}).ToUtf8(), replacement + "\xF0\x9F\x96\xA8");
}

TEST(CXString, ComparesIgnoringCaseOfLatinLetters)
{
    EXPECT_EQ(CXString(W("Sp\u00c4tzle \u0141\u0179")).CompareNoCase(W("sP\u00e4TZLE \u0142\u017a")), 0);
    EXPECT_EQ(CXString(W("\u0178\u0130")).ToLower(), W("\u00ffi"));
    EXPECT_LT(CXString(W("ab")).CompareNoCase(W("ABC")), 0);
    EXPECT_LT(CXString(W("_")).CompareNoCase(W("A")), 0); // by lower case: '_' is 0x5F, 'A' 0x41, 'a' 0x61
    EXPECT_NE(CXString(W("\u00d7")).CompareNoCase(W("\u00f7")), 0);
}

TEST(CXString, CutsAndFindsWithinTheText)
{
    const CXString text(W("psk:PageMediaSize"));
    EXPECT_EQ(text.Mid(4, 4), W("Page"));
    EXPECT_TRUE(text.Mid(100, 1).IsEmpty());
    EXPECT_EQ(text.Find(W("e"), 1000), CXString::npos);
    EXPECT_TRUE(text.StartsWith(W("psk:")) && !CXString(W("ps")).StartsWith(W("psk:")));
    EXPECT_TRUE(CXString(static_cast<const WCHAR*>(nullptr)).IsEmpty());
}
