// What foreign text may not do: each bound at its edge and beyond it.
#include "tests/platform/domfixture.h"

namespace
{

WideString Repeated(WStringView piece, unsigned count)
{
    WideString text;
    for (; count > 0; --count)
        text += piece;
    return text;
}

WideString Nested(unsigned levels)
{
    return Repeated(W("<a>"), levels - 1) + W("<a/>") + Repeated(W("</a>"), levels - 1);
}

WideString WithAttributes(unsigned count)
{
    WideString text = W("<a");
    for (unsigned at = 0; at < count; ++at)
        text += WideString(W(" ")) + static_cast<WCHAR>(0x4E00 + at) + W("='>='"); // signs in values do not count
    return text + W("/>");
}

WideString OfMegabytes(std::size_t megabytes, WCHAR character, std::size_t more = 0)
{
    return W("<a>") + WideString(megabytes * 1024 * 1024 - 7 + more, character) + W("</a>");
}

} // namespace

TEST(DomLimits, RefuseWithAReasonThatNamesTheBoundAndTheLine)
{
    struct Case
    {
        WideString text;
        const char* reason; // a part of it; empty when the text is within the bounds
        LONG line = 1;
    };
    const WideString signs = Repeated(W("<a b='' "), 2'000);
    const Case cases[] = {
        {Nested(256), ""},
        {Nested(257), "256 levels"},
        {WithAttributes(1'000), ""},
        {WithAttributes(1'001), "1000 attributes"},
        {W("<r>") + Repeated(WithAttributes(1'000), 600) + W("</r>"), "attributes in all"},
        {W("<a><!--") + signs + W("--><![CDATA[") + signs + W("]]><?p ") + signs + W("?></a>"), ""},
        {OfMegabytes(16, W('x')), ""},
        {OfMegabytes(16, W('x'), 1), "16 MB"},
        {OfMegabytes(6, W('\u4E2D')), "16 MB"}, // of UTF-8
        {W("<?xml version='1.0'?><!--c-->\n\n<!DOCTYPE a><a/>"), "DOCTYPE", 3},
        {W("<a><!--<!DOCTYPE a>--><![CDATA[<!DOCTYPE a>]]></a>"), ""},
        {W("<p:a/>"), "'p' is not declared"},
        {W("<a><b xmlns:p='u'/><c p:d=''/></a>"), "'p' is not declared"},
        {W("<p:a xmlns:p=''/>"), "declaration of the prefix 'p'"},
        {W("<a xmlns:p='u' xmlns:q='u' p:b='' q:b=''/>"), "given twice"},
        {W("<a:b:c xmlns:a='u'/>"), "qualified name"},
        {W("<a>\n<b></c></a>"), "end tag 'c' does not match the start tag 'b'", 2},
        {WideString(W("<a>")) + char16_t{0xD800} + W("</a>"), "surrogate"},
        {WideString(W("<\0?\0a\0/\0>\0"), 10), "zero character"}, // looks like UTF-16 to a parser
        // A fault before a bound: the parser must not go on to what the scan could not see.
        {W("<a b=\"<c") + Repeated(W(" x=\"\""), 50'000) + W("/>"), "attribute"},
    };
    for (const Case& test : cases)
    {
        SCOPED_TRACE(&test - cases);
        const DomDocument document = NewDocument();
        const bool isTaken = *test.reason == '\0';
        EXPECT_EQ(isTaken ? S_OK : S_FALSE, LoadText(document, test.text));
        EXPECT_NE(std::string::npos, ReasonOf(document).find(test.reason)) << ReasonOf(document);
        EXPECT_EQ(isTaken, ReasonOf(document).empty());
        EXPECT_EQ(isTaken, bool(RootOf(document)));
        ComPtr<IXMLDOMParseError> error;
        LONG line = 0;
        ASSERT_EQ(S_OK, document->get_parseError(error.Put()));
        EXPECT_EQ(isTaken ? S_FALSE : S_OK, error->get_line(&line));
        EXPECT_EQ(isTaken ? 0 : test.line, line);
    }
}

TEST(DomLimits, WhatCannotBeWrittenIsNotTaken)
{
    const DomDocument document = Loaded(W("<a b='x'>y</a>"));
    const DomElement root = RootOf(document);
    for (const WideString& bad : {WideString(W("\u0001")), WideString(1, char16_t{0xD800}), WideString(1, char16_t{0}),
                                  WideString(W("\uFFFF"))})
    {
        EXPECT_EQ(E_INVALIDARG, PutText(root.Get(), bad));
        EXPECT_EQ(E_INVALIDARG, PutText(Select(root.Get(), W("@b")).Get(), bad));
    }
    EXPECT_EQ("{}a(@{}b=x)[y]", Meaning(document.Get()));
}
