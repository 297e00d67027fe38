// The model state that is kept between calls, and the product objects that the translators ask for.
#include <tvcore/datamodelmanager.h>
#include <tvcore/productinformation.h>
#include <tvutil/attributebytesindexedlist.h>
#include <tvutil/executioncontext.h>
#include <tvutil/tavlencomexception.h>
#include <tvutil/textresourceloader.h>

#include <algorithm>
#include <cstring>
#include <utility>

#include "complugins/documentsettings.h"
#include "complugins/ptpcprovider/tavlenptprovider.h"
#include "complugins/xdevmode.h"

namespace
{

constexpr WCHAR kSourceFile[] = W("complugins\\ptpcprovider\\tavlenptprovider");
constexpr WCHAR kInitialize[] = W("TavlenPtProvider::InitializeOrReInitializeDataModel");

// The lines that the system reports for these.
constexpr ThrowSite kSmallDevmode{kInitialize, kSourceFile, 1433};
constexpr ThrowSite kNoProductData{kInitialize, kSourceFile, 1443};
constexpr ThrowSite kBuild{kInitialize, kSourceFile, 1508};
constexpr ThrowSite kReInitialization{kInitialize, kSourceFile, 1534};
constexpr int kProductStringLoaderLine = 1621;
constexpr int kProductDataLine = 1641;

constexpr LONG kBuildContext = 31619;
constexpr LONG kReInitializationContext = 31620;

constexpr WORD kSmallestDevmode = 220; // the whole public part

std::size_t SizeOf(const DEVMODEW* devmode)
{
    return devmode == nullptr || devmode->dmSize == 0 ? 0 : std::size_t{devmode->dmSize} + devmode->dmDriverExtra;
}

} // namespace

FeatureServices* TavlenPtProvider::InitializeOrReInitializeDataModel(DEVMODEW* devmode)
{
    if (m_dataModelInUse)
        return BringDataModelUpToDate(devmode);
    // Light mode: no data model is built, so there are no feature services, only the wrapper of the caller's devmode.
    // It is replaced, never edited in place.
    if (devmode != nullptr)
        m_xdevmode = std::make_unique<XDevmode>(devmode);
    return nullptr;
}

// A failure on the way leaves the saved devmode as the new one: the next call with the same bytes sees no change,
// deliberately.
FeatureServices* TavlenPtProvider::BringDataModelUpToDate(DEVMODEW* devmode)
{
    if (devmode != nullptr && devmode->dmSize < kSmallestDevmode)
        ThrowComException(E_INVALIDARG, kSmallDevmode);
    if (!m_workflow.IsLoaded())
        ThrowComException(E_FAIL, kNoProductData);
    const bool isChanged = UpdateSavedDevmode(devmode);
    if (m_dataModelManager)
        m_featureServices = m_dataModelManager->GetFeatureServices();
    if (m_featureServices == nullptr)
        BuildDataModel();
    else if (isChanged)
        ReInitializeDataModel();
    else
        WrapWorkingDevmode(m_workingDevmode);
    return m_featureServices;
}

// Whether it is another one now.
bool TavlenPtProvider::UpdateSavedDevmode(DEVMODEW* devmode)
{
    if (devmode == nullptr)
    {
        if (!m_savedDevmode.empty())
            return false;
        m_savedDevmode = m_printer.GetUserDefaultDevmode();
        return true;
    }
    if (SizeOf(devmode) == m_savedDevmode.size() &&
        std::memcmp(devmode, m_savedDevmode.data(), m_savedDevmode.size()) == 0)
        return false;
    UpdateSavedCopyOfDevmodeRepresentingCurrentDataModel(devmode);
    return true;
}

void TavlenPtProvider::UpdateSavedCopyOfDevmodeRepresentingCurrentDataModel(DEVMODEW* devmode)
{
    m_savedDevmode.setWithLpbyte(reinterpret_cast<const BYTE*>(devmode), SizeOf(devmode));
}

// The buffer becomes the working devmode. A wrapper is of one call: what it points to may have moved since. Nothing
// that can fail stands between the old one's end and the new one's place.
void TavlenPtProvider::WrapWorkingDevmode(ByteBuffer& working)
{
    auto wrapper = std::make_unique<XDevmode>(reinterpret_cast<DEVMODEW*>(working.data()));
    if (m_dataModelManager)
        m_dataModelManager->SetXDevmode(*wrapper);
    if (&working != &m_workingDevmode)
        m_workingDevmode = std::move(working); // its bytes stay where they are
    m_xdevmode = std::move(wrapper);
}

void TavlenPtProvider::BuildDataModel()
{
    const ExecutionContextLifetime context(kBuild, kBuildContext);
    ByteBuffer working = m_savedDevmode;
    WrapWorkingDevmode(working);
    m_dataModelManager = std::make_unique<DataModelManager>(m_printerHandle, GetProductData(), *m_xdevmode,
                                                            DataModelUse::kPrintTicketModel, m_printCoreHelper.Get(),
                                                            &GetMSDeviceCapabilities());
    m_workflow.SetDataSourceProviderPtr(this, m_printerHandle, DataModelUse::kPrintTicketSettings);
    m_featureServices = m_dataModelManager->GetFeatureServices();
}

// The order is part of the design. What the workflow module brings in out of the devmode is forgotten with the former
// settings, and comes in again behind that.
void TavlenPtProvider::ReInitializeDataModel()
{
    const ExecutionContextLifetime context(kReInitialization, kReInitializationContext);
    ByteBuffer working = m_savedDevmode;
    WrapWorkingDevmode(working);
    m_dataModelManager->DisconnectFeatureServices();
    m_workflow.ReInitializeAssociatedXDevmodeObj();
    m_featureServices->ForgetSettings();
    if (m_xdevmode->HasOemDevmode())
        if (const auto settings = CreateDataModelDataAttributeBytesIndexedList(*m_xdevmode))
            m_featureServices
                ->GetTranslator(TranslatorIds::kSettings, TranslatorIds::kAttributeBytes, TranslatorIds::kDocument)
                .ImportSettings(*settings);
    m_dataModelManager->ConnectFeatureServices(m_featureServices);
    m_featureServices->PopulateFromSource(DataModelUse::kPrintTicketSettings);
    m_featureServices->CompleteFromDefaults();
    m_featureServices->KeepAsUnchanged();
}

void TavlenPtProvider::CommitDataModelToDevmode(DEVMODEW* devmode)
{
    m_workflow.UpdatePublicAndPrivateDevmodeWithDataModelData();
    const std::size_t size = std::min(SizeOf(devmode), m_workingDevmode.size()); // the same, unless sizes were edited
    std::memcpy(reinterpret_cast<BYTE*>(devmode), m_workingDevmode.data(), size);
    UpdateSavedCopyOfDevmodeRepresentingCurrentDataModel(devmode);
}

FeatureServices* TavlenPtProvider::GetFeatureServicesPtr()
{
    return m_featureServices;
}

FeatureServices* TavlenPtProvider::GetLiveDataModel() const noexcept
{
    return m_dataModelInUse ? m_featureServices : nullptr;
}

XDevmode& TavlenPtProvider::GetXDevmodeRef()
{
    if (!m_xdevmode)
        ThrowComException(E_FAIL, {W("TavlenPtProvider::GetXDevmodeRef"), kSourceFile});
    return *m_xdevmode;
}

std::unique_ptr<AttributeBytesIndexedList>
TavlenPtProvider::CreateDataModelDataAttributeBytesIndexedList(XDevmode& devmode)
{
    return ReadDocumentSettings(devmode);
}

void TavlenPtProvider::CommitChangesToDevmodeFromDataModelDataAttributeBytesIndexedList(
    XDevmode& devmode, const AttributeBytesIndexedList* settings)
{
    if (settings != nullptr)
        CommitDocumentSettings(devmode, *settings);
}

// Without a workflow module there is no product data; every use of it fails the operation that asks.
ProductData& TavlenPtProvider::GetProductData()
{
    if (!m_workflow.IsLoaded())
        ThrowComException(E_FAIL, {W("TavlenPtProvider::GetProductData"), kSourceFile, kProductDataLine});
    return m_workflow.GetProductDataObj();
}

// A new loader at every call, on purpose: a reference from an earlier call is dead after the next one. It loads the
// texts of the product data that is kept, not of the printer's name: the printer may have another name by now, or be
// another one, whose own texts would not fit the product.
ProductStringLoader& TavlenPtProvider::GetProductStringLoader()
{
    if (!m_workflow.IsLoaded())
        ThrowComException(E_FAIL,
                          {W("TavlenPtProvider::GetProductStringLoader"), kSourceFile, kProductStringLoaderLine});
    m_productStringLoader = std::make_unique<ProductStringLoader>(m_controllerFamily);
    TextResourceLoader::Initialize(m_printerHandle, false); // a printer that has gone fails here
    m_workflow.GetProductDataObj().PutTextsInForce();
    return *m_productStringLoader;
}

PageSizeDictionary& TavlenPtProvider::GetPageSizeDictionary()
{
    if (!m_pageSizeDictionary)
        m_pageSizeDictionary = std::make_unique<PageSizeDictionary>();
    return *m_pageSizeDictionary;
}

bool TavlenPtProvider::IsColorDevice()
{
    return ProductInformation::SaysColor(GetProductData().GetInfo(ProductInformation::kColor));
}
