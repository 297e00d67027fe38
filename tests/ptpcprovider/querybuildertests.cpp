// Queries as they are written, and what a builder refuses.
#include <gtest/gtest.h>

#include <functional>
#include <string>

#include "complugins/ptpcprovider/domhelpers.h"
#include "complugins/ptpcprovider/printticketquerybuilder.h"
#include "tests/common/failurecode.h"
#include "tests/common/testdocuments.h"

namespace
{

using Start = PrintTicketQueryBuilder::Start;

struct Case
{
    const char* name;
    Start start;
    std::function<void(PrintTicketQueryBuilder&)> compose;
    const char* query;
};

const Case kCases[] = {
    {"nothing, absolute", Start::Document, [](auto&) {}, ""},
    {"nothing, relative", Start::ContextNode, [](auto&) {}, "."},
    {"feature", Start::Document, [](auto& b) { b.AddFeature(W("psk:"), W("PageMediaSize")); },
     R"(//psf:Feature[@name = "psk:PageMediaSize"])"},
    {"empty name prefix", Start::Document, [](auto& b) { b.AddFeature(W(""), W("PageMediaSize")); },
     R"(//psf:Feature[@name = "PageMediaSize"])"},
    {"property", Start::Document, [](auto& b) { b.AddProperty(W("psk:"), W("P")); },
     R"(//psf:Property[@name = "psk:P"])"},
    {"scored property below a feature", Start::Document,
     [](auto& b)
     {
         b.AddFeature(W("psk:"), W("F"));
         b.AddScoredProperty(W("psk:"), W("S"));
     },
     R"(//psf:Feature[@name = "psk:F"]//psf:ScoredProperty[@name = "psk:S"])"},
    {"parameter definition", Start::Document, [](auto& b) { b.AddParameterDef(W("tk:"), W("D")); },
     R"(//psf:ParameterDef[@name = "tk:D"])"},
    {"value of an initialiser", Start::Document,
     [](auto& b)
     {
         b.AddParameterInit(W("tk:"), W("I"));
         b.AddValue();
     },
     R"(//psf:ParameterInit[@name = "tk:I"]/psf:Value)"},
    {"property value of a feature", Start::Document,
     [](auto& b)
     {
         b.AddFeature(W("psk:"), W("F"));
         b.AddChildPropertyValue(W("psk:"), W("DisplayName"));
     },
     R"(//psf:Feature[@name = "psk:F"]/psf:Property[@name = "psk:DisplayName"]/psf:Value)"},
    {"named option of a node", Start::ContextNode, [](auto& b) { b.AddChildOptionName(W("psk:"), W("OneSided")); },
     R"(./psf:Option[@name = "psk:OneSided"])"},
    {"chosen option", Start::Document,
     [](auto& b)
     {
         b.AddFeature(W("psk:"), W("Duplex"));
         b.AddOption(W("psk:"));
     },
     R"(//psf:Feature[@name = "psk:Duplex"]/psf:Option | //psf:Feature[@name = "psk:Duplex"]/psf:ScoredProperty[@name = "psk:OptionName"]/psf:Value)"},
    {"quotes stay as they are", Start::Document, [](auto& b) { b.AddFeature(W("psk:"), W("a\"b%s")); },
     R"(//psf:Feature[@name = "psk:a"b%s"])"},
};

TEST(QueryBuilder, WritesQueriesFragmentByFragment)
{
    for (const Case& test : kCases)
    {
        SCOPED_TRACE(test.name);
        PrintTicketQueryBuilder builder(W("psf:"), test.start);
        test.compose(builder);
        EXPECT_EQ(test.query, QueryOf(builder).ToUtf8());
    }
}

TEST(QueryBuilder, RefusesADocumentWithoutFrameworkPrefixAndANullOutput)
{
    PrintTicketQueryBuilder builder(W(""));
    std::string place;
    EXPECT_EQ(E_FAIL, CodeOf([&] { builder.AddFeature(W("psk:"), W("F")); }, &place));
    EXPECT_EQ("complugins\\ptpcprovider\\printticketquerybuilder PrintTicketQueryBuilder::AddFeature", place);
    EXPECT_EQ(E_FAIL, CodeOf([&] { builder.AddOption(W("psk:")); }));
    EXPECT_EQ(E_FAIL, CodeOf([&] { builder.AddValue(); }));
    EXPECT_EQ("", QueryOf(builder).ToUtf8()); // a failed operation leaves the query as it was
    EXPECT_EQ(E_POINTER, CodeOf([&] { builder.GetQuery(nullptr); }, &place));
    EXPECT_EQ("complugins\\ptpcprovider\\printticketquerybuilder PrintTicketQueryBuilder::GetQuery", place);
}

} // namespace
