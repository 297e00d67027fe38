#include "capabilityfilling.h"

#include <vector>

#include <tvui/defaultdevmode.h>
#include <tvutil/datacache.h>
#include <tvutil/tavlencomexception.h>
#include <tvutil/tavlenutilities.h>

#include "complugins/capabilitycaches.h"
#include "complugins/customforms.h"
#include "complugins/fixedtext.h"
#include "complugins/papercache.h"
#include "complugins/resolutionvalues.h"
#include "dependentfiles.h"
#include "devmodemerge.h"
#include "formlist.h"

namespace
{

using Cache = MSDeviceCapabilities::Cache;

constexpr ThrowSite kSite{W("FillCapabilityCaches"), W("siblings\\tvui\\src\\capabilityfilling")};

// A machine has no custom sizes: they are a user's.
CustomForms::Walk CustomSizesFor(HKEY hive)
{
    return hive == HKEY_LOCAL_MACHINE ? CustomForms::Walk() : WalkCustomSizes();
}

ByteBuffer MakePapers(const ProductData& product, const CustomForms::Walk& customSizes)
{
    const std::vector<FormsInfoRecord> forms = MakeFormList(product, customSizes.sizes);
    return PaperCache::Write(SupportedFields(product), customSizes.crc, forms, ListPapers(forms));
}

template <class Item>
ByteBuffer MakeNumberedNames(ByteBuffer (*write)(std::span<const CapabilityCaches::NumberedName>),
                             const std::vector<Item>& items)
{
    std::vector<CapabilityCaches::NumberedName> list;
    for (const Item& item : items)
        list.push_back({item.id, item.name});
    return write(list);
}

ByteBuffer MakeMediaReady(const ProductData& product)
{
    const CXString name = LoadedPaper(product);
    return CapabilityCaches::WriteNames({&name, 1});
}

ByteBuffer MakeResolutions(const ProductData& product)
{
    std::vector<ResolutionInfoRecord> list;
    for (const PrinterModel::Resolution& resolution : product.GetResolutions())
    {
        ResolutionInfoRecord& record = list.emplace_back();
        record.x = resolution.x;
        record.y = resolution.y;
        record.valueId = ResolutionValues::ValueOf(resolution.x, resolution.y);
        SetFixedText(record.name, resolution.name.View());
    }
    return CapabilityCaches::WriteResolutions(list);
}

ByteBuffer MakeDevice(const ProductData& product)
{
    return CapabilityCaches::WriteDevice({.minWidth = product.GetMinExtent().width,
                                          .minLength = product.GetMinExtent().length,
                                          .maxWidth = product.GetMaxExtent().width,
                                          .maxLength = product.GetMaxExtent().length,
                                          .printRate = product.GetPrintRate(),
                                          .printRateUnit = PRINTRATEUNIT_PPM,
                                          .memory = static_cast<DWORD>(product.GetMemory()),
                                          .pagesPerMinute = product.GetPrintRate(),
                                          .isColor = IsColorProduct(product) ? DWORD{1} : DWORD{0},
                                          .capabilityWord = product.GetCapability()});
}

} // namespace

void FillCapabilityCaches(const Printer& printer, const ProductData& product, MSDeviceCapabilities::Context context)
{
    MSDeviceCapabilities capabilities;
    capabilities.Initialize(printer.GetPrinterHandle(), context);
    const DataCache::Lock lock(capabilities.GetHive());
    capabilities.SetCache(Cache::Papers, MakePapers(product, CustomSizesFor(capabilities.GetHive())));
    capabilities.SetCache(Cache::Bins, MakeNumberedNames(CapabilityCaches::WriteBins, product.GetBins()));
    capabilities.SetCache(Cache::Resolutions, MakeResolutions(product));
    capabilities.SetCache(Cache::DependentFiles, CapabilityCaches::WriteNames(DependentFileNames(printer)));
    capabilities.SetCache(Cache::MediaReady, MakeMediaReady(product));
    capabilities.SetCache(Cache::Staple, CapabilityCaches::WriteStaple(0)); // a matter of the job ticket
    capabilities.SetCache(Cache::MediaTypes,
                          MakeNumberedNames(CapabilityCaches::WriteMediaTypes, product.GetMediaTypes()));
    capabilities.SetCache(Cache::Device, MakeDevice(product));
    if (const HRESULT saved = capabilities.Save(lock); FAILED(saved))
        ThrowComException(saved, kSite, W("the caches of the device capabilities cannot be saved"));
}

void RemoveCapabilityCaches(const CXString& printerName)
{
    const HKEY hive = TavlenUtilities::GetRegistryHiveByContext();
    const DataCache::Lock lock(hive);
    DataCache::RemovePrinter(printerName, hive);
}
