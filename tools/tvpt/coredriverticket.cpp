#include "coredriverticket.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <iterator>

#include "coredevmode.h"
#include "devmodefields.h"
#include "newdevmode.h"
#include "ticketwriter.h"

namespace
{

constexpr std::string_view kDriverNamespaceRoot = "http://schemas.microsoft.com/windows/printing/oemdriverpt/";
constexpr long kMicronsPerUnit = 100; // a devmode counts tenths of a millimetre

struct MediaSizeRow
{
    std::uint16_t paperId;
    std::string_view keyword;
};

// The Print Schema's names of the platform's paper numbers.
constexpr MediaSizeRow kMediaSizes[] = {
    {1, "psk:NorthAmericaLetter"},
    {3, "psk:NorthAmericaTabloid"},
    {5, "psk:NorthAmericaLegal"},
    {6, "psk:NorthAmericaStatement"},
    {7, "psk:NorthAmericaExecutive"},
    {8, "psk:ISOA3"},
    {9, "psk:ISOA4"},
    {11, "psk:ISOA5"},
    {12, "psk:JISB4"},
    {13, "psk:JISB5"},
    {15, "psk:NorthAmericaQuarto"},
    {17, "psk:NorthAmerica11x17"},
    {19, "psk:NorthAmericaNumber9Envelope"},
    {20, "psk:NorthAmericaNumber10Envelope"},
    {21, "psk:NorthAmericaNumber11Envelope"},
    {22, "psk:NorthAmericaNumber12Envelope"},
    {23, "psk:NorthAmericaNumber14Envelope"},
    {27, "psk:ISODLEnvelope"},
    {28, "psk:ISOC5Envelope"},
    {29, "psk:ISOC3Envelope"},
    {30, "psk:ISOC4Envelope"},
    {31, "psk:ISOC6Envelope"},
    {37, "psk:NorthAmericaMonarchEnvelope"},
    {43, "psk:JapanHagakiPostcard"},
    {66, "psk:ISOA2"},
    {70, "psk:ISOA6"},
};

// The model's defaults, with what the devmode claims written over them.
DEVMODEW ClaimedFields(const Devmode& devmode, const PrinterModel& model)
{
    const DEVMODEW given = devmode.Public();
    DEVMODEW fields = MakeNewDevmode(model, CXString()).Public();
    for (const DevmodeField& field : DevmodeFields())
        if ((given.dmFields & field.flag) != 0)
            std::memcpy(reinterpret_cast<std::byte*>(&fields) + field.offset,
                        reinterpret_cast<const std::byte*>(&given) + field.offset, DevmodeFieldWidth(field));
    if ((given.dmFields & DM_PAPERSIZE) == 0 && (given.dmFields & DM_PAPERWIDTH) != 0 &&
        (given.dmFields & DM_PAPERLENGTH) != 0)
        fields.dmPaperSize = DMPAPER_USER;
    return fields;
}

std::string DriverName(std::string_view text)
{
    return std::string(TicketWriter::kDriverPrefix) + ":" + NameFromText(text);
}

void WriteCustomMediaSize(const DEVMODEW& fields, const PrinterModel& model, TicketWriter& ticket)
{
    const long width = fields.dmPaperWidth * kMicronsPerUnit;
    const long length = fields.dmPaperLength * kMicronsPerUnit;
    if (model.coreDriver.kind == PrinterModel::CoreDriverKind::PostScript)
    {
        ticket.FeatureWithParameters("psk:PageMediaSize", "psk:PSCustomMediaSize",
                                     {{"psk:PSWidth", "psk:PageMediaSizePSWidth"},
                                      {"psk:PSHeight", "psk:PageMediaSizePSHeight"},
                                      {"psk:PSWidthOffset", "psk:PageMediaSizePSWidthOffset"},
                                      {"psk:PSHeightOffset", "psk:PageMediaSizePSHeightOffset"},
                                      {"psk:PSOrientation", "psk:PageMediaSizePSOrientation"}});
        ticket.Parameter("psk:PageMediaSizePSWidth", width);
        ticket.Parameter("psk:PageMediaSizePSHeight", length);
        ticket.Parameter("psk:PageMediaSizePSWidthOffset", 0);
        ticket.Parameter("psk:PageMediaSizePSHeightOffset", 0);
        ticket.Parameter("psk:PageMediaSizePSOrientation", 1);
        return;
    }
    ticket.FeatureWithParameters("psk:PageMediaSize", "psk:CustomMediaSize",
                                 {{"psk:MediaSizeWidth", "psk:PageMediaSizeMediaSizeWidth"},
                                  {"psk:MediaSizeHeight", "psk:PageMediaSizeMediaSizeHeight"}});
    ticket.Parameter("psk:PageMediaSizeMediaSizeWidth", width);
    ticket.Parameter("psk:PageMediaSizeMediaSizeHeight", length);
}

void WriteMediaSize(const DEVMODEW& fields, const PrinterModel& model, TicketWriter& ticket)
{
    const auto paperId = static_cast<std::uint16_t>(fields.dmPaperSize);
    if (paperId == DMPAPER_USER)
        return WriteCustomMediaSize(fields, model, ticket);

    const PrinterModel::Form* const known = model.FindForm(paperId);
    const PrinterModel::Form& form = known != nullptr ? *known : model.forms.front();
    const auto row = std::find_if(std::begin(kMediaSizes), std::end(kMediaSizes),
                                  [&form](const MediaSizeRow& size) { return size.paperId == form.paperId; });
    const std::string option =
        row != std::end(kMediaSizes) ? std::string(row->keyword) : DriverName(form.name.ToUtf8());
    ticket.Feature(
        "psk:PageMediaSize", option,
        {{"psk:MediaSizeWidth", form.width * kMicronsPerUnit}, {"psk:MediaSizeHeight", form.length * kMicronsPerUnit}});
}

void WriteResolution(const DEVMODEW& fields, const PrinterModel& model, TicketWriter& ticket)
{
    // A negative quality is one of the platform's draft-to-high names, which only the driver can turn into dots.
    const bool named = fields.dmPrintQuality <= 0;
    const long x = named ? model.resolutions.front().x : fields.dmPrintQuality;
    const long y = named ? model.resolutions.front().y : fields.dmYResolution > 0 ? fields.dmYResolution : x;
    ticket.Feature("psk:PageResolution", {}, {{"psk:ResolutionX", x}, {"psk:ResolutionY", y}});
}

void WriteScaling(const DEVMODEW& fields, TicketWriter& ticket)
{
    constexpr short kFullSize = 100; // per cent
    if (fields.dmScale == kFullSize)
        return ticket.Feature("psk:PageScaling", "psk:None");
    ticket.FeatureWithParameters("psk:PageScaling", "psk:CustomSquare", {{"psk:Scale", "psk:PageScalingScale"}});
    ticket.Parameter("psk:PageScalingScale", fields.dmScale);
}

std::string_view OrientationOption(const DEVMODEW& fields, const CoreSettings& core)
{
    if (fields.dmOrientation != DMORIENT_LANDSCAPE)
        return "psk:Portrait";
    return core.rotatedLandscape ? "psk:ReverseLandscape" : "psk:Landscape";
}

std::string_view DuplexOption(short duplex)
{
    switch (duplex)
    {
    case DMDUP_VERTICAL:
        return "psk:TwoSidedLongEdge";
    case DMDUP_HORIZONTAL:
        return "psk:TwoSidedShortEdge";
    default:
        return "psk:OneSided";
    }
}

void WriteInputBin(const DEVMODEW& fields, const PrinterModel& model, TicketWriter& ticket)
{
    const auto bin = std::find_if(model.bins.begin(), model.bins.end(),
                                  [&fields](const PrinterModel::Bin& row) { return row.id == fields.dmDefaultSource; });
    const bool isAutomatic = bin == model.bins.end() || bin->id == DMBIN_AUTO;
    ticket.Feature("psk:JobInputBin", isAutomatic ? "psk:AutoSelect" : DriverName(bin->name.ToUtf8()));
}

void WriteFontModes(const DEVMODEW& fields, const CoreSettings& core, TicketWriter& ticket)
{
    constexpr std::array<std::string_view, 4> kDownloads = {
        "psk:Automatic", "psk:DownloadAsOutlineFont", "psk:DownloadAsRasterFont", "psk:DownloadAsNativeTrueTypeFont"};
    if (core.trueTypeDownload && *core.trueTypeDownload < kDownloads.size())
        ticket.Feature("psk:PageTrueTypeFontMode", kDownloads[*core.trueTypeDownload]);
    else
        ticket.Feature("psk:PageTrueTypeFontMode",
                       fields.dmTTOption == DMTT_BITMAP ? "psk:RenderAsBitmap" : "psk:Automatic");
    ticket.Feature("psk:PageDeviceFontSubstitution", fields.dmTTOption == DMTT_SUBDEV ? "psk:On" : "psk:Off");
}

void WriteLayout(const CoreSettings& core, TicketWriter& ticket)
{
    ticket.Feature("psk:JobNUpAllDocumentsContiguously", {}, {{"psk:PagesPerSheet", core.pagesPerSheet}});
    ticket.Feature("psk:JobBindAllDocuments", core.booklet ? "psk:Booklet" : "psk:None");
    ticket.Feature("psk:JobPageOrder", core.reversePageOrder ? "psk:Reverse" : "psk:Standard");
}

// Letters, digits, '.', '-' and '_' stay, each other character becomes one '_', as services do.
std::string UriSegment(WStringView text)
{
    constexpr WStringView kKept = W("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789.-_");
    std::string segment;
    for (const WCHAR character : text)
        if (kKept.find(character) != WStringView::npos)
            segment += static_cast<char>(character);
        else if ((character & 0xFC00) != 0xDC00) // the second half of a character beyond the basic plane
            segment += '_';
    return segment;
}

} // namespace

std::string DriverNamespaceUri(const CXString& providerNamespace, const CXString& driverName)
{
    if (!providerNamespace.IsEmpty())
        return providerNamespace.ToUtf8();
    return std::string(kDriverNamespaceRoot) + UriSegment(driverName.View());
}

std::string MakeCoreDriverTicket(const Devmode& devmode, const PrinterModel& model,
                                 const std::string& driverNamespaceUri)
{
    const DEVMODEW fields = ClaimedFields(devmode, model);
    const auto parts = LocateDriverParts(devmode.DriverExtra());
    const CoreSettings core = parts ? ReadCoreSettings(parts->layout, parts->core) : CoreSettings();

    TicketWriter ticket(driverNamespaceUri);
    WriteMediaSize(fields, model, ticket);
    ticket.Feature("psk:PageOutputColor", fields.dmColor == DMCOLOR_COLOR ? "psk:Color" : "psk:Monochrome");
    WriteScaling(fields, ticket);
    WriteResolution(fields, model, ticket);
    ticket.Feature("psk:PageOrientation", OrientationOption(fields, core));
    ticket.Feature("psk:DocumentCollate", fields.dmCollate == DMCOLLATE_TRUE ? "psk:Collated" : "psk:Uncollated");
    ticket.Feature("psk:JobDuplexAllDocumentsContiguously", DuplexOption(fields.dmDuplex));
    WriteInputBin(fields, model, ticket);
    WriteLayout(core, ticket);
    WriteFontModes(fields, core, ticket);
    ticket.Parameter("psk:JobCopiesAllDocuments", fields.dmCopies);
    return ticket.Finish();
}
