// Loading and saving documents.
#include <filesystem>
#include <fstream>
#include <iterator>

#include <gtest/gtest.h>

#include "tests/platform/domfixture.h"

TEST(DomLoad, TakesWellFormedTextAndNothingElse)
{
    struct Case
    {
        const char* name;
        const WCHAR* text;
        bool isTaken;
    };
    const Case cases[] = {
        {"blanks around the root", W(" \n<a/>\n"), true},
        {"a byte-order mark", W("\uFEFF<a/>"), true},
        {"a declaration naming UTF-8", W("<?xml version='1.0' encoding='utf-8'?><a>\u00E9</a>"), true},
        {"a declaration naming UTF-16", W("<?xml version='1.0' encoding='utf-16'?><a>\u00E9</a>"), true},
        {"comments and instructions around the root", W("<?xml version='1.0'?><!--c--><?p d?><a/><!--e-->"), true},
        {"the entities of XML", W("<a b='&lt;&amp;&quot;'>&gt;&apos;&#x1F600;</a>"), true},
        {"a prefix bound deeper to another namespace", W("<p:a xmlns:p='u'><p:b xmlns:p='v'/></p:a>"), true},
        {"nothing", W(""), false},
        {"an open element", W("<a>"), false},
        {"crossed elements", W("<a><b></a></b>"), false},
        {"two roots", W("<a/><b/>"), false},
        {"text behind the root", W("<a/>text"), false},
        {"an attribute twice", W("<a b='1' b='2'/>"), false},
        {"an unknown entity", W("<a>&unknown;</a>"), false},
        {"a control character", W("<a>\u0001</a>"), false},
        {"a declaration behind a line", W("\n<?xml version='1.0'?><a/>"), false},
    };
    for (const Case& test : cases)
    {
        SCOPED_TRACE(test.name);
        const DomDocument document = Loaded(W("<old/>"));
        EXPECT_EQ(test.isTaken ? S_OK : S_FALSE, LoadText(document, test.text));
        ComPtr<IXMLDOMElement> root;
        EXPECT_EQ(test.isTaken ? S_OK : S_FALSE, document->get_documentElement(root.Put())); // the old one is gone
        ComPtr<IXMLDOMParseError> error;
        ASSERT_EQ(S_OK, document->get_parseError(error.Put()));
        LONG code = -1;
        error->get_errorCode(&code);
        EXPECT_EQ(test.isTaken, code == 0);
        EXPECT_EQ(test.isTaken, ReasonOf(document).empty());
    }
}

TEST(DomLoad, EveryTestDocumentSurvivesText)
{
    const std::vector<std::string> paths = TestDocuments();
    ASSERT_GT(paths.size(), 20u);
    for (const std::string& path : paths)
    {
        SCOPED_TRACE(path);
        const DomDocument document = NewDocument();
        ASSERT_EQ(S_OK, LoadFile(document, path)) << ReasonOf(document);
        const std::string meaning = Meaning(document.Get());
        EXPECT_GT(meaning.size(), 100u);
        EXPECT_EQ(meaning, MeaningOfText(XmlOf(document.Get())));
    }
}

TEST(DomLoad, ReadsUtf8AndUtf16Files)
{
    struct Case
    {
        const char* name;
        std::string_view bytes;
        bool isTaken;
    };
    using namespace std::string_view_literals;
    const Case cases[] = {
        {"UTF-8", "<a>\xC3\xA9</a>"sv, true},
        {"UTF-8 with a mark", "\xEF\xBB\xBF<a>\xC3\xA9</a>"sv, true},
        {"UTF-8 as declared", "<?xml version='1.0' encoding='UTF-8'?><a>\xC3\xA9</a>"sv, true},
        {"UTF-16LE", "\xFF\xFE<\0a\0>\0\xE9\0<\0/\0a\0>\0"sv, true},
        {"UTF-16BE", "\xFE\xFF\0<\0a\0>\0\xE9\0<\0/\0a\0>"sv, true},
        {"bytes that are no UTF-8", "<a>\xE9</a>"sv, false},
        {"an overlong form", "<a>\xC0\xAF</a>"sv, false},
        {"no bytes", ""sv, false},
    };
    for (const Case& test : cases)
    {
        SCOPED_TRACE(test.name);
        const DomDocument document = NewDocument();
        ASSERT_EQ(test.isTaken ? S_OK : S_FALSE, LoadBytes(document, test.bytes)) << ReasonOf(document);
        EXPECT_EQ(test.isTaken ? "\xC3\xA9" : "", TextOf(document.Get()));
    }
    EXPECT_EQ(S_FALSE, LoadFile(NewDocument(), "domloadtests.missing"));
}

TEST(DomSave, WritesWhatCanBeLoadedAgain)
{
    const std::string path = std::filesystem::absolute("domloadtests.xml").generic_string();
    const Variant name(WideString(path.begin(), path.end()));
    for (const WCHAR* const text :
         {W("<a b='\u00E9'>\u4E2D</a>"), W("<?xml version='1.0' encoding='UTF-8'?><a>\u4E2D</a>")})
    {
        const DomDocument document = Loaded(text);
        ASSERT_EQ(S_OK, document->save(name.Get()));
        std::ifstream file(path, std::ios::binary);
        const std::string bytes{std::istreambuf_iterator<char>(file), {}};
        EXPECT_NE(std::string::npos, bytes.find("\xE4\xB8\xAD")) << "UTF-8 by default";
        const DomDocument again = NewDocument();
        ASSERT_EQ(S_OK, LoadFile(again, path));
        EXPECT_EQ(Meaning(document.Get()), Meaning(again.Get()));
    }
    std::filesystem::remove(path);
    EXPECT_TRUE(FAILED(Loaded(W("<a/>"))->save(Variant(W("no such folder/domloadtests.xml")).Get())));
}
