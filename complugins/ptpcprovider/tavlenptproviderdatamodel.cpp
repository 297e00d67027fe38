// The model state that is kept between calls, and the product objects that the translators ask for.
#include <tvutil/tavlencomexception.h>

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
    ThrowComException(E_FAIL, {W("TavlenPtProvider::GetProductData"), kSourceFile, kProductDataLine});
}

ProductStringLoader& TavlenPtProvider::GetProductStringLoader()
{
    ThrowComException(E_FAIL, {W("TavlenPtProvider::GetProductStringLoader"), kSourceFile, kProductStringLoaderLine});
}

PageSizeDictionary& TavlenPtProvider::GetPageSizeDictionary()
{
    ThrowComException(E_FAIL, {W("TavlenPtProvider::GetPageSizeDictionary"), kSourceFile});
}

bool TavlenPtProvider::IsColorDevice()
{
    GetProductData();
    return false;
}
