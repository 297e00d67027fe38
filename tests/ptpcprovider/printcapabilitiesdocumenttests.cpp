// Building capabilities: features, options, parameter definitions in their orders; display names; option look-ups.
#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "complugins/ptpcprovider/domhelpers.h"
#include "complugins/ptpcprovider/printcapabilitiesxmldocument.h"
#include "tests/common/documentcomparer.h"
#include "tests/common/failurecode.h"
#include "tests/common/testdocuments.h"

namespace
{

constexpr HRESULT kNotFound = PrintSchemaXmlDocument::kNotFound;

std::string Capabilities(const std::string& content)
{
    std::string text = TicketAround(content);
    for (const char* end : {"<psf:PrintTicket", "</psf:PrintTicket"})
        text.replace(text.find(end), std::string(end).size(),
                     end[1] == '/' ? "</psf:PrintCapabilities" : "<psf:PrintCapabilities");
    return text;
}

std::string Property(const std::string& name, const std::string& type, const std::string& value)
{
    return "<psf:Property name=\"" + name + "\"><psf:Value xsi:type=\"xsd:" + type + "\">" + value +
           "</psf:Value></psf:Property>";
}

class CapabilitiesDocument : public testing::Test
{
protected:
    void Wrap(const std::string& content)
    {
        document = LoadDocument(Capabilities(content));
        ASSERT_TRUE(document);
        capabilities = std::make_unique<PrintCapabilitiesXmlDocument>(document.Get());
    }

    void AppendElement() const
    {
        capabilities->AppendChildToRootNode(element.Get());
    }

    void ExpectContent(const std::string& content) const
    {
        EXPECT_EQ("", CompareDocuments(LoadDocument(Capabilities(content)).Get(), Reparse(document.Get()).Get()));
    }

    ComPtr<IXMLDOMNode> Feature(const WCHAR* name) const
    {
        ComPtr<IXMLDOMNode> feature;
        capabilities->GetFeatureNode(W("psk:"), name, feature.Put());
        return feature;
    }

    ComPtr<IXMLDOMDocument2> document;
    std::unique_ptr<PrintCapabilitiesXmlDocument> capabilities;
    ComPtr<IXMLDOMElement> element;
};

TEST_F(CapabilitiesDocument, BuildsFeaturesAndOptions)
{
    Wrap("");
    capabilities->CreateFeature(W("F"), W(""), element.Put());
    AppendElement();
    capabilities->CreatePickOneFeature(W("G"), W("D & E"), element.Put());
    AppendElement();
    capabilities->CreatePickOneFeature(W("H"), W(""), element.Put());
    AppendElement();
    capabilities->CreateOption(W("tk:"), W("Bare"), W(""), W(""), element.Put());
    AppendElement();
    capabilities->CreateOption(W("psk:"), W("Full"), W("Name"), W("PrintTicketSettings"), element.Put());
    AppendElement();
    const std::string pickOne = Property("psf:SelectionType", "QName", "psk:PickOne");
    ExpectContent("<psf:Feature name=\"psk:F\"/>"
                  "<psf:Feature name=\"psk:G\">" +
                  Property("psk:DisplayName", "string", "D &amp; E") + pickOne +
                  "</psf:Feature>"
                  "<psf:Feature name=\"psk:H\">" +
                  pickOne +
                  "</psf:Feature>"
                  "<psf:Option name=\"tk:Bare\"/>"
                  "<psf:Option name=\"psk:Full\" constrained=\"psk:PrintTicketSettings\">" +
                  Property("psk:DisplayName", "string", "Name") + "</psf:Option>");
}

TEST_F(CapabilitiesDocument, BuildsParameterDefinitionsInTheirOrders)
{
    Wrap("");
    capabilities->CreateIntegerParameterDef(
        W("psk:"), W("I"), {W("Unconditional"), W("Copies"), 1, -5, 999, 7, W("copies")}, element.Put());
    AppendElement();
    capabilities->CreateIntegerParameterDef(W("tk:"), W("J"), {W("Optional"), W(""), 2, 1, 3, 1, W("")}, element.Put());
    AppendElement();
    capabilities->CreateStringParameterDef(W("tk:"), W("S"),
                                           {W("Optional"), W("ignored"), W("text"), 9, 32, W("base64")}, element.Put());
    AppendElement();
    ExpectContent("<psf:ParameterDef name=\"psk:I\">" + Property("psf:DataType", "QName", "xsd:integer") +
                  Property("psf:DefaultValue", "integer", "1") + Property("psf:MaxValue", "integer", "999") +
                  Property("psf:MinValue", "integer", "-5") + Property("psf:Mandatory", "QName", "psk:Unconditional") +
                  Property("psf:UnitType", "string", "copies") + Property("psf:Multiple", "integer", "1") +
                  Property("psk:DisplayName", "string", "Copies") +
                  "</psf:ParameterDef>"
                  "<psf:ParameterDef name=\"tk:J\">" +
                  Property("psf:DataType", "QName", "xsd:integer") + Property("psf:DefaultValue", "integer", "2") +
                  Property("psf:MaxValue", "integer", "3") + Property("psf:MinValue", "integer", "1") +
                  Property("psf:Mandatory", "QName", "psk:Optional") + Property("psf:UnitType", "string", "") +
                  Property("psf:Multiple", "integer", "1") +
                  "</psf:ParameterDef>"
                  "<psf:ParameterDef name=\"tk:S\">" +
                  Property("psf:DataType", "QName", "xsd:string") + Property("psf:MaxLength", "integer", "32") +
                  Property("psf:MinLength", "integer", "0") + Property("psf:Mandatory", "QName", "psk:Optional") +
                  Property("psf:UnitType", "string", "base64") + Property("psf:DefaultValue", "string", "text") +
                  "</psf:ParameterDef>");

    ComPtr<IXMLDOMNode> node;
    EXPECT_EQ(S_OK, capabilities->GetParameterDefNodeIfExists(W("tk:"), W("S"), node.Put()));
    EXPECT_EQ(S_OK, capabilities->DeleteParameterDefNodeIfExists(W("tk:"), W("S")));
    EXPECT_EQ(S_FALSE, capabilities->DeleteParameterDefNodeIfExists(W("tk:"), W("S")));
    EXPECT_EQ((std::vector<std::string>{"psk:I", "tk:J"}), Select(document.Get(), "//psf:ParameterDef/@name"));
}

TEST_F(CapabilitiesDocument, ReplacesDisplayNamesThatAreThere)
{
    const std::string named = Property("psk:DisplayName", "string", "old");
    Wrap("<psf:Feature name=\"psk:F\">" + named + "<psf:Option name=\"psk:A\">" + named +
         "</psf:Option><psf:Option name=\"psk:B\"/></psf:Feature><psf:Feature name=\"psk:G\"><psf:Option "
         "name=\"psk:A\">" +
         named + "</psf:Option></psf:Feature>");
    EXPECT_EQ(S_OK, capabilities->ReplaceDisplayNamePropertyValue(Feature(W("F")).Get(), W("new <1>")));
    EXPECT_EQ(S_OK, capabilities->ReplaceOptionDisplayNamePropertyValue(Feature(W("F")).Get(), W("psk:"), W("A"),
                                                                        W("new 2")));
    EXPECT_EQ((std::vector<std::string>{"new <1>", "new 2", "old"}), Select(document.Get(), "//psf:Value"));

    const std::string before = TextOf(document.Get());
    EXPECT_EQ(kNotFound, capabilities->ReplaceDisplayNamePropertyValue(Feature(W("G")).Get(), W("x"))); // its option's
    EXPECT_EQ(kNotFound,
              capabilities->ReplaceOptionDisplayNamePropertyValue(Feature(W("F")).Get(), W("psk:"), W("B"), W("x")));
    EXPECT_EQ(S_FALSE,
              capabilities->ReplaceOptionDisplayNamePropertyValue(Feature(W("F")).Get(), W("psk:"), W("C"), W("x")));
    EXPECT_EQ(before, TextOf(document.Get()));
}

TEST_F(CapabilitiesDocument, ListsAFeaturesOwnOptionsAndReadsTheirProperties)
{
    Wrap("<psf:Feature name=\"psk:F\"><psf:Option name=\"psk:A\"><psf:ScoredProperty name=\"psk:Outer\"><psf:Option "
         "name=\"psk:Inner\"><psf:ScoredProperty name=\"psk:Deep\"><psf:Value>600</psf:Value></psf:ScoredProperty>"
         "</psf:Option></psf:ScoredProperty><psf:ScoredProperty name=\"psk:Empty\"><psf:Value/></psf:ScoredProperty>"
         "</psf:Option><psf:Option name=\"tk:B\"/></psf:Feature>");
    ComPtr<IXMLDOMNodeList> options;
    EXPECT_EQ(S_OK, capabilities->GetChildOptionNodes(Feature(W("F")).Get(), options.Put()));
    LONG count = 0;
    options->get_length(&count);
    EXPECT_EQ(2, count);

    ComPtr<IXMLDOMNode> option;
    EXPECT_EQ(S_OK, capabilities->GetChildOptionNodeIfExists(Feature(W("F")).Get(), W("psk:"), W("A"), option.Put()));
    IXMLDOMNode* untouched = option.Get();
    EXPECT_EQ(S_FALSE,
              capabilities->GetChildOptionNodeIfExists(Feature(W("F")).Get(), W("psk:"), W("Inner"), &untouched));
    EXPECT_EQ(option.Get(), untouched);

    CComBSTR value;
    EXPECT_EQ(S_OK,
              capabilities->GetChildScoredPropertyValueAsString(option.Get(), W("Deep"), value.Put())); // any depth
    EXPECT_EQ("600", Utf8(value.View()));
    for (const WCHAR* name : {W("Empty"), W("Missing")})
        EXPECT_EQ(E_FAIL,
                  CodeOf([&] { capabilities->GetChildScoredPropertyValueAsString(option.Get(), name, value.Put()); }));
}

TEST_F(CapabilitiesDocument, ReadsNoBlanksAroundAScoredValue)
{
    const PrintCapabilitiesXmlDocument indented(
        LoadDocument(Capabilities("<psf:Option>\n <psf:ScoredProperty name=\"psk:X\">\n  <psf:Value>600"
                                  "</psf:Value>\n </psf:ScoredProperty>\n <psf:ScoredProperty name=\"psk:E\">"
                                  "\n  <psf:Value/>\n </psf:ScoredProperty>\n</psf:Option>"),
                     true)
            .Get());
    ComPtr<IXMLDOMNode> option;
    indented.GetNode(W("//psf:Option"), option.Put());
    CComBSTR value;
    EXPECT_EQ(S_OK, indented.GetChildScoredPropertyValueAsString(option.Get(), W("X"), value.Put()));
    EXPECT_EQ("600", Utf8(value.View()));
    EXPECT_EQ(E_FAIL, CodeOf([&] { indented.GetChildScoredPropertyValueAsString(option.Get(), W("E"), value.Put()); }));
}

TEST_F(CapabilitiesDocument, RefusesNullsAndEmptyNames)
{
    Wrap("<psf:Feature name=\"psk:F\"/>");
    const auto& c = *capabilities;
    const ComPtr<IXMLDOMNode> feature = Feature(W("F"));
    ComPtr<IXMLDOMNode> node;
    CComBSTR text;
    ExpectCode(E_POINTER,
               {
                   [&] { c.CreateFeature(W("F"), W(""), nullptr); },
                   [&] { c.CreateStringParameterDef(W("psk:"), W("S"), {}, nullptr); },
                   [&] { c.ReplaceDisplayNamePropertyValue(nullptr, W("x")); },
                   [&] { c.ReplaceOptionDisplayNamePropertyValue(nullptr, W("psk:"), W("A"), W("x")); },
                   [&] { c.GetChildOptionNodes(nullptr, nullptr); },
                   [&] { c.GetChildScoredPropertyValueAsString(nullptr, W("P"), text.Put()); },
               });
    ExpectCode(E_INVALIDARG,
               {
                   [&] { c.CreateFeature(W(""), W(""), element.Put()); },
                   [&] { c.CreatePickOneFeature(W(""), W(""), element.Put()); },
                   [&] { c.CreateOption(W("psk:"), W(""), W(""), W(""), element.Put()); },
                   [&] { c.CreateIntegerParameterDef(W("psk:"), W(""), {}, element.Put()); },
                   [&] { c.GetChildOptionNodeIfExists(feature.Get(), W("psk:"), W(""), node.Put()); },
                   [&] { c.GetChildScoredPropertyValueAsString(feature.Get(), W(""), text.Put()); },
                   [&] { c.DeleteParameterDefNodeIfExists(W("psk:"), W("")); },
               });
    ExpectContent("<psf:Feature name=\"psk:F\"/>");
    EXPECT_EQ(S_FALSE, CodeOf([] { const PrintCapabilitiesXmlDocument ticket(LoadDocument(TicketAround("")).Get()); }));
    EXPECT_EQ(E_POINTER,
              CodeOf([&] { PrintCapabilitiesXmlDocument(nullptr).CreateFeature(W("F"), W(""), element.Put()); }));
}

} // namespace
