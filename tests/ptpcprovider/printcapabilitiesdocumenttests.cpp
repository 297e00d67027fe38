// Building capabilities: features, options, parameter definitions in their orders; display names; option look-ups.
#include "tests/common/failurecode.h"
#include "tests/ptpcprovider/wrappeddocument.h"

namespace
{

constexpr HRESULT kNotFound = PrintSchemaXmlDocument::kNotFound;

std::string Property(const std::string& name, const std::string& type, const std::string& value)
{
    return "<psf:Property name=\"" + name + "\"><psf:Value xsi:type=\"xsd:" + type + "\">" + value +
           "</psf:Value></psf:Property>";
}

TEST(Capabilities, BuildFeaturesAndOptions)
{
    const WrappedCapabilities document(CapabilitiesAround(""));
    ComPtr<IXMLDOMElement> element;
    document->CreateFeature(W("F"), W(""), element.Put());
    document->AppendChildToRootNode(element.Get());
    document->CreatePickOneFeature(W("G"), W("D & E"), element.Put());
    document->AppendChildToRootNode(element.Get());
    document->CreateOption(W("tk:"), W("Bare"), W(""), W(""), element.Put());
    document->AppendChildToRootNode(element.Get());
    document->CreateOption(W("psk:"), W("Full"), W("Name"), W("PrintTicketSettings"), element.Put());
    document->AppendChildToRootNode(element.Get());
    document.ExpectIs(CapabilitiesAround("<psf:Feature name=\"psk:F\"/><psf:Feature name=\"psk:G\">" +
                                         Property("psk:DisplayName", "string", "D &amp; E") +
                                         Property("psf:SelectionType", "QName", "psk:PickOne") +
                                         "</psf:Feature><psf:Option name=\"tk:Bare\"/>"
                                         "<psf:Option name=\"psk:Full\" constrained=\"psk:PrintTicketSettings\">" +
                                         Property("psk:DisplayName", "string", "Name") + "</psf:Option>"));
}

TEST(Capabilities, BuildParameterDefinitionsInTheirOrders)
{
    const WrappedCapabilities document(CapabilitiesAround(""));
    ComPtr<IXMLDOMElement> element;
    document->CreateIntegerParameterDef(W("psk:"), W("I"),
                                        {W("Unconditional"), W("Copies"), 1, -5, 999, 7, W("copies")}, element.Put());
    document->AppendChildToRootNode(element.Get());
    document->CreateStringParameterDef(W("tk:"), W("S"), {W("Optional"), W("ignored"), W("text"), 9, 32, W("base64")},
                                       element.Put());
    document->AppendChildToRootNode(element.Get());
    const std::string integer =
        "<psf:ParameterDef name=\"psk:I\">" + Property("psf:DataType", "QName", "xsd:integer") +
        Property("psf:DefaultValue", "integer", "1") + Property("psf:MaxValue", "integer", "999") +
        Property("psf:MinValue", "integer", "-5") + Property("psf:Mandatory", "QName", "psk:Unconditional") +
        Property("psf:UnitType", "string", "copies") + Property("psf:Multiple", "integer", "1") +
        Property("psk:DisplayName", "string", "Copies") + "</psf:ParameterDef>";
    document.ExpectIs(CapabilitiesAround(
        integer + "<psf:ParameterDef name=\"tk:S\">" + Property("psf:DataType", "QName", "xsd:string") +
        Property("psf:MaxLength", "integer", "32") + Property("psf:MinLength", "integer", "0") +
        Property("psf:Mandatory", "QName", "psk:Optional") + Property("psf:UnitType", "string", "base64") +
        Property("psf:DefaultValue", "string", "text") + "</psf:ParameterDef>"));

    EXPECT_EQ(S_OK, document->DeleteParameterDefNodeIfExists(W("tk:"), W("S")));
    EXPECT_EQ(S_FALSE, document->DeleteParameterDefNodeIfExists(W("tk:"), W("S")));
    document.ExpectIs(CapabilitiesAround(integer));
}

TEST(Capabilities, ReplaceDisplayNamesThatAreThere)
{
    const std::string named = Property("psk:DisplayName", "string", "old");
    const WrappedCapabilities document(CapabilitiesAround(
        "<psf:Feature name=\"psk:F\">" + named + "<psf:Option name=\"psk:A\">" + named +
        "</psf:Option><psf:Option name=\"psk:B\"/></psf:Feature><psf:Feature name=\"psk:G\"><psf:Option "
        "name=\"psk:A\">" +
        named + "</psf:Option></psf:Feature>"));
    const ComPtr<IXMLDOMNode> feature = document.Feature(W("F"));
    const auto replaceOptions = [&](const WCHAR* option)
    {
        return document->ReplaceOptionDisplayNamePropertyValue(feature.Get(), W("psk:"), option, W("new 2"));
    };
    EXPECT_EQ(S_OK, document->ReplaceDisplayNamePropertyValue(feature.Get(), W("new <1>")));
    EXPECT_EQ(S_OK, replaceOptions(W("A")));
    EXPECT_EQ(kNotFound, replaceOptions(W("B")));
    EXPECT_EQ(S_FALSE, replaceOptions(W("C")));
    EXPECT_EQ(kNotFound, document->ReplaceDisplayNamePropertyValue(document.Feature(W("G")).Get(), W("its option's")));
    EXPECT_EQ((Texts{"new <1>", "new 2", "old"}), Select(document.Dom(), "//psf:Value"));
}

TEST(Capabilities, ListAFeaturesOwnOptionsAndReadTheirProperties)
{
    // With the blanks around elements that a document from outside has.
    const WrappedCapabilities document(
        CapabilitiesAround("<psf:Feature name=\"psk:F\">\n<psf:Option name=\"psk:A\">\n<psf:ScoredProperty "
                           "name=\"psk:Outer\"><psf:Option name=\"psk:Inner\"><psf:ScoredProperty name=\"psk:Deep\">\n"
                           "<psf:Value>600</psf:Value>\n</psf:ScoredProperty></psf:Option></psf:ScoredProperty>"
                           "<psf:ScoredProperty name=\"psk:Empty\">\n<psf:Value/>\n</psf:ScoredProperty></psf:Option>"
                           "\n<psf:Option name=\"tk:B\"/></psf:Feature>"),
        true);
    const ComPtr<IXMLDOMNode> feature = document.Feature(W("F"));
    ComPtr<IXMLDOMNodeList> options;
    EXPECT_EQ(S_OK, document->GetChildOptionNodes(feature.Get(), options.Put()));
    LONG count = 0;
    options->get_length(&count);
    EXPECT_EQ(2, count);

    ComPtr<IXMLDOMNode> option;
    EXPECT_EQ(S_OK, document->GetChildOptionNodeIfExists(feature.Get(), W("psk:"), W("A"), option.Put()));
    IXMLDOMNode* untouched = option.Get();
    EXPECT_EQ(S_FALSE, document->GetChildOptionNodeIfExists(feature.Get(), W("psk:"), W("Inner"), &untouched));
    EXPECT_EQ(option.Get(), untouched);

    CComBSTR value; // at any depth
    EXPECT_EQ(S_OK, document->GetChildScoredPropertyValueAsString(option.Get(), W("Deep"), value.Put()));
    EXPECT_EQ("600", Utf8(value.View()));
    for (const WCHAR* name : {W("Empty"), W("Missing")})
        EXPECT_EQ(E_FAIL,
                  CodeOf([&] { document->GetChildScoredPropertyValueAsString(option.Get(), name, value.Put()); }));
}

} // namespace
