// The colour translator: the colour management method and the rendering intent, between dmICMMethod and dmICMIntent, or
// features 15 and 16 of the data model while that is in use, and the features "PageColorManagement" and
// "PageICMRenderingIntent". It acts for colour devices of one controller family.
#include <tvcore/featurereferences.h>
#include <tvcore/featureservices.h>

#include <algorithm>
#include <initializer_list>
#include <iterator>

#include "complugins/msdevmodevaluemapper.h"
#include "complugins/ptpcprovider/featuretranslation.h"
#include "complugins/ptpcprovider/printcapabilitiesxmldocument.h"
#include "complugins/ptpcprovider/productstrings.h"
#include "complugins/ptpcprovider/tavlenptprovider.h"

namespace
{

constexpr WCHAR kMethodFeature[] = W("PageColorManagement");
constexpr WCHAR kIntentFeature[] = W("PageICMRenderingIntent");

// From this Windows version on there is more than the device's own colour management.
constexpr ULONG kColorManagementMajorVersion = 6;

// Public keywords, and the numbers of the devmode.
struct ColorOption
{
    const WCHAR* name;
    DWORD number;
    std::int32_t displayName; // product string
};

constexpr ColorOption kMethodNone = {W("None"), DMICMMETHOD_NONE, ProductStrings::kColorOff};
constexpr ColorOption kMethodSystem = {W("System"), DMICMMETHOD_SYSTEM, ProductStrings::kColorBySystem};
constexpr ColorOption kMethodDriver = {W("Driver"), DMICMMETHOD_DRIVER, 0}; // taken from tickets, never offered
constexpr ColorOption kMethodDevice = {W("Device"), DMICMMETHOD_DEVICE, ProductStrings::kColorByDevice};
constexpr ColorOption kMethods[] = {kMethodNone, kMethodSystem, kMethodDriver, kMethodDevice};

// In the order in which they are offered.
constexpr ColorOption kIntents[] = {
    {W("AbsoluteColorimetric"), DMICM_ABS_COLORIMETRIC, ProductStrings::kAbsoluteColorimetric},
    {W("RelativeColorimetric"), DMICM_COLORIMETRIC, ProductStrings::kRelativeColorimetric},
    {W("Photographs"), DMICM_CONTRAST, ProductStrings::kPhotographs},
    {W("BusinessGraphics"), DMICM_SATURATE, ProductStrings::kBusinessGraphics},
};
constexpr WCHAR kOtherIntent[] = W("Photographs");

DWORD MethodOf(const CXString& name)
{
    const auto* const method = std::find_if(std::begin(kMethods), std::end(kMethods),
                                            [&name](const ColorOption& each) { return name == each.name; });
    return method != std::end(kMethods) ? method->number : kMethodDevice.number;
}

template <std::size_t Count>
const WCHAR* NameOf(const ColorOption (&options)[Count], DWORD number, const WCHAR* otherwise)
{
    const auto* const option = std::find_if(std::begin(options), std::end(options),
                                            [number](const ColorOption& each) { return number == each.number; });
    return option != std::end(options) ? option->name : otherwise;
}

void AppendColorOption(const PrintCapabilitiesXmlDocument& capabilities, IXMLDOMElement* feature,
                       const ColorOption& option, const ProductStringLoader& texts)
{
    ComPtr<IXMLDOMElement> element;
    capabilities.CreateOption(capabilities.GetNsPrefix(PrintSchema::Keywords), option.name,
                              texts.LoadStringW(option.displayName), PrintSchema::kUnconstrained, element.Put());
    capabilities.AppendChild(feature, element.Get());
}

// The devmode's number, where the data model says nothing; 0, which no option has, for a value that has no number.
DWORD NumberOf(FeatureServices* dataModel, DataModelIds::tagFeatureEnum feature, DWORD ofDevmode)
{
    if (dataModel == nullptr)
        return ofDevmode;
    const std::optional<ValueId> value = OptionFeatureRef(*dataModel, feature).GetValue();
    if (!value)
        return ofDevmode;
    return MsDevmodeValueMapper::GetMsValueFromDataModelValue(static_cast<std::uint32_t>(feature),
                                                              value->GetValueEnum())
        .value_or(0);
}

bool ChangeMethod(FeatureServices& dataModel, DWORD number)
{
    const auto value = static_cast<DataModelIds::tagValueEnum>(
        MsDevmodeValueMapper::GetDataModelValueFromMsValue(DataModelIds::Feature::MsIcmMethod, number));
    return OptionFeatureRef(dataModel, DataModelIds::Feature::MsIcmMethod).SetValue(ValueId(value));
}

} // namespace

HRESULT TavlenPtProvider::AddOrReplaceColorFeaturesCapabilities(PrintCapabilitiesXmlDocument& document)
{
    if (!HasColorFeatures())
        return S_OK;
    const bool isManaged = m_osMajorVersion >= kColorManagementMajorVersion;
    const ProductStringLoader& texts = GetProductStringLoader();

    // Published also where it has no options.
    ComPtr<IXMLDOMElement> methods;
    document.CreateFeature(kMethodFeature, texts.LoadStringW(ProductStrings::kColorManagement), methods.Put());
    if (isManaged)
        AppendColorOption(document, methods.Get(), kMethodNone, texts);
    if (IsPostScriptDriver())
        AppendColorOption(document, methods.Get(), kMethodDevice, texts);
    if (isManaged && !ImageableAreaIsEnabled())
        AppendColorOption(document, methods.Get(), kMethodSystem, texts);
    ReplaceFeature(document, kMethodFeature, methods.Get());

    if (!isManaged)
    {
        DeleteFeature(document, kIntentFeature);
        return S_OK;
    }
    ComPtr<IXMLDOMElement> intents;
    document.CreateFeature(kIntentFeature, texts.LoadStringW(ProductStrings::kRenderingIntent), intents.Put());
    for (const ColorOption& intent : kIntents)
        AppendColorOption(document, intents.Get(), intent, texts);
    ReplaceFeature(document, kIntentFeature, intents.Get());
    return S_OK;
}

// The rendering intent is not read from the ticket, deliberately: dmICMIntent stays as it was. dmFields is not touched.
HRESULT TavlenPtProvider::ConvertColorFeaturesToDevmode(PrintTicketXmlDocument& ticket, DEVMODEW* devmode,
                                                        AttributeBytesIndexedList* /*settings*/, bool* changed)
{
    if (!HasColorFeatures())
        return S_OK;
    const std::optional<TicketOption> option = ReadTicketOption(ticket, kMethodFeature);
    if (!option || option->nameSpace != OptionNamespace::Keywords)
        return S_OK;
    const bool isManaged = m_osMajorVersion >= kColorManagementMajorVersion;
    const DWORD method = isManaged ? MethodOf(option->name) : kMethodDevice.number;
    FeatureServices* const dataModel = GetLiveDataModel();
    if (dataModel == nullptr)
        devmode->dmICMMethod = method;
    else if (ChangeMethod(*dataModel, method))
        *changed = true;
    return S_OK;
}

HRESULT TavlenPtProvider::ConvertDevmodeToColorFeatures(PrintTicketXmlDocument& ticket, DEVMODEW* devmode,
                                                        XDevmode& /*wrapper*/)
{
    if (!HasColorFeatures())
        return S_OK;
    const bool isManaged = m_osMajorVersion >= kColorManagementMajorVersion;
    FeatureServices* const dataModel = GetLiveDataModel();
    const DWORD method = NumberOf(dataModel, DataModelIds::Feature::MsIcmMethod, devmode->dmICMMethod);
    const DWORD intent = NumberOf(dataModel, DataModelIds::Feature::MsIcmIntent, devmode->dmICMIntent);
    ReplaceTicketOption(ticket, kMethodFeature, true,
                        isManaged ? NameOf(kMethods, method, kMethodDevice.name) : kMethodDevice.name);
    ReplaceTicketOption(ticket, kIntentFeature, true, NameOf(kIntents, intent, kOtherIntent));
    return S_OK;
}

// The family is asked first: without product data it is none, and nothing else is asked.
bool TavlenPtProvider::HasColorFeatures()
{
    return m_controllerFamily == ProductData::ControllerFamilyColor && IsColorDevice();
}
