#include "devmodemerge.h"

#include <algorithm>
#include <cstring>
#include <iterator>
#include <span>
#include <vector>

#include <tvui/defaultdevmode.h>
#include <tvutil/bytereader.h>

#include "complugins/fixedtext.h"
#include "complugins/oemdevmodecontent.h"
#include "complugins/oemdevmodelocation.h"
#include "driversettings.h"
#include "formlist.h"

namespace
{

constexpr short kLargestScale = 1000; // percent

template <auto Member, auto Least, auto Most>
void MergeRange(const ProductData&, const DEVMODEW& input, DEVMODEW& devmode)
{
    if (input.*Member >= Least && input.*Member <= Most)
        devmode.*Member = input.*Member;
}

template <class List, class Matches>
auto FindItem(const List& list, Matches matches)
{
    const auto found = std::find_if(list.begin(), list.end(), matches);
    return found != list.end() ? &*found : nullptr;
}

// More copies than the printer makes are as many as it makes.
void MergeCopies(const ProductData& product, const DEVMODEW& input, DEVMODEW& devmode)
{
    if (input.dmCopies >= 1)
        devmode.dmCopies = std::min(input.dmCopies, static_cast<short>(product.GetMaxCopies()));
}

void MergeBin(const ProductData& product, const DEVMODEW& input, DEVMODEW& devmode)
{
    const auto id = static_cast<WORD>(input.dmDefaultSource);
    if (FindItem(product.GetBins(), [id](const PrinterModel::Bin& bin) { return bin.id == id; }) != nullptr)
        devmode.dmDefaultSource = input.dmDefaultSource;
}

// Without a vertical resolution the horizontal one stands for both.
void MergeResolution(const ProductData& product, const DEVMODEW& input, DEVMODEW& devmode)
{
    const short y = (input.dmFields & DM_YRESOLUTION) != 0 ? input.dmYResolution : input.dmPrintQuality;
    const auto* const known = FindItem(product.GetResolutions(), [&input, y](const PrinterModel::Resolution& resolution)
                                       { return resolution.x == input.dmPrintQuality && resolution.y == y; });
    if (known == nullptr)
        return;
    devmode.dmPrintQuality = static_cast<short>(known->x);
    devmode.dmYResolution = static_cast<short>(known->y);
}

void MergeColor(const ProductData& product, const DEVMODEW& input, DEVMODEW& devmode)
{
    if (input.dmColor == DMCOLOR_MONOCHROME || (input.dmColor == DMCOLOR_COLOR && IsColorProduct(product)))
        devmode.dmColor = input.dmColor;
}

void MergeMediaType(const ProductData& product, const DEVMODEW& input, DEVMODEW& devmode)
{
    const auto hasThisId = [&input](const PrinterModel::MediaType& type)
    {
        return static_cast<DWORD>(type.id) == input.dmMediaType;
    };
    if (FindItem(product.GetMediaTypes(), hasThisId) != nullptr)
        devmode.dmMediaType = input.dmMediaType;
}

// ---- Paper --------------------------------------------------------------------------------------

bool FitsPrinter(const ProductData& product, short width, short length)
{
    const PrinterModel::Extent& least = product.GetMinExtent();
    const PrinterModel::Extent& most = product.GetMaxExtent();
    return width >= least.width && width <= most.width && length >= least.length && length <= most.length;
}

// The application's own width and length, on the form for custom sizes.
bool MergeCustomSize(const ProductData& product, std::span<const FormsInfoRecord> forms, const DEVMODEW& input,
                     DEVMODEW& devmode)
{
    constexpr DWORD kBoth = DM_PAPERWIDTH | DM_PAPERLENGTH;
    const bool isCustom = (input.dmFields & DM_PAPERSIZE) == 0 || input.dmPaperSize == DMPAPER_USER;
    const auto* const form = FindItem(forms, [](const FormsInfoRecord& each) { return each.paperId == DMPAPER_USER; });
    if ((input.dmFields & kBoth) != kBoth || !isCustom || form == nullptr ||
        !FitsPrinter(product, input.dmPaperWidth, input.dmPaperLength))
        return false;
    SetDevmodePaper(devmode, *form);
    devmode.dmPaperWidth = input.dmPaperWidth;
    devmode.dmPaperLength = input.dmPaperLength;
    devmode.dmFields |= kBoth;
    return true;
}

// The paper number counts before the size, the size before the name.
void MergePaper(const ProductData& product, const DEVMODEW& input, DEVMODEW& devmode)
{
    const std::vector<FormsInfoRecord> forms = MakeFormListOfUser(product);
    if (MergeCustomSize(product, forms, input, devmode))
        return;
    const FormsInfoRecord* form = nullptr;
    if ((input.dmFields & DM_PAPERSIZE) != 0)
        form = FindItem(forms, [id = static_cast<WORD>(input.dmPaperSize)](const FormsInfoRecord& each)
                        { return each.paperId == id; });
    else if ((input.dmFields & DM_FORMNAME) != 0)
        // A name of a devmode is cut where a form's is longer.
        form = FindItem(forms, [name = GetFixedText(input.dmFormName)](const FormsInfoRecord& each)
                        { return CXString(each.GetDevmodeName()).CompareNoCase(name) == 0; });
    if (form != nullptr)
        SetDevmodePaper(devmode, *form);
}

// ---- All of them --------------------------------------------------------------------------------

struct Merge
{
    DWORD flags; // any of them
    void (*merge)(const ProductData& product, const DEVMODEW& input, DEVMODEW& devmode);
};

// In the order of the structure; the paper's fields are one setting, and so are the resolution's.
constexpr Merge kMerges[] = {
    {DM_ORIENTATION, MergeRange<&DEVMODEW::dmOrientation, DMORIENT_PORTRAIT, DMORIENT_LANDSCAPE>},
    {DM_PAPERSIZE | DM_PAPERLENGTH | DM_PAPERWIDTH | DM_FORMNAME, MergePaper},
    {DM_SCALE, MergeRange<&DEVMODEW::dmScale, 1, kLargestScale>},
    {DM_COPIES, MergeCopies},
    {DM_DEFAULTSOURCE, MergeBin},
    {DM_PRINTQUALITY, MergeResolution},
    {DM_COLOR, MergeColor},
    {DM_DUPLEX, MergeRange<&DEVMODEW::dmDuplex, DMDUP_SIMPLEX, DMDUP_HORIZONTAL>},
    {DM_TTOPTION, MergeRange<&DEVMODEW::dmTTOption, DMTT_BITMAP, DMTT_SUBDEV>},
    {DM_COLLATE, MergeRange<&DEVMODEW::dmCollate, DMCOLLATE_FALSE, DMCOLLATE_TRUE>},
    {DM_ICMMETHOD, MergeRange<&DEVMODEW::dmICMMethod, DMICMMETHOD_NONE, DMICMMETHOD_DEVICE>},
    {DM_ICMINTENT, MergeRange<&DEVMODEW::dmICMIntent, DMICM_SATURATE, DMICM_ABS_COLORIMETRIC>},
    {DM_MEDIATYPE, MergeMediaType},
};

struct FieldEnd
{
    DWORD flag;
    std::size_t end;
};

// Where the fields end that an older, shorter devmode may lack, whatever it claims.
constexpr FieldEnd kFieldEnds[] = {
    {DM_ORIENTATION, offsetof(DEVMODEW, dmOrientation) + sizeof(short)},
    {DM_PAPERSIZE, offsetof(DEVMODEW, dmPaperSize) + sizeof(short)},
    {DM_PAPERLENGTH, offsetof(DEVMODEW, dmPaperLength) + sizeof(short)},
    {DM_PAPERWIDTH, offsetof(DEVMODEW, dmPaperWidth) + sizeof(short)},
    {DM_SCALE, offsetof(DEVMODEW, dmScale) + sizeof(short)},
    {DM_COPIES, offsetof(DEVMODEW, dmCopies) + sizeof(short)},
    {DM_DEFAULTSOURCE, offsetof(DEVMODEW, dmDefaultSource) + sizeof(short)},
    {DM_PRINTQUALITY, offsetof(DEVMODEW, dmPrintQuality) + sizeof(short)},
    {DM_COLOR, offsetof(DEVMODEW, dmColor) + sizeof(short)},
    {DM_DUPLEX, offsetof(DEVMODEW, dmDuplex) + sizeof(short)},
    {DM_YRESOLUTION, offsetof(DEVMODEW, dmYResolution) + sizeof(short)},
    {DM_TTOPTION, offsetof(DEVMODEW, dmTTOption) + sizeof(short)},
    {DM_COLLATE, offsetof(DEVMODEW, dmCollate) + sizeof(short)},
    {DM_FORMNAME, offsetof(DEVMODEW, dmFormName) + sizeof(DEVMODEW::dmFormName)},
    {DM_ICMMETHOD, offsetof(DEVMODEW, dmICMMethod) + sizeof(DWORD)},
    {DM_ICMINTENT, offsetof(DEVMODEW, dmICMIntent) + sizeof(DWORD)},
    {DM_MEDIATYPE, offsetof(DEVMODEW, dmMediaType) + sizeof(DWORD)},
};

// The fields that lie within the input and are claimed by it; the rest is zero and not claimed.
DEVMODEW ReadClaims(std::span<const std::byte> input)
{
    DEVMODEW fields{};
    std::memcpy(&fields, input.data(), std::min(input.size(), kSmallestInput));
    const std::size_t size = std::min({std::size_t{fields.dmSize}, input.size(), sizeof fields});
    std::memcpy(&fields, input.data(), size);
    for (const FieldEnd& field : kFieldEnds)
        if (field.end > size)
            fields.dmFields &= ~field.flag;
    return fields;
}

// Whether the driver's area begins with a private part of this core driver, of the size that it has today.
bool BeginsWithCorePart(const PrinterModel::CoreDriver& driver, std::span<const std::byte> driverExtra)
{
    namespace Format = OemDevmodeFormat;
    ByteReader core(driverExtra);
    core.Skip(driver.kind == PrinterModel::CoreDriverKind::PostScript ? Format::kPostScriptSizeOffset
                                                                      : Format::kUnidrvSizeOffset);
    return core.U16() == driver.privateSize;
}

// The maker's part says whose devmode it is; without one nothing is taken over. Its settings are kept wherever it lies:
// core drivers change their size from version to version. What is behind it belongs to nobody here, and goes.
//
// A maker's part that is not sound holds no settings for anybody, and none could ever be stored in it: the default
// takes its place. The core driver's settings beside it are not lost with it.
void TakeOverDriverParts(const ProductData& product, const DEVMODEW& claims, std::span<const std::byte> input,
                         ByteBuffer& devmode)
{
    const auto extra = input.subspan(std::min<std::size_t>(claims.dmSize, input.size()));
    const auto location = LocateOemDevmode(extra);
    if (!location)
        return;
    const std::size_t coreSize = product.GetCoreDriver().privateSize;
    const auto output = devmode.bytes().subspan(sizeof(DEVMODEW));
    if (location->offset == coreSize && BeginsWithCorePart(product.GetCoreDriver(), extra))
        std::copy_n(extra.begin(), coreSize, output.begin());

    const auto& oem = *reinterpret_cast<const OemDevmode*>(extra.data() + location->offset);
    if (OemDevmodeContent::HasRightCrc(oem) && OemDevmodeContent::ReadEntries(oem))
        std::copy(std::begin(oem.bytes), std::end(oem.bytes), output.begin() + static_cast<std::ptrdiff_t>(coreSize));
}

} // namespace

DWORD SupportedFields(const ProductData& product)
{
    return MakeDefaultPublicDevmode(product, CXString()).dmFields | DM_PAPERWIDTH | DM_PAPERLENGTH | DM_FORMNAME;
}

void MergeDevmode(const ProductData& product, std::span<const std::byte> input, ByteBuffer& devmode)
{
    const DEVMODEW claims = ReadClaims(input);
    DEVMODEW fields{};
    std::memcpy(&fields, devmode.data(), sizeof fields);
    for (const Merge& each : kMerges)
        if ((claims.dmFields & each.flags) != 0)
            each.merge(product, claims, fields);
    std::memcpy(devmode.data(), &fields, sizeof fields);
    TakeOverDriverParts(product, claims, input, devmode);
    CompleteDriverSettings(product, devmode); // the paper may be another one now
}
