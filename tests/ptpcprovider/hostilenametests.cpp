// Names that could break out of a query or of the markup. Those that documents hold never reach a query: they stand in
// the tables of the other tests.
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
};

// Found or not found; a quote makes a query that the DOM refuses, which is thrown. What is written can be read.
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
        EXPECT_EQ(Texts(3, "psk:" + test.text), Select(ticket.Dom(), "//@name"));
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
        EXPECT_EQ(test.makesAQuery, Select(ticket.Dom(), "//@name").empty()); // the initialiser is an orphan
        EXPECT_TRUE(Reparse(ticket.Dom()));
    }
}

} // namespace
