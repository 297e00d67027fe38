// The comparer that the other tests trust.
#include <gtest/gtest.h>

#include "tests/common/documentcomparer.h"
#include "tests/common/testdocuments.h"

namespace
{

struct Case
{
    const char* name;
    const char* left;
    const char* right;
    bool areEqual;
};

constexpr Case kCases[] = {
    {"the same", "<r><a n='1'>x</a></r>", "<r><a n='1'>x</a></r>", true},
    {"prefixes", "<r xmlns:p='urn:1'><p:a/></r>", "<r xmlns:q='urn:1'><q:a/></r>", true},
    {"the order of attributes", "<r a='1' b='2'/>", "<r b='2' a='1'/>", true},
    {"a comment", "<r><!-- c --><a/></r>", "<r><a/></r>", true},
    {"another name", "<r><a/></r>", "<r><b/></r>", false},
    {"another namespace", "<r xmlns:p='urn:1'><p:a/></r>", "<r xmlns:p='urn:2'><p:a/></r>", false},
    {"another text", "<r><a>x</a></r>", "<r><a>y</a></r>", false},
    {"another value", "<r a='1'/>", "<r a='2'/>", false},
    {"one attribute more", "<r a='1'/>", "<r a='1' b='2'/>", false},
    {"an attribute of another namespace", "<r xmlns:p='urn:1' p:a='1'/>", "<r a='1'/>", false},
    {"one child more", "<r><a/></r>", "<r><a/><a/></r>", false},
    {"another order", "<r><a/><b/></r>", "<r><b/><a/></r>", false},
    {"a difference far below", "<r><a><b><c n='1'/></b></a></r>", "<r><a><b><c n='2'/></b></a></r>", false},
};

TEST(DocumentComparer, SeesEveryDifferenceThatCounts)
{
    for (const Case& test : kCases)
    {
        SCOPED_TRACE(test.name);
        const ComPtr<IXMLDOMDocument2> left = LoadDocument(std::string(test.left));
        const ComPtr<IXMLDOMDocument2> right = LoadDocument(std::string(test.right));
        EXPECT_EQ(test.areEqual, CompareDocuments(left.Get(), right.Get()).empty());
        EXPECT_EQ(test.areEqual, CompareDocuments(right.Get(), left.Get()).empty());
    }
}

} // namespace
