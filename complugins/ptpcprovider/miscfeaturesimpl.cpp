// The copies translator: the job's copy count between dmCopies, or integer feature 5 of the data model while that is in
// use, and the parameter "JobCopiesAllDocuments".
#include <windows.h>

#include <winspool.h>

#include <tvcore/featurereferences.h>
#include <tvcore/featureservices.h>

#include "complugins/mscacheddevicecapabilities.h"
#include "complugins/ptpcprovider/deletenamed.h"
#include "complugins/ptpcprovider/domhelpers.h"
#include "complugins/ptpcprovider/printcapabilitiesxmldocument.h"
#include "complugins/ptpcprovider/printticketxmldocument.h"
#include "complugins/ptpcprovider/productstrings.h"
#include "complugins/ptpcprovider/tavlenptprovider.h"

namespace
{

constexpr WCHAR kCopiesParameter[] = W("JobCopiesAllDocuments");

// A driver that does not say how many prints one.
LONG MaximumCopies(const CXString& printerName, const DEVMODEW* devmode)
{
    const int copies = DeviceCapabilitiesW(printerName.c_str(), nullptr, DC_COPIES, nullptr, devmode);
    return copies > 0 ? copies : 1;
}

} // namespace

HRESULT TavlenPtProvider::AddOrReplaceMiscFeaturesCapabilities(PrintCapabilitiesXmlDocument& document,
                                                               MsCachedDeviceCapabilities& capabilities)
{
    const CXString keywordsPrefix = document.GetNsPrefix(PrintSchema::Keywords);
    ComPtr<IXMLDOMElement> definition;
    document.CreateIntegerParameterDef(
        keywordsPrefix, kCopiesParameter,
        {.mandatory = W("Unconditional"),
         .displayName = GetProductStringLoader().LoadStringW(ProductStrings::kCopies),
         .defaultValue = 1,
         .minimum = 1,
         .maximum = MaximumCopies(m_printer.GetPrinterName(), capabilities.GetCachedDevmode()),
         .multiple = 1,
         .unitType = W("copies")},
        definition.Put());
    DeleteNamed(document, PrintSchema::kParameterDef, keywordsPrefix + kCopiesParameter);
    document.AppendChildToRootNode(definition.Get());
    return S_OK;
}

// In the devmode, dmFields is not touched and no change is reported, on purpose: the count is not part of the private
// settings.
HRESULT TavlenPtProvider::ConvertMiscFeaturesToDevmode(PrintTicketXmlDocument& ticket, DEVMODEW* devmode,
                                                       AttributeBytesIndexedList* /*settings*/, bool* changed)
{
    PrintTicketQueryBuilder builder(ticket.GetNsPrefix(PrintSchema::Framework));
    builder.AddParameterInit(ticket.GetNsPrefix(PrintSchema::Keywords), kCopiesParameter);
    CComBSTR text;
    if (ticket.GetNodeValue(QueryOf(builder), text.Put()) == S_FALSE || text.IsEmpty())
        return S_OK;
    const std::int32_t copies = _wtoi(CXString(text).c_str());
    FeatureServices* const dataModel = GetLiveDataModel();
    if (dataModel == nullptr)
        devmode->dmCopies = static_cast<short>(copies); // cut to 16 bits
    else if (IntegerFeatureRef(*dataModel, DataModelIds::Feature::MsCopies).SetValue(copies))
        *changed = true;
    return S_OK;
}

HRESULT TavlenPtProvider::ConvertDevmodeToMiscFeatures(PrintTicketXmlDocument& ticket, DEVMODEW* devmode,
                                                       XDevmode& /*wrapper*/)
{
    const CXString keywordsPrefix = ticket.GetNsPrefix(PrintSchema::Keywords);
    std::int32_t copies = devmode->dmCopies;
    if (FeatureServices* const dataModel = GetLiveDataModel())
        copies = IntegerFeatureRef(*dataModel, DataModelIds::Feature::MsCopies).GetValue().value_or(copies);
    DeleteNamed(ticket, PrintSchema::kParameterInit, keywordsPrefix + kCopiesParameter);
    ticket.AppendIntegerParameterInit(keywordsPrefix, kCopiesParameter, static_cast<ULONG>(copies));
    return S_OK;
}
