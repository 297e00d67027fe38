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

constexpr std::size_t kMegabyte = 1024 * 1024;

WideString OfSize(std::size_t bytes)
{
    return W("<a>") + WideString(bytes - 7, W('x')) + W("</a>");
}

} // namespace

TEST(DomLimits, RefuseWithAReasonThatNamesTheBound)
{
    struct Case
    {
        const char* name;
        WideString text;
        const char* reason; // a part of it; empty when the text is within the bounds
    };
    const Case cases[] = {
        {"256 levels", Nested(256), ""},
        {"257 levels, the last one empty", Nested(257), "256 levels"},
        {"100,000 levels", Repeated(W("<a>"), 100'000), "256 levels"},
        {"1,000 attributes", WithAttributes(1'000), ""},
        {"1,001 attributes", WithAttributes(1'001), "1000 attributes"},
        {"100,000 attributes", WithAttributes(100'000), "1000 attributes"},
        {"600 elements of 1,000 attributes", W("<r>") + Repeated(WithAttributes(1'000), 600) + W("</r>"),
         "attributes in all"},
        {"the same signs in comments, sections and instructions",
         W("<a><!--") + Repeated(W("<a b='' "), 2'000) + W("--><![CDATA[") + Repeated(W("<a b='' "), 2'000) +
             W("]]><?p ") + Repeated(W("<a b='' "), 2'000) + W("?></a>"),
         ""},
        {"16 MB", OfSize(16 * kMegabyte), ""},
        {"more than 16 MB", OfSize(16 * kMegabyte + 1), "16 MB"},
        {"more than 16 MB of UTF-8", W("<a>") + WideString(6 * kMegabyte, W('\u4E2D')) + W("</a>"), "16 MB"},
        {"entities that grow", W("<!DOCTYPE a [<!ENTITY x 'xx'><!ENTITY y '&x;&x;'>]><a>&y;</a>"), "DOCTYPE"},
        {"a document type behind a comment", W("<?xml version='1.0'?><!--c--><!DOCTYPE a><a/>"), "DOCTYPE"},
        {"a document type's text in a comment", W("<a><!--<!DOCTYPE a>--><![CDATA[<!DOCTYPE a>]]></a>"), ""},
        {"an undeclared element prefix", W("<p:a/>"), "'p' is not declared"},
        {"an attribute's prefix declared beside", W("<a><b xmlns:p='u'/><c p:d=''/></a>"), "'p' is not declared"},
        {"a prefix unbound", W("<p:a xmlns:p=''/>"), "declaration of the prefix 'p'"},
        {"one attribute under two prefixes", W("<a xmlns:p='u' xmlns:q='u' p:b='' q:b=''/>"), "given twice"},
        {"two colons", W("<a:b:c xmlns:a='u'/>"), "qualified name"},
        {"an end tag of another element", W("<a>\n<b></c></a>"), "end tag 'c' does not match the start tag 'b'"},
        {"a high surrogate alone", WideString(W("<a>")) + char16_t{0xD800} + W("</a>"), "surrogate"},
        {"a low surrogate alone", WideString(W("<a>")) + char16_t{0xDC00} + W("</a>"), "surrogate"},
        {"a zero character", WideString(W("<a>")) + char16_t{0} + W("</a>"), "zero character"},
        {"what looks like UTF-16 to a parser", WideString(W("<\0?\0a\0/\0>\0"), 10), "zero character"},
        // A fault before a bound: the parser must not go on to what the scan could not see.
        {"attributes behind a fault", W("<a b=\"<c") + Repeated(W(" x=\"\""), 50'000) + W("/>"), "attribute"},
        {"attributes behind a bad comment", W("<a><!--\u0001<c") + Repeated(W(" x=''"), 50'000) + W("/>--></a>"),
         "omment"},
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
    }
}

TEST(DomLimits, ErrorsTellTheirPlace)
{
    const DomDocument document = NewDocument();
    ASSERT_EQ(S_FALSE, LoadText(document, W("<a>\n <b/>\n  <!DOCTYPE c>\n</a>")));
    ComPtr<IXMLDOMParseError> error;
    ASSERT_EQ(S_OK, document->get_parseError(error.Put()));
    LONG line = 0, column = 0, code = 0;
    EXPECT_EQ(S_OK, error->get_errorCode(&code));
    EXPECT_EQ(S_OK, error->get_line(&line));
    EXPECT_EQ(S_OK, error->get_linepos(&column));
    EXPECT_TRUE(FAILED(code) && line == 3 && column == 3) << code << " " << line << " " << column;
}

TEST(DomLimits, WhatCannotBeWrittenIsNotTaken)
{
    const DomDocument document = Loaded(W("<a b='x'>y</a>"));
    const DomElement root = RootOf(document);
    const DomNode attribute = Select(root.Get(), W("@b"));
    for (const WideString& bad : {WideString(W("\u0001")), WideString(1, char16_t{0xD800}), WideString(1, char16_t{0}),
                                  WideString(W("\uFFFF"))})
    {
        EXPECT_EQ(E_INVALIDARG, PutText(root.Get(), bad));
        EXPECT_EQ(E_INVALIDARG, PutText(attribute.Get(), bad));
    }
    const std::pair<DOMNodeType, const WCHAR*> contents[] = {
        {NODE_COMMENT, W("a--b")}, {NODE_COMMENT, W("a-")}, {NODE_PROCESSING_INSTRUCTION, W("a?>b")}};
    for (const auto& [kind, content] : contents)
        EXPECT_EQ(E_INVALIDARG, PutText(Created(document, kind, W("p")).Get(), content)) << Narrow(content);
    const DomNode comment = Created(document, NODE_COMMENT, W(""));
    EXPECT_EQ(S_OK, PutText(comment.Get(), W("a-b")));
    EXPECT_EQ("a-b", TextOf(comment.Get()));
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
