// Reading choices from a ticket and writing the driver's: options, scored properties, initialisers and their orphans.
#include <tuple>

#include "tests/common/failurecode.h"
#include "tests/ptpcprovider/wrappeddocument.h"

namespace
{

constexpr HRESULT kNotFound = PrintTicketXmlDocument::kNotFound;

std::string Feature(const std::string& content)
{
    return "<psf:Feature name=\"psk:F\">" + content + "</psf:Feature>";
}

std::string Init(const std::string& name)
{
    return "<psf:ParameterInit name='" + name + "'><psf:Value>1</psf:Value></psf:ParameterInit>";
}

std::string OptionName(const std::string& value)
{
    return "<psf:ScoredProperty name=\"psk:OptionName\"><psf:Value>" + value + "</psf:Value></psf:ScoredProperty>";
}

const std::tuple<const char*, std::string, HRESULT, const char*, const char*> kOptionCases[] = {
    {"an option", Feature("<psf:Option name=\"psk:ISOA4\"/>"), S_OK, "ISOA4", "psk:"},
    {"an option of another namespace", Feature("<psf:Option name='ns7:A:\"B'/>"), S_OK, "A:\"B", "ns7:"},
    {"an option by property", Feature(OptionName("psk:OneSided")), S_OK, "OneSided", "psk:"},
    {"the first in document order", Feature(OptionName("psk:First") + "<psf:Option name=\"psk:Second\"/>"), S_OK,
     "First", "psk:"},
    {"a name without a prefix", Feature("<psf:Option name=\"ISOA4\"/>"), E_FAIL, "", ""},
    {"an option without a name", Feature("<psf:Option/>"), E_FAIL, "", ""},
    {"no option", Feature(""), kNotFound, "", ""},
    {"no feature", "<psf:Feature name=\"psk:G\"><psf:Option name=\"psk:X\"/></psf:Feature>", kNotFound, "", ""},
};

TEST(PrintTicket, TellsTheOptionOfAFeature)
{
    for (const auto& [name, content, expectedResult, expectedOption, expectedPrefix] : kOptionCases)
    {
        SCOPED_TRACE(name);
        const WrappedTicket ticket(TicketAround(content));
        CComBSTR option;
        CComBSTR prefix;
        HRESULT result = E_UNEXPECTED;
        const HRESULT thrown = CodeOf([&] { result = ticket->GetFeatureOption(W("F"), option.Put(), prefix.Put()); });
        EXPECT_EQ(expectedResult, FAILED(thrown) ? thrown : result);
        // Absence is returned, so that callers can tell it from a failure, which is thrown.
        EXPECT_EQ(expectedResult == E_FAIL, FAILED(thrown));
        EXPECT_EQ(expectedOption, Utf8(option.View()));
        EXPECT_EQ(expectedPrefix, Utf8(prefix.View()));
    }
}

// Content of the scored property psk:P, and what it is as a text and as a number.
constexpr std::tuple<const char*, const char*, const char*, ULONG> kScoredCases[] = {
    {"a number", "<psf:Value>209900</psf:Value>", "209900", 209900},
    {"digits, then letters", "<psf:Value>12abc</psf:Value>", "12abc", 12},
    {"no digits", "<psf:Value>abc</psf:Value>", "abc", 0},
    {"more than fits", "<psf:Value>99999999999</psf:Value>", "99999999999", 2147483647},
    {"by reference", "<psf:ParameterRef name='psk:\"]Q'/>", "1", 1},
    {"empty", "", "", 0},
};

TEST(PrintTicket, ReadsScoredPropertiesAsTextAndNumber)
{
    for (const auto& [name, content, expectedText, expectedNumber] : kScoredCases)
    {
        SCOPED_TRACE(name);
        const WrappedTicket ticket(TicketAround(Feature("<psf:Option><psf:ScoredProperty name=\"psk:P\">" +
                                                        std::string(content) + "</psf:ScoredProperty></psf:Option>") +
                                                Init("psk:\"]Q")));
        CComBSTR text;
        EXPECT_EQ(S_OK, ticket->GetScoredPropertyValue(W("F"), W("P"), text.Put()));
        EXPECT_EQ(expectedText, Utf8(text.View()));
        ULONG number = 77;
        EXPECT_EQ(S_OK, ticket->GetScoredPropertyValue(W("F"), W("P"), &number));
        EXPECT_EQ(expectedNumber, number);

        EXPECT_EQ(kNotFound, ticket->GetScoredPropertyValue(W("F"), W("R"), text.Put()));
        EXPECT_EQ(kNotFound, ticket->GetScoredPropertyValue(W("F"), W("R"), &number));
        EXPECT_EQ(expectedNumber, number);
    }
}

// What the features F and G refer to, the initialisers, and those that are left without F.
const std::tuple<const char*, Texts, Texts, std::string, Texts> kOrphanCases[] = {
    {"the only reference goes", {"psk:\"A"}, {"psk:\"]B"}, Init("psk:\"A") + Init("psk:\"]B"), {"psk:\"]B"}},
    {"another feature refers to it", {"psk:A", "psk:B"}, {"psk:A"}, Init("psk:A") + Init("psk:B"), {"psk:A"}},
    {"orphans of nobody go too", {}, {"psk:B"}, Init("psk:A") + Init("psk:B") + Init("psk:C"), {"psk:B"}},
    {"without any reference all go", {"psk:A"}, {}, Init("psk:A") + Init("psk:B") + "<psf:ParameterInit/>", {}},
    {"the comparison is exact", {}, {"psk:a"}, Init("psk:A"), {}},
    {"one without name needs a reference without name",
     {},
     {"psk:B"},
     "<psf:ParameterInit/>" + Init("psk:B"),
     {"psk:B"}},
    {"two missing names are equal", {}, {""}, "<psf:ParameterInit/>" + Init("psk:B"), {""}},
};

std::string References(const Texts& names)
{
    std::string text;
    for (const std::string& name : names)
        text += "<psf:ScoredProperty><psf:ParameterRef" + (name.empty() ? "" : " name='" + name + "'") +
                "/></psf:ScoredProperty>";
    return text;
}

TEST(PrintTicket, DeletesOrphanedInitialisersWithTheFeature)
{
    for (const auto& [title, ofTheDeleted, ofTheOther, initialisers, kept] : kOrphanCases)
    {
        SCOPED_TRACE(title);
        const std::string other =
            "<psf:Feature name=\"psk:G\"><psf:Option>" + References(ofTheOther) + "</psf:Option></psf:Feature>";
        const WrappedTicket ticket(
            TicketAround(Feature("<psf:Option>" + References(ofTheDeleted) + "</psf:Option>") + other + initialisers));
        EXPECT_EQ(S_OK, ticket->DeleteFeatureAndOrphanParameterInitsIfExists(W("psk:"), W("F")));
        std::string left;
        for (const std::string& name : kept)
            left += name.empty() ? "<psf:ParameterInit/>" : Init(name);
        ticket.ExpectIs(TicketAround(other + left));
    }
    const WrappedTicket ticket(TicketAround(Init("psk:A")));
    EXPECT_EQ(S_FALSE, ticket->DeleteFeatureAndOrphanParameterInitsIfExists(W("psk:"), W("F")));
    ticket.ExpectIs(TicketAround(Init("psk:A")));
}

} // namespace
