// Names that could break out of a query or of the markup, asked for by callers and met in documents.
#include <utility>

#include "tests/common/failurecode.h"
#include "tests/ptpcprovider/wrappeddocument.h"

namespace
{

struct NameCase
{
    const char* name;
    std::string text;
    bool makesAQuery; // names are put between double quotes as they stand
};

const NameCase kNames[] = {
    {"an apostrophe", "it's", true},
    {"angle brackets", "<a></a>", true},
    {"an ampersand", "a&b&amp;c", true},
    {"what ends sections, comments and instructions", "]]>-->?>", true},
    {"signs of queries and of formats", "a|b](c)/..//*[@x='%s%n']", true},
    {"characters outside the basic plane", "\xF0\x9F\x96\xA8\xF0\x9F\x96\xA8", true},
    {"blanks", " a  b ", true},
    {"10,000 characters", std::string(10'000, 'x'), true},
    {"a lone quote", "a\"b", false},
    {"nothing but a quote", "\"", false},
};

// Found or not found; a quote makes a query that the DOM refuses, which is thrown. Never a document that cannot be
// read.
TEST(HostileNames, AreFoundOrRefusedAndNeverBreakTheDocument)
{
    for (const NameCase& test : kNames)
    {
        SCOPED_TRACE(test.name);
        const CXString name = CXString::FromUtf8(test.text);
        const WrappedTicket made(TicketAround(""));
        HRESULT found = E_UNEXPECTED;
        const auto find = [&](const WrappedTicket& ticket)
        {
            ComPtr<IXMLDOMNode> node;
            return CodeOf([&] { found = ticket->GetFeatureNodeIfExists(W("psk:"), name, node.Put()); });
        };
        EXPECT_EQ(test.makesAQuery, find(made) == S_OK && found == S_FALSE);

        ComPtr<IXMLDOMElement> feature;
        ComPtr<IXMLDOMElement> option;
        made->CreateFeatureOptionPair(1, name, true, name, feature.Put(), option.Put());
        made->AppendChildToRootNode(feature.Get());
        made->AppendIntegerParameterInit(W("psk:"), name, 1);
        const WrappedTicket ticket(TextOf(made.Dom()));
        EXPECT_EQ(Texts(3, "psk:" + test.text), ticket.TextsOf("//@name"));
        EXPECT_EQ(test.makesAQuery, find(ticket) == S_OK && found == S_OK);
        CComBSTR local;
        CComBSTR prefix;
        const auto use = [&]
        {
            ticket->GetFeatureOption(name, local.Put(), prefix.Put());
            ticket->DeleteFeatureAndOrphanParameterInitsIfExists(W("psk:"), name);
        };
        EXPECT_EQ(test.makesAQuery, !FAILED(CodeOf(use)));
        EXPECT_EQ(test.makesAQuery ? test.text : "", Utf8(local.View()));
        EXPECT_EQ(test.makesAQuery, ticket.TextsOf("//@name").empty()); // the initialiser is an orphan
        EXPECT_TRUE(Reparse(ticket.Dom()));
    }
}

// Whatever names and values a document holds, it can be wrapped, read, cleared of orphans: they never become queries.
TEST(HostileNames, InDocumentsNeverReachAQuery)
{
    const WrappedTicket ticket(TicketAround(
        "<psf:Feature name='psk:F'><psf:Option name='psk:a\"b'><psf:ScoredProperty name='psk:S'><psf:ParameterRef "
        "name='psk:p\"q'/></psf:ScoredProperty></psf:Option></psf:Feature>"
        "<psf:Feature name='psk:G'><psf:ScoredProperty name='psk:OptionName'><psf:Value>psk:c\"d</psf:Value>"
        "</psf:ScoredProperty></psf:Feature><psf:Feature name='ns1:\"]'/><psf:Feature name='psk:H'/>"
        "<psf:ParameterInit name='psk:\"r'/><psf:ParameterInit name='psk:p\"q'><psf:Value>7</psf:Value>"
        "</psf:ParameterInit>",
        " xmlns:ns1=\"" + Utf8(PrintSchema::kPrivateKeywordsUri) + "\""));
    CComBSTR local;
    CComBSTR prefix;
    CComBSTR value;
    for (const auto& [feature, option] : {std::pair{W("F"), "a\"b"}, std::pair{W("G"), "c\"d"}})
    {
        EXPECT_EQ(S_OK, ticket->GetFeatureOption(feature, local.Put(), prefix.Put()));
        EXPECT_EQ(option, Utf8(local.View()));
    }
    EXPECT_EQ(S_OK, ticket->GetScoredPropertyValue(W("F"), W("S"), value.Put()));
    EXPECT_EQ("7", Utf8(value.View()));
    EXPECT_EQ(S_OK, ticket->DeleteFeatureAndOrphanParameterInitsIfExists(W("psk:"), W("H")));
    EXPECT_EQ((Texts{"psk:F", "psk:G", "tk:\"]"}), ticket.TextsOf("//psf:Feature/@name"));
    EXPECT_EQ((Texts{"psk:p\"q"}), ticket.TextsOf("//psf:ParameterInit/@name"));
}

} // namespace
