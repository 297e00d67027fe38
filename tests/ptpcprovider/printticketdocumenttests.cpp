// Reading choices from a ticket and writing the driver's: options, scored properties, initialisers and their orphans.
#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "complugins/ptpcprovider/domhelpers.h"
#include "complugins/ptpcprovider/printticketxmldocument.h"
#include "tests/common/documentcomparer.h"
#include "tests/common/failurecode.h"
#include "tests/common/testdocuments.h"

namespace
{

using Names = std::vector<std::string>;

constexpr HRESULT kNotFound = PrintTicketXmlDocument::kNotFound;

std::string Init(const std::string& name)
{
    return "<psf:ParameterInit name=\"" + name + "\"><psf:Value>1</psf:Value></psf:ParameterInit>";
}

std::string FeatureWithRefs(const std::string& name, const Names& references)
{
    std::string text = "<psf:Feature name=\"" + name + "\"><psf:Option>";
    for (const std::string& reference : references)
        text +=
            "<psf:ScoredProperty name=\"psk:S\"><psf:ParameterRef name=\"" + reference + "\"/></psf:ScoredProperty>";
    return text + "</psf:Option></psf:Feature>";
}

struct OptionCase
{
    const char* name;
    const char* content;
    HRESULT result;
    const char* option;
    const char* prefix;
};

constexpr OptionCase kOptionCases[] = {
    {"an option", "<psf:Feature name=\"psk:F\"><psf:Option name=\"psk:ISOA4\"/></psf:Feature>", S_OK, "ISOA4", "psk:"},
    {"an option of another namespace", "<psf:Feature name=\"psk:F\"><psf:Option name=\"ns7:A:B\"/></psf:Feature>", S_OK,
     "A:B", "ns7:"},
    {"an option by property",
     "<psf:Feature name=\"psk:F\"><psf:ScoredProperty name=\"psk:OptionName\"><psf:Value>psk:OneSided</psf:Value>"
     "</psf:ScoredProperty></psf:Feature>",
     S_OK, "OneSided", "psk:"},
    {"the first in document order",
     "<psf:Feature name=\"psk:F\"><psf:ScoredProperty name=\"psk:OptionName\"><psf:Value>psk:First</psf:Value>"
     "</psf:ScoredProperty><psf:Option name=\"psk:Second\"/></psf:Feature>",
     S_OK, "First", "psk:"},
    {"a name without a prefix", "<psf:Feature name=\"psk:F\"><psf:Option name=\"ISOA4\"/></psf:Feature>", E_FAIL, "",
     ""},
    {"an option without a name", "<psf:Feature name=\"psk:F\"><psf:Option/></psf:Feature>", E_FAIL, "", ""},
    {"no option", "<psf:Feature name=\"psk:F\"/>", kNotFound, "", ""},
    {"no feature", "<psf:Feature name=\"psk:G\"><psf:Option name=\"psk:X\"/></psf:Feature>", kNotFound, "", ""},
};

TEST(PrintTicket, TellsTheOptionOfAFeature)
{
    for (const OptionCase& test : kOptionCases)
    {
        SCOPED_TRACE(test.name);
        const ComPtr<IXMLDOMDocument2> document = LoadDocument(TicketAround(test.content));
        const PrintTicketXmlDocument ticket(document.Get());
        CComBSTR option;
        CComBSTR prefix;
        HRESULT result = E_UNEXPECTED;
        const HRESULT thrown = CodeOf([&] { result = ticket.GetFeatureOption(W("F"), option.Put(), prefix.Put()); });
        EXPECT_EQ(test.result, FAILED(thrown) ? thrown : result);
        // Absence is returned, so that callers can tell it from a failure, which is thrown.
        EXPECT_EQ(test.result == E_FAIL, FAILED(thrown));
        EXPECT_EQ(test.option, Utf8(option.View()));
        EXPECT_EQ(test.prefix, Utf8(prefix.View()));
    }
}

struct ScoredCase
{
    const char* name;
    const char* content; // of the option
    HRESULT result;
    const char* text;
    ULONG number;
};

constexpr ScoredCase kScoredCases[] = {
    {"a number", "<psf:ScoredProperty name=\"psk:P\"><psf:Value>209900</psf:Value></psf:ScoredProperty>", S_OK,
     "209900", 209900},
    {"digits, then letters", "<psf:ScoredProperty name=\"psk:P\"><psf:Value>12abc</psf:Value></psf:ScoredProperty>",
     S_OK, "12abc", 12},
    {"no digits", "<psf:ScoredProperty name=\"psk:P\"><psf:Value>abc</psf:Value></psf:ScoredProperty>", S_OK, "abc", 0},
    {"more than fits", "<psf:ScoredProperty name=\"psk:P\"><psf:Value>99999999999</psf:Value></psf:ScoredProperty>",
     S_OK, "99999999999", 2147483647},
    {"by reference", "<psf:ScoredProperty name=\"psk:P\"><psf:ParameterRef name=\"psk:Q\"/></psf:ScoredProperty>", S_OK,
     "1", 1},
    {"empty", "<psf:ScoredProperty name=\"psk:P\"/>", S_OK, "", 0},
    {"another property", "<psf:ScoredProperty name=\"psk:R\"/>", kNotFound, "", 77},
};

TEST(PrintTicket, ReadsScoredPropertiesAsTextAndNumber)
{
    for (const ScoredCase& test : kScoredCases)
    {
        SCOPED_TRACE(test.name);
        const ComPtr<IXMLDOMDocument2> document =
            LoadDocument(TicketAround("<psf:Feature name=\"psk:F\"><psf:Option>" + std::string(test.content) +
                                      "</psf:Option></psf:Feature>" + Init("psk:Q")));
        const PrintTicketXmlDocument ticket(document.Get());
        CComBSTR text;
        EXPECT_EQ(test.result, ticket.GetScoredPropertyValue(W("F"), W("P"), text.Put()));
        EXPECT_EQ(test.text, Utf8(text.View()));
        ULONG number = 77;
        EXPECT_EQ(test.result, ticket.GetScoredPropertyValue(W("F"), W("P"), &number));
        EXPECT_EQ(test.number, number);
    }
}

TEST(PrintTicket, MakesPairsAndInitialisersInTheirShapes)
{
    const ComPtr<IXMLDOMDocument2> document = LoadDocument(TicketAround(""));
    const PrintTicketXmlDocument ticket(document.Get());
    ComPtr<IXMLDOMElement> feature;
    ComPtr<IXMLDOMElement> option;
    ComPtr<IXMLDOMElement> init;
    for (const bool isPublic : {true, false})
    {
        ticket.CreateFeatureOptionPair(PrintSchema::PrivateKeywords, W("F"), isPublic, W("O"), feature.Put(),
                                       option.Put());
        ticket.AppendChildToRootNode(feature.Get());
    }
    ticket.CreateFeatureOptionPair(0, W("Bare"), feature.Put(), option.Put());
    ticket.AppendChildToRootNode(feature.Get());
    ticket.CreateStringParameterInit(W("tk:"), W("S"), W("a<b"), init.Put());
    ticket.AppendChildToRootNode(init.Get());
    ticket.AppendIntegerParameterInit(W("psk:"), W("I"), 4294967295u);

    const std::string expected = TicketAround(
        "<psf:Feature name=\"psk:F\"><psf:Option name=\"psk:O\"/></psf:Feature>"
        "<psf:Feature name=\"psk:F\"><psf:Option name=\"ns0000:O\"/></psf:Feature>"
        "<psf:Feature name=\"psk:Bare\"><psf:Option/></psf:Feature>"
        "<psf:ParameterInit name=\"tk:S\"><psf:Value xsi:type=\"xsd:string\">a&lt;b</psf:Value></psf:ParameterInit>"
        "<psf:ParameterInit name=\"psk:I\"><psf:Value xsi:type=\"xsd:integer\">4294967295</psf:Value>"
        "</psf:ParameterInit>");
    EXPECT_EQ("", CompareDocuments(LoadDocument(expected).Get(), Reparse(document.Get()).Get()));
}

// A document that declares neither XML Schema namespace gets its types without a prefix, and must still read back.
TEST(PrintTicket, WithoutSchemaNamespacesReadsBack)
{
    const ComPtr<IXMLDOMDocument2> document = LoadTestDocument("tickets/no-xsi-no-xsd.xml");
    ASSERT_TRUE(document);
    const PrintTicketXmlDocument ticket(document.Get());
    ticket.AppendIntegerParameterInit(W("psk:"), W("JobCopiesAllDocuments"), 3);
    const ComPtr<IXMLDOMDocument2> again = Reparse(document.Get());
    ASSERT_TRUE(again);
    EXPECT_EQ((Names{"3"}), Select(again.Get(), "//psf:ParameterInit/psf:Value"));
    EXPECT_EQ((Names{"integer"}), Select(again.Get(), "//psf:Value/@*[local-name() = 'type']"));
}

struct OrphanCase
{
    const char* name;
    std::string content;
    const char* deleted; // feature, in the keywords namespace
    HRESULT result;
    Names initialisers; // what is left, in document order
};

const OrphanCase kOrphanCases[] = {
    {"the only reference goes",
     FeatureWithRefs("psk:F", {"psk:A"}) + FeatureWithRefs("psk:G", {"psk:B"}) + Init("psk:A") + Init("psk:B"),
     "F",
     S_OK,
     {"psk:B"}},
    {"another feature still refers to it",
     FeatureWithRefs("psk:F", {"psk:A", "psk:B"}) + FeatureWithRefs("psk:G", {"psk:A"}) + Init("psk:A") + Init("psk:B"),
     "F",
     S_OK,
     {"psk:A"}},
    {"orphans of nobody go too",
     FeatureWithRefs("psk:F", {}) + FeatureWithRefs("psk:G", {"psk:B"}) + Init("psk:A") + Init("psk:B") + Init("psk:C"),
     "F",
     S_OK,
     {"psk:B"}},
    {"the last reference takes every initialiser along",
     FeatureWithRefs("psk:F", {"psk:A"}) + Init("psk:A") + Init("psk:B") + "<psf:ParameterInit/>",
     "F",
     S_OK,
     {}},
    {"the comparison is exact",
     FeatureWithRefs("psk:F", {}) + FeatureWithRefs("psk:G", {"psk:a"}) + Init("psk:A"),
     "F",
     S_OK,
     {}},
    {"an initialiser without name needs a reference without name",
     FeatureWithRefs("psk:F", {}) + FeatureWithRefs("psk:G", {"psk:B"}) +
         "<psf:ParameterInit><psf:Value/></psf:ParameterInit>" + Init("psk:B"),
     "F",
     S_OK,
     {"psk:B"}},
    {"nothing is deleted without the feature",
     FeatureWithRefs("psk:G", {"psk:B"}) + Init("psk:A"),
     "F",
     S_FALSE,
     {"psk:A"}},
};

TEST(PrintTicket, DeletesOrphanedInitialisersWithTheFeature)
{
    for (const OrphanCase& test : kOrphanCases)
    {
        SCOPED_TRACE(test.name);
        const ComPtr<IXMLDOMDocument2> document = LoadDocument(TicketAround(test.content));
        const PrintTicketXmlDocument ticket(document.Get());
        EXPECT_EQ(test.result,
                  ticket.DeleteFeatureAndOrphanParameterInitsIfExists(W("psk:"), CXString::FromUtf8(test.deleted)));
        EXPECT_EQ(test.initialisers, Select(document.Get(), "//psf:ParameterInit/@name"));
        EXPECT_EQ(test.initialisers.size(), Select(document.Get(), "//psf:ParameterInit").size()); // nameless ones too
        EXPECT_TRUE(Select(document.Get(), "//psf:Feature[@name='psk:F']").empty());
    }
}

TEST(PrintTicket, KeepsANamelessInitialiserForANamelessReference)
{
    const ComPtr<IXMLDOMDocument2> document = LoadDocument(TicketAround(
        FeatureWithRefs("psk:F", {}) +
        "<psf:Feature name=\"psk:G\"><psf:ParameterRef/></psf:Feature><psf:ParameterInit/>" + Init("psk:A")));
    const PrintTicketXmlDocument ticket(document.Get());
    ticket.DeleteFeatureAndOrphanParameterInitsIfExists(W("psk:"), W("F"));
    EXPECT_EQ(1u, Select(document.Get(), "//psf:ParameterInit").size()); // two missing names are equal
}

TEST(PrintTicket, RefusesNullsAndEmptyNames)
{
    const ComPtr<IXMLDOMDocument2> document = LoadDocument(TicketAround(""));
    const PrintTicketXmlDocument t(document.Get());
    const std::string before = TextOf(document.Get());
    ComPtr<IXMLDOMElement> out;
    ComPtr<IXMLDOMElement> other;
    ComPtr<IXMLDOMNode> node;
    CComBSTR text;
    ULONG* const noNumber = nullptr;
    BSTR* const noText = nullptr;
    ExpectCode(E_POINTER,
               {
                   [&] { t.GetFeatureOption(W("F"), nullptr, text.Put()); },
                   [&] { t.GetScoredPropertyValue(W("F"), W("P"), noText); },
                   [&] { t.GetScoredPropertyValue(W("F"), W("P"), noNumber); },
                   [&] { t.CreateFeatureOptionPair(1, W("F"), out.Put(), nullptr); },
                   [&] { t.CreateStringParameterInit(W("tk:"), W("P"), W("v"), nullptr); },
                   [&] { t.GetParameterInitNodeIfExists(W("psk:"), W("P"), nullptr); },
                   [&] { t.DeleteParamInitOrphans(nullptr, nullptr); },
                   [&] { t.DeleteNodeList(nullptr); },
               });
    ExpectCode(E_INVALIDARG,
               {
                   [&] { t.GetFeatureOption(W(""), text.Put(), CComBSTR().Put()); },
                   [&] { t.GetScoredPropertyValue(W("F"), W(""), text.Put()); },
                   [&] { t.CreateFeatureOptionPair(1, W(""), out.Put(), other.Put()); },
                   [&] { t.CreateFeatureOptionPair(1, W("F"), true, W(""), out.Put(), other.Put()); },
                   [&] { t.CreateStringParameterInit(W(""), W("P"), W("v"), out.Put()); },
                   [&] { t.CreateStringParameterInit(W("tk:"), W("P"), W(""), out.Put()); },
                   [&] { t.AppendIntegerParameterInit(W("psk:"), W(""), 1); },
                   [&] { t.GetParameterInitValueNodeIfExists(W("psk:"), W(""), node.Put()); },
                   [&] { t.DeleteFeatureAndOrphanParameterInitsIfExists(W("psk:"), W("")); },
               });
    EXPECT_EQ(before, TextOf(document.Get()));
}

} // namespace
