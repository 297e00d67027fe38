// Names that could break out of a query or of the markup. Those that documents hold never reach a query: they stand in
// the tables of the other tests.
#include <tuple>

#include "tests/common/failurecode.h"
#include "tests/ptpcprovider/wrappeddocument.h"

namespace
{

// A name makes a query where it can stand between double quotes as it is.
const std::tuple<const char*, std::string, bool> kNames[] = {
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
    for (const auto& [title, text, makesAQuery] : kNames)
    {
        SCOPED_TRACE(title);
        const CXString name = CXString::FromUtf8(text);
        const WrappedTicket made(TicketAround(""));
        HRESULT found = E_UNEXPECTED;
        const auto find = [&](const WrappedTicket& ticket)
        {
            ComPtr<IXMLDOMNode> node;
            return CodeOf([&] { found = ticket->GetFeatureNodeIfExists(W("psk:"), name, node.Put()); });
        };
        EXPECT_EQ(makesAQuery, find(made) == S_OK && found == S_FALSE);

        ComPtr<IXMLDOMElement> feature;
        ComPtr<IXMLDOMElement> option;
        made->CreateFeatureOptionPair(1, name, true, name, feature.Put(), option.Put());
        made->AppendChildToRootNode(feature.Get());
        made->AppendIntegerParameterInit(W("psk:"), name, 1);
        const WrappedTicket ticket(TextOf(made.Dom()));
        EXPECT_EQ(Texts(3, "psk:" + text), Select(ticket.Dom(), "//@name"));
        EXPECT_EQ(makesAQuery, find(ticket) == S_OK && found == S_OK);
        CComBSTR local;
        CComBSTR prefix;
        const auto use = [&]
        {
            ticket->GetFeatureOption(name, local.Put(), prefix.Put());
            ticket->DeleteFeatureAndOrphanParameterInitsIfExists(W("psk:"), name);
        };
        EXPECT_EQ(makesAQuery, !FAILED(CodeOf(use)));
        EXPECT_EQ(makesAQuery ? text : "", Utf8(local.View()));
        EXPECT_EQ(makesAQuery, Select(ticket.Dom(), "//@name").empty()); // the initialiser is an orphan
        EXPECT_TRUE(Reparse(ticket.Dom()));
    }
}

} // namespace
