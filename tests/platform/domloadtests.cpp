// Loading and saving documents.
#include <filesystem>
#include <fstream>
#include <iterator>

#include "tests/platform/domfixture.h"

TEST(DomLoad, TakesWellFormedTextAndNothingElse)
{
    const DomDocument document = NewDocument();
    for (const WCHAR* const text :
         {W("\uFEFF \n<a/>\n"), W("<?xml version='1.0' encoding='utf-8'?><a>\u00E9</a>"),
          W("<?xml version='1.0' encoding='utf-16'?><a>\u00E9</a>"),
          W("<?xml version='1.0'?><!--c--><?p d?><a/><!--e-->"), W("<a b='&lt;&amp;&quot;'>&gt;&apos;&#x1F600;</a>"),
          W("<p:a xmlns:p='u'><p:b xmlns:p='v'/></p:a>")})
        EXPECT_EQ(S_OK, LoadText(document, text)) << Narrow(text);
    for (const WCHAR* const text : {W(""), W("<a>"), W("<a/><b/>"), W("<a/>text"), W("<a b='1' b='2'/>"),
                                    W("<a>&unknown;</a>"), W("<a>\u0001</a>"), W("\n<?xml version='1.0'?><a/>")})
    {
        SCOPED_TRACE(Narrow(text));
        ASSERT_EQ(S_OK, LoadText(document, W("<old/>")));
        EXPECT_EQ(S_FALSE, LoadText(document, text));
        EXPECT_FALSE(RootOf(document)) << "the old one is gone";
        EXPECT_NE("", ReasonOf(document));
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
