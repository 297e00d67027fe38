// The model state that is kept between calls, and the product objects that the translators ask for.
#include <tvcore/productinformation.h>
#include <tvutil/tavlencomexception.h>
#include <tvutil/textresourceloader.h>

#include <cstdint>

#include "complugins/ptpcprovider/tavlenptprovider.h"

namespace
{

constexpr WCHAR kSourceFile[] = W("complugins\\ptpcprovider\\tavlenptprovider");

// The lines that the system reports for these.
constexpr int kProductStringLoaderLine = 1621;
constexpr int kProductDataLine = 1641;

} // namespace

// Light mode: no data model is built, so there are no feature services.
FeatureServices* TavlenPtProvider::InitializeOrReInitializeDataModel(DEVMODEW* /*devmode*/)
{
    return m_featureServices;
}

FeatureServices* TavlenPtProvider::GetFeatureServicesPtr()
{
    return m_featureServices;
}

XDevmode& TavlenPtProvider::GetXDevmodeRef()
{
    ThrowComException(E_FAIL, {W("TavlenPtProvider::GetXDevmodeRef"), kSourceFile});
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
