// The output quality translator: one fixed option for one controller family, no feature for any other. Nothing is read
// back.
#include "complugins/ptpcprovider/featuretranslation.h"
#include "complugins/ptpcprovider/printcapabilitiesxmldocument.h"
#include "complugins/ptpcprovider/productstrings.h"
#include "complugins/ptpcprovider/tavlenptprovider.h"

namespace
{

constexpr WCHAR kFeature[] = W("PageOutputQuality");
constexpr WCHAR kAutomatic[] = W("Automatic");

} // namespace

HRESULT TavlenPtProvider::AddOrReplacePageOutputQualityCapabilities(PrintCapabilitiesXmlDocument& document)
{
    if (!HasPageOutputQuality())
    {
        DeleteFeature(document, kFeature);
        return S_OK;
    }
    const ProductStringLoader& texts = GetProductStringLoader();
    ComPtr<IXMLDOMElement> feature;
    document.CreatePickOneFeature(kFeature, texts.LoadStringW(ProductStrings::kOutputQuality), feature.Put());
    ComPtr<IXMLDOMElement> option;
    document.CreateOption(document.GetNsPrefix(PrintSchema::Keywords), kAutomatic,
                          texts.LoadStringW(ProductStrings::kAutomatic), PrintSchema::kUnconstrained, option.Put());
    document.AppendChild(feature.Get(), option.Get());
    ReplaceFeature(document, kFeature, feature.Get());
    return S_OK;
}

HRESULT TavlenPtProvider::ConvertDevmodeToPageOutputQuality(PrintTicketXmlDocument& ticket, XDevmode& /*devmode*/)
{
    if (HasPageOutputQuality())
        ReplaceTicketOption(ticket, kFeature, true, kAutomatic);
    else
        DeleteFeature(ticket, kFeature);
    return S_OK;
}

// Does nothing, deliberately: the device chooses the quality itself.
HRESULT TavlenPtProvider::ConvertPageOutputQualityToDevmode(PrintTicketXmlDocument& /*ticket*/,
                                                            AttributeBytesIndexedList* /*settings*/, bool* /*changed*/)
{
    return S_OK;
}

// By the family that the binding has read: without product data there is none, and no quality.
bool TavlenPtProvider::HasPageOutputQuality() const noexcept
{
    return m_controllerFamily == ProductData::ControllerFamilyXps;
}

// No quality is mapped to an option of its own, on purpose: the one option is fixed.
std::vector<TavlenPtProvider::PageOutputQualityDataEntry>
TavlenPtProvider::GetPageOutputQualityCapabilitiesAndPrintSchemaMappings()
{
    return {};
}
