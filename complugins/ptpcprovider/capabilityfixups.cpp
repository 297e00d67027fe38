// Corrections of what the service makes from the core driver's data: a second orientation feature, resolutions that the
// device does not offer or that have generic names, duplex texts that are not the product's.
#include <algorithm>
#include <vector>

#include "complugins/mscacheddevicecapabilities.h"
#include "complugins/ptpcprovider/domhelpers.h"
#include "complugins/ptpcprovider/printcapabilitiesxmldocument.h"
#include "complugins/ptpcprovider/productstrings.h"
#include "complugins/ptpcprovider/tavlenptprovider.h"

namespace
{

constexpr WCHAR kSourceFile[] = W("complugins\\ptpcprovider\\capabilityfixups");

// The place that a failing walk of the resolution's options names, with the line that the system reports for it.
constexpr ThrowSite kResolutions{W("TavlenPtProvider::FixUpResolutionCapabilities"), kSourceFile, 1983};

constexpr WCHAR kOrientation[] = W("PageOrientation");
constexpr WCHAR kResolution[] = W("PageResolution");
constexpr WCHAR kDuplex[] = W("JobDuplexAllDocumentsContiguously");

struct DuplexOption
{
    const WCHAR* name;
    std::int32_t text; // of the product
};

constexpr DuplexOption kDuplexOptions[] = {
    {W("OneSided"), ProductStrings::kOneSided},
    {W("TwoSidedLongEdge"), ProductStrings::kTwoSidedLongEdge},
    {W("TwoSidedShortEdge"), ProductStrings::kTwoSidedShortEdge},
};

ULONG DotsPerInch(const PrintCapabilitiesXmlDocument& capabilities, IXMLDOMNode* option, const WCHAR* property)
{
    CComBSTR text;
    capabilities.GetChildScoredPropertyValueAsString(option, property, text.Put());
    return static_cast<ULONG>(_wtoi(CXString(text).c_str()));
}

// The option has the device's name for its resolution, or goes where the device has no such resolution. An option
// without a display name keeps that; the walk goes on.
void FixUpResolution(const PrintCapabilitiesXmlDocument& capabilities, IXMLDOMNode* option,
                     const std::vector<ResolutionInfoRecord>& resolutions)
{
    const ULONG x = DotsPerInch(capabilities, option, W("ResolutionX"));
    const ULONG y = DotsPerInch(capabilities, option, W("ResolutionY"));
    const auto found =
        std::find_if(resolutions.begin(), resolutions.end(),
                     [x, y](const ResolutionInfoRecord& record) { return record.x == x && record.y == y; });
    if (found != resolutions.end())
        capabilities.ReplaceDisplayNamePropertyValue(option, TextForDocument(CXString(found->name)));
    else
        capabilities.DeleteNode(option);
}

} // namespace

HRESULT TavlenPtProvider::DeleteRedundantPageOrientationFromPpdGpdNamespace(PrintSchemaXmlDocument& document)
{
    try
    {
        return document.DeleteFeatureNodeIfADuplicateExists(document.GetNsPrefix(PrintSchema::Keywords), kOrientation);
    }
    catch (const TavlenComException& failure)
    {
        return failure.GetHresult();
    }
}

// Unlike the other two it lets failures out: capabilities without the feature fail the whole completion when the device
// reports any resolution, deliberately.
HRESULT TavlenPtProvider::FixUpResolutionCapabilities(PrintCapabilitiesXmlDocument& capabilities,
                                                      MsCachedDeviceCapabilities& cached)
{
    std::vector<ResolutionInfoRecord> resolutions;
    cached.GetResolutions(resolutions);
    if (resolutions.empty())
        return S_OK;
    ComPtr<IXMLDOMNode> feature;
    capabilities.GetFeatureNode(capabilities.GetNsPrefix(PrintSchema::Keywords), kResolution, feature.Put());
    capabilities.ReplaceDisplayNamePropertyValue(feature.Get(),
                                                 GetProductStringLoader().LoadStringW(ProductStrings::kResolution));

    ComPtr<IXMLDOMNodeList> options;
    capabilities.GetChildOptionNodes(feature.Get(), options.Put());
    try
    {
        for (const ComPtr<IXMLDOMNode>& option : NodesOf(options.Get(), kResolutions))
            FixUpResolution(capabilities, option.Get(), resolutions);
    }
    catch (const TavlenComException& failure)
    {
        ThrowComException(failure.GetHresult(), kResolutions); // what fails in the walk is named by its place
    }
    return S_OK;
}

// Capabilities without the feature stay as they are. The last replacement's result is the answer, S_OK without any.
HRESULT TavlenPtProvider::FixUpDuplexCapabilities(PrintCapabilitiesXmlDocument& capabilities)
{
    try
    {
        const CXString keywordsPrefix = capabilities.GetNsPrefix(PrintSchema::Keywords);
        ComPtr<IXMLDOMNode> feature;
        capabilities.GetFeatureNode(keywordsPrefix, kDuplex, feature.Put());
        HRESULT result = capabilities.ReplaceDisplayNamePropertyValue(
            feature.Get(), GetProductStringLoader().LoadStringW(ProductStrings::kDuplex));
        for (const DuplexOption& option : kDuplexOptions)
            if (const CXString text = GetProductStringLoader().LoadStringW(option.text); !text.IsEmpty())
                result = capabilities.ReplaceOptionDisplayNamePropertyValue(feature.Get(), keywordsPrefix, option.name,
                                                                            text);
        return result;
    }
    catch (const TavlenComException& failure)
    {
        return failure.GetHresult();
    }
}
