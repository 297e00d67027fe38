// The model state that is kept between calls, and the product objects that the translators ask for.
#include <tvcore/productinformation.h>
#include <tvutil/attributebytesindexedlist.h>
#include <tvutil/persistentattributes.h>
#include <tvutil/tavlencomexception.h>
#include <tvutil/textresourceloader.h>

#include <cstdint>

#include "complugins/oemdevmode.h"
#include "complugins/ptpcprovider/tavlenptprovider.h"
#include "complugins/xdevmode.h"

namespace
{

constexpr WCHAR kSourceFile[] = W("complugins\\ptpcprovider\\tavlenptprovider");

// The lines that the system reports for these.
constexpr int kProductStringLoaderLine = 1621;
constexpr int kProductDataLine = 1641;

constexpr auto kDocument = PersistentAttributes::GetDataModelDocPropNameSpaceId();
constexpr auto kCapabilities = PersistentAttributes::GetMsDeviceCapabilitiesNameSpaceId();

} // namespace

// Light mode: no data model is built, so there are no feature services, only the wrapper of the caller's devmode. It is
// replaced, never edited in place.
FeatureServices* TavlenPtProvider::InitializeOrReInitializeDataModel(DEVMODEW* devmode)
{
    if (devmode != nullptr)
        m_xdevmode = std::make_unique<XDevmode>(devmode);
    return nullptr;
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
    const ByteBuffer* const state = devmode.GetPropertyBagEntry(OemDevmodeFormat::kPersistentAttributesKey);
    if (state == nullptr)
        return nullptr;
    auto settings = std::make_unique<AttributeBytesIndexedList>();
    settings->ImportFromRawList(PersistentAttributes(*state).GetAttributeBytesListForNameSpace(kDocument));
    return settings;
}

void TavlenPtProvider::CommitChangesToDevmodeFromDataModelDataAttributeBytesIndexedList(
    XDevmode& devmode, const AttributeBytesIndexedList* settings)
{
    const ByteBuffer* const stored = devmode.GetPropertyBagEntry(OemDevmodeFormat::kPersistentAttributesKey);
    if (stored == nullptr || settings == nullptr)
        return;
    PersistentAttributes attributes(*stored);
    AttributeBytesNameSpaces nameSpaces;
    nameSpaces.SetAttributeBytesList(kDocument, AttributeBytesRawList(*settings));
    nameSpaces.SetAttributeBytesList(kCapabilities, attributes.GetAttributeBytesListForNameSpace(kCapabilities));
    if (!attributes.SetAttributeBytesNameSpaces(nameSpaces))
        return; // a state of a later format, which is not ours to rewrite

    // The part has no room for a longer state: the change is dropped without a word, deliberately.
    const ByteBuffer& state = attributes.GetPersistentAttributesState();
    if (state.getDword() > OemDevmodeFormat::kMaxPersistentAttributesSize)
        return;
    devmode.SetPropertyBagEntry(OemDevmodeFormat::kPersistentAttributesKey, state);
    devmode.CommitToDevmode();
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
