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
        EXPECT_EQ(test.isTaken, bool(RootOf(document))) << "the old one is gone";
        EXPECT_EQ(test.isTaken, ReasonOf(document).empty());
    }
}

TEST(DomSave, WritesWhatCanBeLoadedAgain)
{
    const std::filesystem::path path = std::filesystem::absolute("domloadtests.xml");
    const Variant name(path.generic_string<WCHAR>());
    for (const WCHAR* const text :
         {W("<a b='\u00E9'>\u4E2D</a>"), W("<?xml version='1.0' encoding='UTF-8'?><a>\u4E2D</a>")})
    {
        ASSERT_EQ(S_OK, Loaded(text)->save(name.Get()));
        std::ifstream file(path, std::ios::binary);
        const std::string bytes{std::istreambuf_iterator<char>(file), {}};
        EXPECT_NE(std::string::npos, bytes.find(">\xE4\xB8\xAD</a>")) << "UTF-8 by default";
    }
    std::filesystem::remove(path);
    EXPECT_TRUE(FAILED(Loaded(W("<a/>"))->save(Variant(W("no such folder/domloadtests.xml")).Get())));
}
