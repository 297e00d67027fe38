// Wrapping a document: its root, its prefixes, the private prefix; and the strict small operations.
#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "complugins/ptpcprovider/domhelpers.h"
#include "complugins/ptpcprovider/printticketxmldocument.h"
#include "tests/common/documentcomparer.h"
#include "tests/common/failurecode.h"
#include "tests/common/testdocuments.h"

namespace
{

constexpr const char* kPrivateUri =
    "http://schemas.tavlen.example/enterprise/print/driver/native/printSchemaPrivateKeywords/2006/11";
constexpr const char* kUsual =
    "xmlns:psf=\"http://schemas.microsoft.com/windows/2003/08/printing/printschemaframework\" "
    "xmlns:psk=\"http://schemas.microsoft.com/windows/2003/08/printing/printschemakeywords\"";

std::string Declare(const std::string& name, const std::string& uri)
{
    return " " + name + "=\"" + uri + "\" ";
}

HRESULT WrapCode(IXMLDOMDocument2* document)
{
    return CodeOf([&] { const PrintTicketXmlDocument ticket(document); });
}

struct PrefixCase
{
    const char* name;
    std::string text;
    const char* framework;
    const char* keywords;
    const char* privateKeywords;
};

const PrefixCase kPrefixCases[] = {
    {"usual prefixes", TicketAround(""), "psf:", "psk:", "ns0000:"},
    {"foreign framework and keywords prefixes",
     "<fw:PrintTicket xmlns:fw=\"http://schemas.microsoft.com/windows/2003/08/printing/printschemaframework\" "
     "xmlns:kw=\"http://schemas.microsoft.com/windows/2003/08/printing/printschemakeywords\" version=\"1\"/>",
     "fw:", "kw:", "ns0000:"},
    {"prefixes that are words of queries",
     "<or:PrintTicket xmlns:or=\"http://schemas.microsoft.com/windows/2003/08/printing/printschemaframework\" "
     "xmlns:div=\"http://schemas.microsoft.com/windows/2003/08/printing/printschemakeywords\" version=\"1\"/>",
     "or:", "div:", "ns0000:"},
    {"prefixes with every kind of sign",
     "<\xC3\xA9.a-1:PrintTicket "
     "xmlns:\xC3\xA9.a-1=\"http://schemas.microsoft.com/windows/2003/08/printing/printschemaframework\" "
     "xmlns:_=\"http://schemas.microsoft.com/windows/2003/08/printing/printschemakeywords\" version=\"1\"/>",
     "\xC3\xA9.a-1:", "_:", "ns0000:"},
    {"private prefix of our own", TicketAround("", Declare("xmlns:tk", kPrivateUri)), "psf:", "psk:", "tk:"},
    {"private prefix of the service", TicketAround("", Declare("xmlns:ns0000", kPrivateUri)), "psf:", "psk:", "tk:"},
    {"keywords undeclared",
     "<psf:PrintTicket xmlns:psf=\"http://schemas.microsoft.com/windows/2003/08/printing/printschemaframework\" "
     "version=\"1\"/>",
     "psf:", "", "ns0000:"},
    {"keywords declared by a child only",
     "<psf:PrintTicket xmlns:psf=\"http://schemas.microsoft.com/windows/2003/08/printing/printschemaframework\" "
     "version=\"1\">"
     "<psf:Feature xmlns:psk=\"http://schemas.microsoft.com/windows/2003/08/printing/printschemakeywords\" "
     "name=\"psk:F\"/></psf:PrintTicket>",
     "psf:", "", "ns0000:"},
    {"private namespace declared by a child only",
     TicketAround(std::string("<psf:Feature") + Declare("xmlns:ns1", kPrivateUri) + "name=\"ns1:F\"/>"),
     "psf:", "psk:", "ns0000:"},
    {"a value that differs in case is another namespace",
     "<psf:PrintTicket xmlns:psf=\"http://schemas.microsoft.com/windows/2003/08/printing/printschemaframework\" "
     "xmlns:psk=\"HTTP://schemas.microsoft.com/windows/2003/08/printing/printschemakeywords\" version=\"1\"/>",
     "psf:", "", "ns0000:"},
};

TEST(WrappedDocument, FindsThePrefixesThatTheRootDeclares)
{
    for (const PrefixCase& test : kPrefixCases)
    {
        SCOPED_TRACE(test.name);
        const ComPtr<IXMLDOMDocument2> document = LoadDocument(test.text);
        ASSERT_TRUE(document);
        const PrintTicketXmlDocument ticket(document.Get());
        EXPECT_EQ(test.framework, ticket.GetNsPrefix(PrintSchema::Framework).ToUtf8());
        EXPECT_EQ(test.keywords, ticket.GetNsPrefix(PrintSchema::Keywords).ToUtf8());
        EXPECT_EQ(test.privateKeywords, ticket.GetNsPrefix(PrintSchema::PrivateKeywords).ToUtf8());
        EXPECT_EQ(E_INVALIDARG, CodeOf([&] { static_cast<void>(ticket.GetNsPrefix(3)); }));
        CComBSTR text;
        EXPECT_EQ(*test.keywords != '\0' ? S_OK : S_FALSE,
                  ticket.GetPrefixFromURI(PrintSchema::kKeywordsUri, text.Put()));

        // Every query is written with the document's own prefix from then on.
        ticket.AppendIntegerParameterInit(ticket.GetNsPrefix(PrintSchema::Keywords), W("P"), 7);
        EXPECT_EQ(S_OK, ticket.GetNodeValue(W("//") + ticket.GetNsPrefix(0) + W("ParameterInit"), text.Put()));
        EXPECT_EQ("7", Utf8(text.View()));
    }
}

struct RefusedCase
{
    const char* name;
    std::string text;
    HRESULT code;
};

const RefusedCase kRefusedCases[] = {
    {"no root of the name: absence itself is thrown", std::string("<psf:Other ") + kUsual + "/>", S_FALSE},
    {"the root in no namespace", "<PrintTicket/>", S_FALSE},
    {"another spelling of the namespaces",
     "<psf:PrintTicket xmlns:psf=\"https://schemas.microsoft.com/windows/2003/08/printing/printschemaframework\"/>",
     S_FALSE},
    {"default declaration of the framework",
     "<PrintTicket xmlns=\"http://schemas.microsoft.com/windows/2003/08/printing/printschemaframework\" "
     "version=\"1\"/>",
     E_FAIL},
    {"default declaration before a prefixed one: the first decides",
     "<psf:PrintTicket xmlns=\"http://schemas.microsoft.com/windows/2003/08/printing/printschemaframework\" "
     "xmlns:psf=\"http://schemas.microsoft.com/windows/2003/08/printing/printschemaframework\" version=\"1\"/>",
     E_FAIL},
    {"any attribute whose value is the URI counts",
     "<psf:PrintTicket note=\"http://schemas.microsoft.com/windows/2003/08/printing/printschemakeywords\" " +
         std::string(kUsual) + "/>",
     E_FAIL},
    {"a ticket that is not the root of its document has no declarations of its own",
     std::string("<wrap ") + kUsual + "><psf:PrintTicket/></wrap>", E_FAIL},
    {"tk bound to something else while ours has another prefix",
     TicketAround("<psf:Feature name=\"ns1:F\"/>",
                  Declare("xmlns:tk", "urn:other") + Declare("xmlns:ns1", kPrivateUri)),
     E_FAIL},
};

// Wine 8 cannot list a default declaration: asked for it, its DOM fails with a code of its own.
bool DomListsDefaultDeclarations()
{
    const ComPtr<IXMLDOMDocument2> document = LoadDocument(std::string("<x xmlns=\"urn:x\" version=\"1\"/>"));
    ComPtr<IXMLDOMElement> root;
    document->get_documentElement(root.Put());
    ComPtr<IXMLDOMNamedNodeMap> attributes;
    root->get_attributes(attributes.Put());
    ComPtr<IXMLDOMNode> first;
    ComPtr<IXMLDOMNode> second;
    return attributes->get_item(0, first.Put()) == S_OK && attributes->get_item(1, second.Put()) == S_OK;
}

TEST(WrappedDocument, RefusesWhatIsNoTicketAndLeavesItAsItWas)
{
    const bool listsDefaults = DomListsDefaultDeclarations();
    for (const RefusedCase& test : kRefusedCases)
    {
        SCOPED_TRACE(test.name);
        const ComPtr<IXMLDOMDocument2> document = LoadDocument(test.text);
        ASSERT_TRUE(document);
        const std::string before = TextOf(document.Get());
        const HRESULT code = WrapCode(document.Get());
        if (listsDefaults || test.text.find("xmlns=") == std::string::npos)
            EXPECT_EQ(test.code, code);
        else
            EXPECT_TRUE(FAILED(code));
        EXPECT_EQ(before, TextOf(document.Get()));
    }
}

TEST(WrappedDocument, NamesThePlaceOfItsFailures)
{
    std::string place;
    const ComPtr<IXMLDOMDocument2> noTicket = LoadDocument(std::string("<x/>"));
    EXPECT_EQ(S_FALSE, CodeOf([&] { const PrintTicketXmlDocument ticket(noTicket.Get()); }, &place));
    EXPECT_EQ("complugins\\ptpcprovider\\printschemaxmldocument PrintSchemaXmlDocument::PrintSchemaXmlDocument", place);

    const ComPtr<IXMLDOMDocument2> document = LoadDocument(TicketAround(""));
    const PrintTicketXmlDocument ticket(document.Get());
    const std::pair<const char*, std::function<void()>> cases[] = {
        {"printschemaxmldocument PrintSchemaXmlDocument::GetPrefixFromURI",
         [&]
         {
             ticket.GetPrefixFromURI(W(""), CComBSTR().Put());
         }},
        {"printschemaxmldocument PrintSchemaXmlDocument::GetNode",
         [&]
         {
             ticket.GetNode(W("]["), ComPtr<IXMLDOMNode>().Put());
         }},
        {"printschemaxmldocument PrintSchemaXmlDocument::DeletePropertyNodesIfExist",
         [&]
         {
             ticket.DeletePropertyNodesIfExist(W("psk:"), W("a\"b"));
         }},
        {"printticketxmldocument PrintTicketXmlDocument::CreateFeatureOptionPair",
         [&]
         {
             ticket.CreateFeatureOptionPair(1, W(""), nullptr, nullptr);
         }},
        {"printticketxmldocument PrintTicketXmlDocument::DeleteParamInitOrphans",
         [&]
         {
             ticket.DeleteParamInitOrphans(nullptr, nullptr);
         }},
    };
    for (const auto& [expected, action] : cases)
    {
        EXPECT_TRUE(FAILED(CodeOf(action, &place)));
        EXPECT_EQ(std::string("complugins\\ptpcprovider\\") + expected, place);
    }
}

TEST(WrappedDocument, OfAnEmptyDocumentHasNoRoot)
{
    const ComPtr<IXMLDOMDocument2> loaded = LoadDocument(TicketAround(""));
    ComPtr<IXMLDOMElement> root;
    ASSERT_EQ(S_OK, loaded->get_documentElement(root.Put()));
    ComPtr<IXMLDOMNode> removed;
    ASSERT_EQ(S_OK, loaded->removeChild(root.Get(), removed.Put()));
    EXPECT_EQ(S_FALSE, WrapCode(loaded.Get()));
}

TEST(WrappedDocument, SpellsEveryPrivateNameWithTk)
{
    const std::string content =
        "<psf:Feature name=\"ns1:A\"><psf:Option name=\"ns1:ns1:B\"/></psf:Feature>"
        "<psf:Feature name=\"psk:ns1:C\"/><psf:Feature name=\"ns10:D\"/>"
        "<psf:ParameterInit name=\"ns1:P\"><psf:Value>ns1:Stays</psf:Value></psf:ParameterInit>";
    const ComPtr<IXMLDOMDocument2> document = LoadDocument(TicketAround(content, Declare("xmlns:ns1", kPrivateUri)));
    ASSERT_TRUE(document);
    const PrintTicketXmlDocument ticket(document.Get());

    EXPECT_EQ((std::vector<std::string>{"tk:A", "tk:tk:B", "psk:ns1:C", "ns10:D", "tk:P"}),
              Select(document.Get(), "//@name"));
    EXPECT_EQ((std::vector<std::string>{"ns1:Stays"}), Select(document.Get(), "//psf:Value"));
    CComBSTR prefix;
    EXPECT_EQ(S_OK, ticket.GetPrefixFromURI(PrintSchema::kPrivateKeywordsUri, prefix.Put()));

    // Wrapping what was wrapped changes nothing, also after a trip through text.
    const ComPtr<IXMLDOMDocument2> again = Reparse(document.Get());
    ASSERT_TRUE(again);
    const std::string once = TextOf(again.Get());
    EXPECT_EQ(S_OK, WrapCode(again.Get()));
    EXPECT_EQ("", CompareDocuments(document.Get(), again.Get()));
    EXPECT_EQ(S_OK, WrapCode(again.Get()));
    EXPECT_EQ(once.find("xmlns:tk="), once.rfind("xmlns:tk=")); // declared once
}

TEST(WrappedDocument, KeepsNodesOfTheOldPrivatePrefixReadable)
{
    // An element and an attribute that live in the private namespace use the declaration that is taken away.
    const std::string content =
        "<psf:Feature name=\"ns1:A\" ns1:mark=\"1\"><ns1:Extra><ns1:Deep/></ns1:Extra></psf:Feature>";
    const ComPtr<IXMLDOMDocument2> document = LoadDocument(TicketAround(content, Declare("xmlns:ns1", kPrivateUri)));
    ASSERT_TRUE(document);
    const std::string expected =
        TicketAround("<psf:Feature name=\"tk:A\" ns1:mark=\"1\"><ns1:Extra><ns1:Deep/></ns1:Extra></psf:Feature>",
                     Declare("xmlns:ns1", kPrivateUri));
    EXPECT_EQ(S_OK, WrapCode(document.Get()));
    const ComPtr<IXMLDOMDocument2> again = Reparse(document.Get());
    ASSERT_TRUE(again);
    EXPECT_EQ("", CompareDocuments(LoadDocument(expected).Get(), again.Get()));
}

TEST(WrappedDocument, WithoutPrivateNamesIsNotModified)
{
    for (const std::string& declarations : {std::string(), Declare("xmlns:tk", kPrivateUri)})
    {
        const ComPtr<IXMLDOMDocument2> document =
            LoadDocument(TicketAround("<psf:Feature name=\"tk:A\"/>", declarations));
        const std::string before = TextOf(document.Get());
        EXPECT_EQ(S_OK, WrapCode(document.Get()));
        EXPECT_EQ(before, TextOf(document.Get()));
    }
}

class Operations : public testing::Test
{
protected:
    void Wrap(const std::string& content)
    {
        document = LoadDocument(TicketAround(content));
        ASSERT_TRUE(document);
        ticket = std::make_unique<PrintTicketXmlDocument>(document.Get());
    }

    ComPtr<IXMLDOMDocument2> document;
    std::unique_ptr<PrintTicketXmlDocument> ticket;
};

TEST_F(Operations, FindFeaturesAndTellAbsenceFromFailure)
{
    Wrap("<psf:Feature name=\"psk:F\"/>");
    ComPtr<IXMLDOMNode> node;
    EXPECT_EQ(S_OK, ticket->GetFeatureNodeIfExists(W("psk:"), W("F"), node.Put()));
    EXPECT_EQ(S_OK, ticket->GetFeatureNode(W("psk:"), W("F"), node.Put()));

    IXMLDOMNode* untouched = node.Get();
    EXPECT_EQ(S_FALSE, ticket->GetFeatureNodeIfExists(W("psk:"), W("G"), &untouched));
    EXPECT_EQ(node.Get(), untouched);
    EXPECT_EQ(E_FAIL, CodeOf([&] { ticket->GetFeatureNode(W("psk:"), W("G"), &untouched); }));
    EXPECT_EQ(S_FALSE, ticket->DeleteFeatureNodeIfExists(W("psk:"), W("G")));

    EXPECT_EQ(E_POINTER, CodeOf([&] { ticket->GetNode(W("//psf:Feature"), nullptr); }));
    EXPECT_EQ(E_INVALIDARG, CodeOf([&] { ticket->GetNode(W(""), &untouched); }));
    ComPtr<IXMLDOMNodeList> list;
    EXPECT_EQ(E_POINTER, CodeOf([&] { ticket->GetNodes(W("Feature"), nullptr); }));
    EXPECT_EQ(E_FAIL, CodeOf([&] { ticket->GetNodes(W(""), list.Put()); }));
    // A lone quote in a name makes a query that the DOM refuses.
    EXPECT_TRUE(FAILED(CodeOf([&] { ticket->GetFeatureNodeIfExists(W("psk:"), W("a\"b"), &untouched); })));
}

TEST_F(Operations, DeleteOneOfSeveralCopies)
{
    Wrap("<psf:Feature name=\"psk:F\" n=\"1\"/><psf:Feature name=\"psk:F\" n=\"2\"/><psf:Feature name=\"psk:F\" "
         "n=\"3\"/>");
    EXPECT_EQ(S_OK, ticket->DeleteFeatureNodeIfADuplicateExists(W("psk:"), W("F")));
    EXPECT_EQ((std::vector<std::string>{"2", "3"}), Select(document.Get(), "//@n"));
    EXPECT_EQ(S_OK, ticket->DeleteFeatureNodeIfADuplicateExists(W("psk:"), W("F")));
    EXPECT_EQ(S_OK, ticket->DeleteFeatureNodeIfADuplicateExists(W("psk:"), W("F")));
    EXPECT_EQ((std::vector<std::string>{"3"}), Select(document.Get(), "//@n"));
    EXPECT_EQ(S_OK, ticket->DeleteFeatureNodeIfADuplicateExists(W("psk:"), W("G")));
}

TEST_F(Operations, DeleteNodesAndProperties)
{
    Wrap("<psf:Property name=\"psk:P\"/><psf:Feature name=\"psk:F\"><psf:Property name=\"psk:P\"/></psf:Feature>");
    EXPECT_EQ(S_OK, ticket->DeletePropertyNodesIfExist(W("psk:"), W("Q")));
    EXPECT_EQ(S_OK, ticket->DeletePropertyNodesIfExist(W("psk:"), W("P")));
    EXPECT_TRUE(Select(document.Get(), "//psf:Property").empty());
    EXPECT_EQ(E_FAIL, CodeOf([&] { ticket->DeletePropertyNodesIfExist(W("psk:"), W("")); }));

    EXPECT_EQ(E_POINTER, CodeOf([&] { ticket->DeleteNode(nullptr); }));
    ComPtr<IXMLDOMElement> detached;
    ticket->CreateXMLElement(W("psf:Feature"), detached.Put());
    EXPECT_EQ(S_FALSE, ticket->DeleteNode(detached.Get()));
}

struct ValueCase
{
    const char* name;
    const char* content; // of the feature psk:F
    HRESULT result;
    const char* value;
};

constexpr ValueCase kValueCases[] = {
    {"a value", "<psf:Value>7</psf:Value>", S_OK, "7"},
    {"a value in a CDATA section", "<psf:Value><![CDATA[1<2]]></psf:Value>", S_OK, "1<2"},
    {"the value comes before a reference", "<psf:ParameterRef name=\"psk:P\"/><psf:Value>7</psf:Value>", S_OK, "7"},
    {"a reference to the first initialiser of the name", "<psf:ParameterRef name=\"psk:P\"/>", S_OK, "11"},
    {"a reference to nothing", "<psf:ParameterRef name=\"psk:Q\"/>", S_OK, ""},
    {"an empty value", "<psf:Value/>", S_OK, ""},
    {"neither", "", S_OK, ""},
    {"a value that is no child", "<psf:Option><psf:Value>7</psf:Value></psf:Option>", S_OK, ""},
};

TEST_F(Operations, ReadValuesAndFollowReferences)
{
    for (const ValueCase& test : kValueCases)
    {
        SCOPED_TRACE(test.name);
        Wrap("<psf:Feature name=\"psk:F\">" + std::string(test.content) +
             "</psf:Feature><psf:ParameterInit name=\"psk:P2\"><psf:Value>10</psf:Value></psf:ParameterInit>"
             "<psf:ParameterInit name=\"psk:P\"><psf:Value>11</psf:Value></psf:ParameterInit>"
             "<psf:ParameterInit name=\"psk:P\"><psf:Value>12</psf:Value></psf:ParameterInit>");
        CComBSTR value(W("earlier"));
        BSTR raw = value.Detach();
        EXPECT_EQ(test.result, ticket->GetNodeValue(W("//psf:Feature"), &raw));
        value.Attach(raw);
        EXPECT_EQ(test.value, Utf8(value.View()));
        EXPECT_EQ(*test.value == 0, value.Get() == nullptr); // an empty value is a null string
    }
    CComBSTR value;
    EXPECT_EQ(S_FALSE, ticket->GetNodeValue(W("//psf:Nothing"), value.Put()));
    EXPECT_EQ(E_POINTER, CodeOf([&] { ticket->GetNodeValue(W("//psf:Feature"), nullptr); }));
    EXPECT_EQ(E_INVALIDARG, CodeOf([&] { ticket->GetNodeValue(W(""), value.Put()); }));
}

TEST_F(Operations, ReadNoBlanksAroundTheValueOfAnInitialiser)
{
    const PrintTicketXmlDocument indented(
        LoadDocument(TicketAround("<psf:Feature name=\"psk:F\">\n <psf:ParameterRef name=\"psk:P\"/>\n</psf:Feature>\n"
                                  "<psf:ParameterInit name=\"psk:P\">\n <psf:Value> 11 </psf:Value>\n"
                                  "</psf:ParameterInit>"),
                     true)
            .Get());
    CComBSTR value;
    EXPECT_EQ(S_OK, indented.GetNodeValue(W("//psf:Feature"), value.Put()));
    EXPECT_EQ(" 11 ", Utf8(value.View()));
}

TEST_F(Operations, ReadAttributes)
{
    Wrap("<psf:Feature name=\"psk:F\"/>");
    ComPtr<IXMLDOMNode> node;
    ticket->GetFeatureNode(W("psk:"), W("F"), node.Put());
    CComBSTR value;
    EXPECT_EQ(S_OK, ticket->GetAttributeValue(node.Get(), W("name"), value.Put()));
    EXPECT_EQ("psk:F", Utf8(value.View()));
    EXPECT_EQ(S_FALSE, ticket->GetAttributeValue(node.Get(), W("other"), value.Put()));
    EXPECT_EQ(E_POINTER, CodeOf([&] { ticket->GetAttributeValue(node.Get(), W("name"), nullptr); }));
    EXPECT_EQ(E_POINTER, CodeOf([&] { ticket->GetAttributeValue(nullptr, W("name"), value.Put()); }));
    EXPECT_EQ(E_INVALIDARG, CodeOf([&] { ticket->GetAttributeValue(node.Get(), W(""), value.Put()); }));
}

TEST_F(Operations, CreateElementsInTheirShapes)
{
    Wrap("<psf:Feature name=\"psk:F\"/>");
    ComPtr<IXMLDOMNode> feature;
    ticket->GetFeatureNode(W("psk:"), W("F"), feature.Put());
    ComPtr<IXMLDOMElement> element;

    ticket->CreateProperty(PrintSchema::Framework, W("SelectionType"), W("QName"), W("psk:PickOne"), element.Put());
    ticket->AppendChild(feature.Get(), element.Get());
    ticket->CreateProperty(PrintSchema::Keywords, W("Bare"), element.Put());
    ticket->AppendChild(feature.Get(), element.Get());
    ticket->AppendChildIntegerProperty(feature.Get(), PrintSchema::Framework, W("Number"), -5); // index ignored
    ticket->AppendChildIntegerScoredProperty(feature.Get(), W("psk:Scored"), -2147483647 - 1);
    ticket->AppendChildQNameScoredProperty(feature.Get(), W("psk:Name"), W("psk:<&\">"));
    ticket->AppendChildParameterRefScoredProperty(feature.Get(), W("psk:ByRef"), W("psk:Param"), element.Put());
    ticket->CreateScoredProperty(W("tk:Mine"), W("string"), W(""), element.Put());
    ticket->AppendChildToRootNode(element.Get());

    const std::string value = "<psf:Value xsi:type=\"xsd:";
    const std::string expected = TicketAround(
        "<psf:Feature name=\"psk:F\">"
        "<psf:Property name=\"psf:SelectionType\">" +
        value +
        "QName\">psk:PickOne</psf:Value></psf:Property>"
        "<psf:Property name=\"psk:Bare\"/>"
        "<psf:Property name=\"psk:Number\">" +
        value +
        "integer\">-5</psf:Value></psf:Property>"
        "<psf:ScoredProperty name=\"psk:Scored\">" +
        value +
        "integer\">-2147483648</psf:Value></psf:ScoredProperty>"
        "<psf:ScoredProperty name=\"psk:Name\">" +
        value +
        "QName\">psk:&lt;&amp;\"&gt;</psf:Value></psf:ScoredProperty>"
        "<psf:ScoredProperty name=\"psk:ByRef\"><psf:ParameterRef name=\"psk:Param\"/></psf:ScoredProperty>"
        "</psf:Feature>"
        "<psf:ScoredProperty name=\"tk:Mine\">" +
        value + "string\"/></psf:ScoredProperty>");
    EXPECT_EQ("", CompareDocuments(LoadDocument(expected).Get(), Reparse(document.Get()).Get()));
}

TEST_F(Operations, RefuseNullsAndEmptyNames)
{
    Wrap("<psf:Feature name=\"psk:F\"/>");
    const std::string before = TextOf(document.Get());
    ComPtr<IXMLDOMElement> out;
    ComPtr<IXMLDOMElement> element;
    ticket->CreateXMLElement(W("psf:X"), element.Put());
    const auto& t = *ticket;
    ExpectCode(E_POINTER,
               {
                   [&] { t.CreateXMLElement(W("psf:X"), nullptr); },
                   [&] { t.AppendXMLAttribute(nullptr, W("a"), W(""), W("v")); },
                   [&] { t.CreateProperty(0, W("P"), W("integer"), W("1"), nullptr); },
                   [&] { t.AppendChildIntegerProperty(nullptr, 1, W("P"), 1); },
                   [&] { t.AppendChildQNameScoredProperty(nullptr, W("psk:P"), W("psk:V")); },
                   [&] { t.AppendChild(nullptr, element.Get()); },
                   [&] { t.AppendChildToRootNode(nullptr); },
                   [&] { t.GetPrefixFromURI(W("urn:x"), nullptr); },
               });
    ExpectCode(E_INVALIDARG,
               {
                   [&] { t.CreateXMLElement(W(""), out.Put()); },
                   [&] { t.AppendXMLAttribute(element.Get(), W(""), W(""), W("v")); },
                   [&] { t.CreateProperty(0, W(""), out.Put()); },
                   [&] { t.CreateProperty(9, W("P"), out.Put()); },
                   [&] { t.CreateScoredProperty(W(""), out.Put()); },
                   [&] { t.CreateParameterRef(W(""), out.Put()); },
                   [&] { t.GetPrefixFromURI(W(""), CComBSTR().Put()); },
               });
    EXPECT_EQ(before, TextOf(document.Get()));
}

TEST(EmptyWrapper, FailsEveryOperation)
{
    const PrintTicketXmlDocument empty(nullptr);
    // Nodes of another document: only the wrapper's own emptiness can fail the calls.
    const ComPtr<IXMLDOMDocument2> document = LoadDocument(TicketAround("<psf:Feature name=\"psk:F\"/>"));
    const PrintTicketXmlDocument other(document.Get());
    ComPtr<IXMLDOMNode> given;
    other.GetFeatureNode(W("psk:"), W("F"), given.Put());
    ComPtr<IXMLDOMElement> child;
    other.CreateXMLElement(W("psf:X"), child.Put());
    ComPtr<IXMLDOMNodeList> givenList;
    other.GetNodes(W("Nothing"), givenList.Put());

    ComPtr<IXMLDOMNode> node;
    ComPtr<IXMLDOMNodeList> list;
    ComPtr<IXMLDOMElement> element;
    ComPtr<IXMLDOMElement> second;
    CComBSTR text;
    CComBSTR secondText;
    ULONG number = 0;
    ExpectCode(E_POINTER,
               {
                   [&] { static_cast<void>(empty.GetNsPrefix(0)); },
                   [&] { empty.GetPrefixFromURI(W("urn:x"), text.Put()); },
                   [&] { empty.GetNode(W("//x"), node.Put()); },
                   [&] { empty.GetNodes(W("Feature"), list.Put()); },
                   [&] { empty.GetFeatureNodeIfExists(W("psk:"), W("F"), node.Put()); },
                   [&] { empty.GetFeatureNode(W("psk:"), W("F"), node.Put()); },
                   [&] { empty.GetNodeValue(W("//x"), text.Put()); },
                   [&] { empty.GetAttributeValue(given.Get(), W("name"), text.Put()); },
                   [&] { empty.DeleteNode(given.Get()); },
                   [&] { empty.DeleteFeatureNodeIfExists(W("psk:"), W("F")); },
                   [&] { empty.DeleteFeatureNodeIfADuplicateExists(W("psk:"), W("F")); },
                   [&] { empty.DeletePropertyNodesIfExist(W("psk:"), W("F")); },
                   [&] { empty.AppendChildToRootNode(child.Get()); },
                   [&] { empty.AppendChild(given.Get(), child.Get()); },
                   [&] { empty.CreateXMLElement(W("psf:X"), element.Put()); },
                   [&] { empty.AppendXMLAttribute(child.Get(), W("a"), W(""), W("v")); },
                   [&] { empty.CreateProperty(0, W("P"), element.Put()); },
                   [&] { empty.CreateProperty(0, W("P"), W("integer"), W("1"), element.Put()); },
                   [&] { empty.CreateScoredProperty(W("psk:P"), element.Put()); },
                   [&] { empty.CreateScoredProperty(W("psk:P"), W("integer"), W("1"), element.Put()); },
                   [&] { empty.CreateIntegerScoredProperty(W("psk:P"), 1, element.Put()); },
                   [&] { empty.CreateParameterRef(W("psk:P"), element.Put()); },
                   [&] { empty.CreateParameterRefScoredProperty(W("psk:P"), W("psk:Q"), element.Put()); },
                   [&] { empty.AppendChildIntegerProperty(given.Get(), 1, W("P"), 1); },
                   [&] { empty.AppendChildIntegerScoredProperty(given.Get(), W("psk:P"), 1); },
                   [&] { empty.AppendChildQNameScoredProperty(given.Get(), W("psk:P"), W("psk:V")); },
                   [&]
                   { empty.AppendChildParameterRefScoredProperty(given.Get(), W("psk:P"), W("psk:Q"), element.Put()); },
                   [&] { empty.GetFeatureOption(W("F"), text.Put(), secondText.Put()); },
                   [&] { empty.GetScoredPropertyValue(W("F"), W("P"), text.Put()); },
                   [&] { empty.GetScoredPropertyValue(W("F"), W("P"), &number); },
                   [&] { empty.CreateFeatureOptionPair(1, W("F"), element.Put(), second.Put()); },
                   [&] { empty.CreateFeatureOptionPair(1, W("F"), true, W("O"), element.Put(), second.Put()); },
                   [&] { empty.CreateStringParameterInit(W("psk:"), W("P"), W("v"), element.Put()); },
                   [&] { empty.CreateIntegerParameterInit(W("psk:"), W("P"), 1, element.Put()); },
                   [&] { empty.AppendIntegerParameterInit(W("psk:"), W("P"), 1); },
                   [&] { empty.GetParameterInitNodeIfExists(W("psk:"), W("P"), node.Put()); },
                   [&] { empty.GetParameterInitValueNodeIfExists(W("psk:"), W("P"), node.Put()); },
                   [&] { empty.DeleteParameterInitNodeIfExists(W("psk:"), W("P")); },
                   [&] { empty.DeleteFeatureAndOrphanParameterInitsIfExists(W("psk:"), W("F")); },
                   [&] { empty.DeleteParamInitOrphans(givenList.Get(), givenList.Get()); },
                   [&] { empty.DeleteNodeList(givenList.Get()); },
               });
}

TEST(WrappedDocument, GivesEveryReferenceBack)
{
    const ComPtr<IXMLDOMDocument2> document = LoadTestDocument("tickets/private-prefix-ns1.xml");
    ASSERT_TRUE(document);
    const auto references = [&]
    {
        document->AddRef();
        return document->Release();
    };
    const ULONG before = references();
    {
        const PrintTicketXmlDocument ticket(document.Get());
        CComBSTR name;
        CComBSTR prefix;
        EXPECT_EQ(S_OK, ticket.GetFeatureOption(W("PageMediaSize"), name.Put(), prefix.Put()));
        ticket.DeleteFeatureAndOrphanParameterInitsIfExists(W("psk:"), W("PageMediaSize"));
        ticket.AppendIntegerParameterInit(W("psk:"), W("JobCopiesAllDocuments"), 3);
        EXPECT_GT(references(), before);
    }
    EXPECT_EQ(before, references());
}

} // namespace
