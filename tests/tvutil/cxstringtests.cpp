#include <stdexcept>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <tvutil/cxstring.h>

namespace
{

TEST(CXString, FormatReplacesDirectivesInOrder)
{
    const CXString name(W("A4"));
    const CXString text = CXString::Format(W("%s: %i, %u%% of %s%s"), {name, -2147483647 - 1, 4294967295u, W("\u00e9"),
                                                                       static_cast<const WCHAR*>(nullptr)});
    EXPECT_EQ(text.ToUtf8(), "A4: -2147483648, 4294967295% of \xC3\xA9");
    EXPECT_EQ(CXString::Format(W("%u"), {~0ull}).ToUtf8(), "18446744073709551615");
    EXPECT_EQ(CXString::FromInteger(-1).ToUtf8() + CXString::FromUnsigned(~0u).ToUtf8(), "-14294967295");
}

TEST(CXString, FormatRefusesWhatDoesNotMatch)
{
    struct Case
    {
        const char* fault;
        WStringView format;
        std::vector<CXString::Argument> arguments;
    };
    const CXString::Argument one(1);
    const CXString::Argument text(W("x"));
    const Case cases[] = {
        {"too few arguments", W("%i%i"), {one}}, {"too many arguments", W("%i"), {one, one}},
        {"text for a number", W("%i"), {text}},  {"a number for text", W("%s"), {one}},
        {"signed for unsigned", W("%u"), {one}}, {"unknown directive", W("%d"), {one}},
        {"ends in a directive", W("100%"), {}},
    };
    for (const Case& test : cases)
    {
        SCOPED_TRACE(test.fault);
        const auto format = [&test]()
        {
            switch (test.arguments.size())
            {
            case 0:
                return CXString::Format(test.format, {});
            case 1:
                return CXString::Format(test.format, {test.arguments[0]});
            default:
                return CXString::Format(test.format, {test.arguments[0], test.arguments[1]});
            }
        };
        EXPECT_THROW(format(), std::invalid_argument);
    }
}

TEST(CXString, ReplaceAllGoesLeftToRightOverTheOriginalText)
{
    struct Case
    {
        const WCHAR* text;
        const WCHAR* from;
        const WCHAR* to;
        const char* result;
    };
    constexpr Case kCases[] = {
        {W("ns1:a ns1:b"), W("ns1:"), W("tk:"), "tk:a tk:b"}, // shorter
        {W("aa"), W("a"), W("aa"), "aaaa"},                   // longer, not searched again
        {W("aaa"), W("aa"), W("b"), "ba"},                    // overlapping
        {W("abc"), W(""), W("x"), "abc"},                     // nothing to search for
        {W("abc"), W("abc"), W(""), ""},                      // all of it
        {W(""), W("a"), W("b"), ""},                          //
    };
    for (const Case& test : kCases)
    {
        CXString text(test.text);
        text.ReplaceAll(test.from, test.to);
        EXPECT_EQ(text.ToUtf8(), test.result);
    }
    CXString self(W("abab"));
    self.ReplaceAll(self.View().substr(0, 1), self.View()); // parts of the string that changes
    EXPECT_EQ(self.ToUtf8(), "ababbababb");
}

TEST(CXString, ConvertsFromUtf8AndReplacesEachMaximalPartThatIsInvalid)
{
    struct Case
    {
        const char* what;
        std::string utf8;
        WideString wide;
    };
    const Case cases[] = {
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
    for (const Case& test : cases)
    {
        SCOPED_TRACE(test.what);
        EXPECT_TRUE(CXString::FromUtf8(test.utf8) == WStringView(test.wide));
    }
    EXPECT_EQ(CXString(W("a\u00e9\u20ac\U0001F5A8")).ToUtf8(), "a\xC3\xA9\xE2\x82\xAC\xF0\x9F\x96\xA8");
}

TEST(CXString, ConvertsLoneSurrogatesToReplacementCharacters)
{
    constexpr WCHAR kHigh = static_cast<WCHAR>(0xD83D);
    constexpr WCHAR kLow = static_cast<WCHAR>(0xDDA8);
    const std::string replacement = "\xEF\xBF\xBD";
    EXPECT_EQ(CXString(WideString{kHigh}).ToUtf8(), replacement);
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
    EXPECT_EQ(text.Mid(4), W("PageMediaSize"));
    EXPECT_EQ(text.Mid(4, 4), W("Page"));
    EXPECT_TRUE(text.Mid(100, 1).IsEmpty());
    EXPECT_EQ(text.Find(W("e"), 8), 9u);
    EXPECT_EQ(text.Find(W("e"), 1000), CXString::npos);
    EXPECT_TRUE(text.StartsWith(W("psk:")) && !CXString(W("ps")).StartsWith(W("psk:")));
    EXPECT_EQ(CXString(text.ToBstr()), text);
    EXPECT_TRUE(CXString(static_cast<const WCHAR*>(nullptr)).IsEmpty());
}

} // namespace
