#include <tvui/defaultdevmode.h>

#include <algorithm>
#include <cstring>
#include <iterator>

#include <tvcore/productinformation.h>
#include <tvutil/bytewriter.h>

#include "complugins/fixedtext.h"
#include "complugins/oemdevmode.h"
#include "driversettings.h"
#include "formlist.h"

namespace
{

namespace Format = OemDevmodeFormat;

constexpr std::uint32_t kOemVersion = 1;

void WriteCorePart(const PrinterModel::CoreDriver& driver, std::span<std::byte> part)
{
    ByteWriter writer(part);
    writer.Zeros(driver.kind == PrinterModel::CoreDriverKind::PostScript ? Format::kPostScriptSizeOffset
                                                                         : Format::kUnidrvSizeOffset);
    writer.U16(driver.privateSize);
}

void WriteEmptyOemPart(std::span<std::byte> part)
{
    ByteWriter writer(part);
    writer.U32(Format::kSize);
    writer.U32(Format::kSignature);
    writer.U32(kOemVersion);
}

} // namespace

std::size_t DefaultDevmodeSize(const ProductData& product)
{
    return sizeof(DEVMODEW) + product.GetCoreDriver().privateSize + Format::kSize;
}

void SetDevmodePaper(DEVMODEW& devmode, const FormsInfoRecord& form) noexcept
{
    devmode.dmPaperSize = static_cast<short>(form.paperId);
    devmode.dmPaperWidth = static_cast<short>(form.width);
    devmode.dmPaperLength = static_cast<short>(form.length);
    SetFixedText(devmode.dmFormName, form.GetName());
    // The paper id says it all: width, length and name stand there for readers, without their bits.
    devmode.dmFields |= DM_PAPERSIZE;
    devmode.dmFields &= ~DWORD{DM_PAPERWIDTH | DM_PAPERLENGTH | DM_FORMNAME};
}

bool IsColorProduct(const ProductData& product)
{
    return ProductInformation::SaysColor(product.GetInfo(ProductInformation::kColor));
}

DEVMODEW MakeDefaultPublicDevmode(const ProductData& product, const CXString& printerName)
{
    const bool isPostScript = product.GetCoreDriver().kind == PrinterModel::CoreDriverKind::PostScript;
    DEVMODEW devmode{};
    SetFixedText(devmode.dmDeviceName, printerName.View());
    devmode.dmSpecVersion = DM_SPECVERSION;
    devmode.dmDriverVersion = kDriverDevmodeVersion;
    devmode.dmSize = sizeof devmode;
    devmode.dmDriverExtra = static_cast<WORD>(DefaultDevmodeSize(product) - sizeof devmode);
    devmode.dmFields = DM_ORIENTATION | DM_SCALE | DM_COPIES | DM_DEFAULTSOURCE | DM_PRINTQUALITY | DM_YRESOLUTION |
                       DM_COLOR | DM_DUPLEX | DM_TTOPTION | DM_COLLATE | DM_ICMMETHOD | DM_ICMINTENT | DM_MEDIATYPE;
    devmode.dmOrientation = DMORIENT_PORTRAIT;
    devmode.dmScale = 100;
    devmode.dmCopies = 1;
    devmode.dmDefaultSource = static_cast<short>(product.GetBins().front().id);
    devmode.dmPrintQuality = static_cast<short>(product.GetResolutions().front().x);
    devmode.dmYResolution = static_cast<short>(product.GetResolutions().front().y);
    devmode.dmColor = IsColorProduct(product) ? DMCOLOR_COLOR : DMCOLOR_MONOCHROME;
    devmode.dmDuplex = DMDUP_SIMPLEX;
    devmode.dmTTOption = isPostScript ? DMTT_SUBDEV : DMTT_DOWNLOAD;
    devmode.dmCollate = DMCOLLATE_TRUE;
    devmode.dmICMMethod = DMICMMETHOD_NONE;
    devmode.dmICMIntent = DMICM_CONTRAST;
    devmode.dmMediaType = static_cast<DWORD>(product.GetMediaTypes().front().id);
    SetDevmodePaper(devmode, MakeFormList(product).front());
    return devmode;
}

ByteBuffer MakeDefaultDevmode(const ProductData& product, const CXString& printerName)
{
    const DEVMODEW publicPart = MakeDefaultPublicDevmode(product, printerName);
    ByteBuffer devmode(DefaultDevmodeSize(product));
    std::memcpy(devmode.data(), &publicPart, sizeof publicPart);
    const std::span<std::byte> driverExtra = devmode.bytes().subspan(sizeof publicPart);
    const std::size_t coreSize = product.GetCoreDriver().privateSize;
    WriteCorePart(product.GetCoreDriver(), driverExtra.first(coreSize));
    WriteEmptyOemPart(driverExtra.subspan(coreSize));
    CompleteDriverSettings(product, devmode);
    return devmode;
}
