// What foreign text may not do: each bound at its edge and beyond it.
#include <gtest/gtest.h>

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
    {
        const std::string number = std::to_string(at);
        text += W(" a") + WideString(number.begin(), number.end()) + W("='>='"); // signs in values do not count
    }
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
        const char* name;
        WideString text;
        const char* reason; // a part of it; empty when the text is within the bounds
        LONG line = 1;
    };
    const WideString signs = Repeated(W("<a b='' "), 2'000);
    const Case cases[] = {
        {"256 levels", Nested(256), ""},
        {"257 levels, the last one empty", Nested(257), "256 levels"},
        {"1,000 attributes", WithAttributes(1'000), ""},
        {"1,001 attributes", WithAttributes(1'001), "1000 attributes"},
        {"600 elements of 1,000 attributes", W("<r>") + Repeated(WithAttributes(1'000), 600) + W("</r>"),
         "attributes in all"},
        {"the same signs in comments, sections and instructions",
         W("<a><!--") + signs + W("--><![CDATA[") + signs + W("]]><?p ") + signs + W("?></a>"), ""},
        {"16 MB", OfMegabytes(16, W('x')), ""},
        {"more than 16 MB", OfMegabytes(16, W('x'), 1), "16 MB"},
        {"more than 16 MB of UTF-8", OfMegabytes(6, W('\u4E2D')), "16 MB"},
        {"a document type behind a comment", W("<?xml version='1.0'?><!--c-->\n\n<!DOCTYPE a><a/>"), "DOCTYPE", 3},
        {"a document type's text in a comment", W("<a><!--<!DOCTYPE a>--><![CDATA[<!DOCTYPE a>]]></a>"), ""},
        {"an undeclared element prefix", W("<p:a/>"), "'p' is not declared"},
        {"an attribute's prefix declared beside", W("<a><b xmlns:p='u'/><c p:d=''/></a>"), "'p' is not declared"},
        {"a prefix unbound", W("<p:a xmlns:p=''/>"), "declaration of the prefix 'p'"},
        {"one attribute under two prefixes", W("<a xmlns:p='u' xmlns:q='u' p:b='' q:b=''/>"), "given twice"},
        {"two colons", W("<a:b:c xmlns:a='u'/>"), "qualified name"},
        {"an end tag of another element", W("<a>\n<b></c></a>"), "end tag 'c' does not match the start tag 'b'", 2},
        {"a high surrogate alone", WideString(W("<a>")) + char16_t{0xD800} + W("</a>"), "surrogate"},
        {"a low surrogate alone", WideString(W("<a>")) + char16_t{0xDC00} + W("</a>"), "surrogate"},
        {"what looks like UTF-16 to a parser", WideString(W("<\0?\0a\0/\0>\0"), 10), "zero character"},
        // A fault before a bound: the parser must not go on to what the scan could not see.
        {"attributes behind a fault", W("<a b=\"<c") + Repeated(W(" x=\"\""), 50'000) + W("/>"), "attribute"},
    };
    for (const Case& test : cases)
    {
        SCOPED_TRACE(test.name);
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
    for (const WCHAR* const name : {W("a b"), W("1a"), W(":a"), W("a:"), W("a:b:c"), W("<")})
    {
        DomNode node;
        EXPECT_EQ(E_FAIL,
                  document->createNode(Variant(LONG{NODE_ELEMENT}).Get(), CComBSTR(name).Get(), nullptr, node.Put()))
            << Narrow(name);
    }
    EXPECT_EQ("{}a(@{}b=x)[y]", Meaning(document.Get()));

    ComPtr<IXMLDOMCDATASection> section; // is divided where its end stands in it
    ASSERT_EQ(S_OK, document->createCDATASection(CComBSTR(W("]]>]]>")).Get(), section.Put()));
    ASSERT_EQ(S_OK, Append(root.Get(), section.Get()));
    EXPECT_EQ("{}a(@{}b=x)[y]]>]]>]", MeaningOfText(document.Get()));
}
