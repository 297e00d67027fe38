// A feature's options and their properties, as the corrections of capabilities read them.
#include "tests/common/failurecode.h"
#include "tests/ptpcprovider/wrappeddocument.h"

namespace
{

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
