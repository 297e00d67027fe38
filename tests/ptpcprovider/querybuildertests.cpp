// Queries as they are written, and what a builder refuses.
#include <gtest/gtest.h>

#include "complugins/ptpcprovider/domhelpers.h"
#include "tests/common/failurecode.h"

namespace
{

using Builder = PrintTicketQueryBuilder;

struct FragmentCase
{
    void (Builder::*add)(const CXString& prefix, const CXString& local);
    const char* fragment;
};

constexpr FragmentCase kFragments[] = {
    {&Builder::AddFeature, R"(//psf:Feature[@name = "psk:N"])"},
    {&Builder::AddProperty, R"(//psf:Property[@name = "psk:N"])"},
    {&Builder::AddScoredProperty, R"(//psf:ScoredProperty[@name = "psk:N"])"},
    {&Builder::AddParameterDef, R"(//psf:ParameterDef[@name = "psk:N"])"},
    {&Builder::AddParameterInit, R"(//psf:ParameterInit[@name = "psk:N"])"},
    {&Builder::AddChildPropertyValue, R"(/psf:Property[@name = "psk:N"]/psf:Value)"},
    {&Builder::AddChildOptionName, R"(/psf:Option[@name = "psk:N"])"},
};

TEST(QueryBuilder, WritesQueriesFragmentByFragment)
{
    for (const FragmentCase& test : kFragments)
    {
        Builder absolute(W("psf:"));
        Builder relative(W("psf:"), Builder::Start::ContextNode);
        for (Builder* const builder : {&absolute, &relative})
            (builder->*test.add)(W("psk:"), W("N"));
        EXPECT_EQ(test.fragment, QueryOf(absolute).ToUtf8());
        EXPECT_EQ(std::string(".") + test.fragment, QueryOf(relative).ToUtf8());
        relative.AddValue();
        EXPECT_EQ(std::string(".") + test.fragment + "/psf:Value", QueryOf(relative).ToUtf8());
    }

    Builder option(W("psf:"));
    option.AddFeature(W(""), W("a\"b%s")); // no prefix; quotes stay as they are
    option.AddOption(W("psk:"));
    EXPECT_EQ(R"(//psf:Feature[@name = "a"b%s"]/psf:Option | //psf:Feature[@name = "a"b%s"])"
              R"(/psf:ScoredProperty[@name = "psk:OptionName"]/psf:Value)",
              QueryOf(option).ToUtf8());
}

TEST(QueryBuilder, RefusesADocumentWithoutFrameworkPrefixAndANullOutput)
{
    Builder builder(W(""));
    std::string place;
    EXPECT_EQ(E_FAIL, CodeOf([&] { builder.AddFeature(W("psk:"), W("F")); }, &place));
    EXPECT_EQ("complugins\\ptpcprovider\\printticketquerybuilder PrintTicketQueryBuilder::AddFeature", place);
    EXPECT_EQ(E_FAIL, CodeOf([&] { builder.AddOption(W("psk:")); }));
    EXPECT_EQ(E_FAIL, CodeOf([&] { builder.AddValue(); }));
    EXPECT_EQ("", QueryOf(builder).ToUtf8()); // a failed operation leaves the query as it was
    EXPECT_EQ(E_POINTER, CodeOf([&] { builder.GetQuery(nullptr); }));
}

} // namespace
