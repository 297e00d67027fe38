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
        const WCHAR* text;
        bool isTaken;
    };
    const Case cases[] = {
        {W("\uFEFF \n<a/>\n"), true},
        {W("<?xml version='1.0' encoding='utf-8'?><a>\u00E9</a>"), true},
        {W("<?xml version='1.0' encoding='utf-16'?><a>\u00E9</a>"), true},
        {W("<?xml version='1.0'?><!--c--><?p d?><a/><!--e-->"), true},
        {W("<a b='&lt;&amp;&quot;'>&gt;&apos;&#x1F600;</a>"), true},
        {W("<p:a xmlns:p='u'><p:b xmlns:p='v'/></p:a>"), true},
        {W(""), false},
        {W("<a>"), false},
        {W("<a/><b/>"), false},
        {W("<a/>text"), false},
        {W("<a b='1' b='2'/>"), false},
        {W("<a>&unknown;</a>"), false},
        {W("<a>\u0001</a>"), false},
        {W("\n<?xml version='1.0'?><a/>"), false},
    };
    for (const Case& test : cases)
    {
        SCOPED_TRACE(Narrow(test.text));
        const DomDocument document = Loaded(W("<old/>"));
        EXPECT_EQ(test.isTaken ? S_OK : S_FALSE, LoadText(document, test.text));
        EXPECT_EQ(test.isTaken, bool(RootOf(document))) << "the old one is gone";
        EXPECT_EQ(test.isTaken, ReasonOf(document).empty());
    }
}

TEST(DomSave, WritesWhatCanBeLoadedAgain)
{
    const std::filesystem::path path = std::filesystem::absolute("domloadtests.xml");
    ASSERT_EQ(S_OK, Loaded(W("<a b='\u00E9'>\u4E2D</a>"))->save(Variant(path.generic_string<WCHAR>()).Get()));
    std::ifstream file(path, std::ios::binary);
    const std::string bytes{std::istreambuf_iterator<char>(file), {}};
    EXPECT_NE(std::string::npos, bytes.find(">\xE4\xB8\xAD</a>")) << "UTF-8 by default";
    file.close();
    std::filesystem::remove(path);
    EXPECT_TRUE(FAILED(Loaded(W("<a/>"))->save(Variant(W("no such folder/domloadtests.xml")).Get())));
}
