// Documents on their way in: encodings, and bytes that must not reach a DOM.
#include "documenttext.h"

#include <gtest/gtest.h>

#include "failure.h"

#include <tvutil/cxstring.h>

namespace
{

std::string Utf16(WStringView text, bool bigEndian)
{
    std::string bytes = bigEndian ? "\xFE\xFF" : "\xFF\xFE";
    for (const WCHAR character : text)
    {
        const char low = static_cast<char>(character & 0xFF);
        const char high = static_cast<char>(character >> 8);
        bytes += bigEndian ? high : low;
        bytes += bigEndian ? low : high;
    }
    return bytes;
}

TEST(DocumentText, IsTheSameInEveryEncodingAndADeclaredOneIsBlanked)
{
    const WideString text = W("<a>\x00E4\xD83D\xDDA8</a>\n");
    const std::string utf8 = CXString(WStringView(text)).ToUtf8();
    const std::pair<std::string, WideString> rows[] = {
        {utf8, text},
        {"\xEF\xBB\xBF" + utf8, text},
        {Utf16(text, false), text},
        {Utf16(text, true), text},
        {"<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<a/>", W("<?xml version=\"1.0\"                 ?>\n<a/>")},
        {Utf16(W("<?xml version=\"1.0\" encoding=\"UTF-16\"?><a/>"), false),
         W("<?xml version=\"1.0\"                  ?><a/>")},
        {"<?xml version=\"1.0\"?><a encoding=\"x\"/>", W("<?xml version=\"1.0\"?><a encoding=\"x\"/>")},
        // Malformed ones are for the DOM to refuse.
        {"<?xml version='1.0' encoding x='UTF-8'?><a/>", W("<?xml version='1.0' encoding x='UTF-8'?><a/>")},
        {"<?xml version='1.0' encoding='utf8'?><a>\xC3\xA4</a>",
         W("<?xml version='1.0'                ?><a>\x00E4</a>")},
        {"<?xml version='1.0' encoding='iso-8859-1'?><a>\xE4\x80</a>",
         W("<?xml version='1.0'                      ?><a>\x00E4\x0080</a>")},
        {Utf16(W("<?xml version=\"1.0\" encoding=\"utf-16BE\"?><a/>"), true),
         W("<?xml version=\"1.0\"                    ?><a/>")},
    };
    for (const auto& [bytes, expected] : rows)
        EXPECT_EQ(CXString(WStringView(DecodeDocument(bytes, "f"))).ToUtf8(), CXString(WStringView(expected)).ToUtf8());
}

TEST(DocumentText, WhatMustNotReachADomIsRefused)
{
    const std::pair<std::string, const char*> rows[] = {
        {"", "the document is empty"},
        {"<a>\xC3</a>", "neither UTF-8, nor UTF-16 with a byte-order mark"},
        {std::string("<a>\n\0</a>", 9), "line 2: holds a zero character"},
        {"\xFF\xFE<", "UTF-16 with half a character at its end"},
        {Utf16(WStringView(W("<a>\n\xD83D</a>")), false), "line 2: holds half a surrogate pair"},
        {Utf16(WStringView(W("<a>\xDDA8\xD83D</a>")), true), "line 1: holds half a surrogate pair"},
        {"\xEF\xBB\xBF<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?><a/>",
         "declares the encoding \"ISO-8859-1\" but is UTF-8"},
        {Utf16(W("<?xml version=\"1.0\" encoding=\"utf-16le\"?><a/>"), true),
         "declares the encoding \"utf-16le\" but is UTF-16"},
        {"<?xml version=\"1.0\" encoding=\"windows-1252\"?><a/>",
         "encoding \"windows-1252\" is not supported; UTF-8 or UTF-16 is"},
        {"<?xml version='1.0' encoding='us-ascii'?><a>\xC3\xA4</a>", "declares US-ASCII but holds other characters"},
        {Utf16(W("<a/>"), true).substr(2), "UTF-16 without its byte-order mark"},
        {"<?xml version=\"1.0\" encoding=\"UTF-16\"?><a/>",
         "declares the encoding \"UTF-16\" but has no byte-order mark"},
        {"<!DOCTYPE a><a/>", "line 1: A document type declaration (DOCTYPE) is not allowed."},
        {"<?xml version=\"1.0\"?>\n<!-- <a> -->\n<?pi ?>\r\n <!DOCTYPE a [<!ENTITY b \"c\">]><a>&b;</a>",
         "line 4: A document type declaration (DOCTYPE) is not allowed."},
    };
    for (const auto& [bytes, error] : rows)
    {
        SCOPED_TRACE(error);
        try
        {
            (void)DecodeDocument(bytes, "f.xml");
            ADD_FAILURE() << "accepted";
        }
        catch (const Failure& failure)
        {
            EXPECT_EQ(std::string(failure.what()), std::string("reading the document: f.xml: ") + error);
        }
    }
    EXPECT_NO_THROW((void)DecodeDocument("<!-- <!DOCTYPE a> --><a/>", "f"));
}

} // namespace
