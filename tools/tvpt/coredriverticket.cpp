#include "coredriverticket.h"

#include <algorithm>
#include <cstring>
#include <iterator>
#include <memory>

#include <tvcore/customsizenumber.h>
#include <tvcore/datamodelids.h>
#include <tvutil/tavlenexception.h>

#include "complugins/msfeaturemanager.h"
#include "corefeatures.h"
#include "devmodefields.h"
#include "newdevmode.h"
#include "ticketwriter.h"

namespace
{

namespace Features = DataModelIds::Feature;
namespace Values = DataModelIds::Value;

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

bool IsUsersOwnPaper(const DEVMODEW& fields) noexcept
{
    return static_cast<std::uint16_t>(fields.dmPaperSize) >= kFirstCustomSizeNumber;
}

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
    if (IsUsersOwnPaper(fields)) // the number claims the measures, too, which the model does not know
    {
        fields.dmPaperWidth = given.dmPaperWidth;
        fields.dmPaperLength = given.dmPaperLength;
    }
    return fields;
}

// A devmode of these fields, with the driver's private part where it is one of the model's driver.
Devmode WithOwnParts(const Devmode& devmode, const DEVMODEW& fields, const PrinterModel& model)
{
    const auto parts = LocateDriverParts(devmode.DriverExtra());
    const CoreDriver driver{MsDriverKind::FromCapabilityWord(model.capability), true};
    const bool isOwn = parts && LayoutOf(driver.kind) == parts->layout && IsCorePartRecognized(devmode, driver);
    return Devmode(fields, isOwn ? devmode.DriverExtra() : std::span<const std::byte>());
}

// The settings of a devmode, whichever way they are reached.
class CoreSettings
{
public:
    CoreSettings(Devmode devmode, const PrinterModel& model, IPrintCoreHelper* helper)
        : m_devmode(std::move(devmode)),
          m_access(MsFeatureManager::MakeMsDevmode(MsDriverKind::FromCapabilityWord(model.capability), helper,
                                                   m_devmode.Raw()))
    {
    }
    CoreSettings(const CoreSettings&) = delete;
    CoreSettings& operator=(const CoreSettings&) = delete;

    // The data model's value. Of a setting that the driver does not have, or whose value no table has, what its public
    // field alone says; without one, the fallback.
    [[nodiscard]] std::int32_t Option(std::uint32_t feature, std::int32_t fallback)
    {
        if (m_access->FindFeature(feature) == nullptr)
            return fallback;
        try
        {
            return static_cast<std::int32_t>(m_access->GetMsFeatureValue(feature, MsDevmodeBase::DataModel));
        }
        catch (const TavlenException&)
        {
        }
        const MsDevmodeValueRow* const row =
            MsDevmodeValues::FindDevmodeValue(m_access->FindFeature(feature)->values, Number(feature));
        return row != nullptr ? row->valueId : fallback;
    }

    // As the public field has it; 0 when it is none.
    [[nodiscard]] std::uint32_t Number(std::uint32_t feature)
    {
        bool isFound = false;
        return m_access->GetPublicDmFeatureValue_Helper(m_devmode.Raw(), feature, MsDevmodeBase::Raw, &isFound);
    }

private:
    Devmode m_devmode;
    std::unique_ptr<MsDevmodeBase> m_access;
};

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
    // The core driver knows no names of the user's own sizes: of those only the measures count.
    const bool isMeasured = fields.dmPaperWidth > 0 && fields.dmPaperLength > 0;
    if (paperId == DMPAPER_USER || (IsUsersOwnPaper(fields) && isMeasured))
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

void WriteResolution(CoreSettings& core, const PrinterModel& model, TicketWriter& ticket)
{
    const std::uint32_t resolution = core.Number(Features::MsResolution);
    const auto given = [](std::uint32_t half)
    {
        return long{static_cast<std::int16_t>(half & 0xFFFF)};
    };
    // A negative quality is one of the platform's draft-to-high names, which only the driver can turn into dots.
    const bool named = given(resolution >> 16) <= 0;
    const long x = named ? model.resolutions.front().x : given(resolution >> 16);
    const long y = named ? model.resolutions.front().y : given(resolution) > 0 ? given(resolution) : x;
    ticket.Feature("psk:PageResolution", {}, {{"psk:ResolutionX", x}, {"psk:ResolutionY", y}});
}

void WriteScaling(CoreSettings& core, TicketWriter& ticket)
{
    constexpr std::uint32_t kFullSize = 100; // per cent
    const std::uint32_t scale = core.Number(Features::MsScale);
    if (scale == kFullSize)
        return ticket.Feature("psk:PageScaling", "psk:None");
    ticket.FeatureWithParameters("psk:PageScaling", "psk:CustomSquare", {{"psk:Scale", "psk:PageScalingScale"}});
    ticket.Parameter("psk:PageScalingScale", static_cast<std::int16_t>(scale));
}

struct OptionRow
{
    std::int32_t valueId;
    std::string_view option;
};

// The first row's option stands for what none of the rows is.
template <std::size_t Size>
std::string_view OptionOf(CoreSettings& core, std::uint32_t feature, const OptionRow (&rows)[Size])
{
    const std::int32_t valueId = core.Option(feature, rows[0].valueId);
    const auto found = std::find_if(std::begin(rows), std::end(rows),
                                    [valueId](const OptionRow& row) { return row.valueId == valueId; });
    return found != std::end(rows) ? found->option : rows[0].option;
}

constexpr OptionRow kOrientations[] = {
    {Values::MsPortrait, "psk:Portrait"},
    {Values::MsLandscape, "psk:Landscape"},
    {Values::MsRotatedLandscape, "psk:ReverseLandscape"},
};

constexpr OptionRow kPlexes[] = {
    {Values::Simplex, "psk:OneSided"},
    {Values::DuplexLongEdge, "psk:TwoSidedLongEdge"},
    {Values::DuplexShortEdge, "psk:TwoSidedShortEdge"},
};

constexpr OptionRow kCollations[] = {
    {Values::Uncollated, "psk:Uncollated"},
    {Values::Collated, "psk:Collated"},
};

constexpr OptionRow kBooklets[] = {
    {Values::MsBookletOff, "psk:None"},
    {Values::MsBookletOn, "psk:Booklet"},
};

constexpr OptionRow kPageOrders[] = {
    {Values::MsPageOrderNormal, "psk:Standard"},
    {Values::MsPageOrderReverse, "psk:Reverse"},
};

constexpr OptionRow kFontDownloads[] = {
    {Values::MsPsDownloadAutomatic, "psk:Automatic"},
    {Values::MsPsDownloadOutline, "psk:DownloadAsOutlineFont"},
    {Values::MsPsDownloadBitmap, "psk:DownloadAsRasterFont"},
    {Values::MsPsDownloadNative, "psk:DownloadAsNativeTrueTypeFont"},
};

long PagesPerSheet(CoreSettings& core)
{
    constexpr long kPages[] = {1, 2, 4, 6, 9, 16}; // in the order of their values
    static_assert(Values::PagesPerSheet16 - Values::PagesPerSheet1 + 1 == std::size(kPages));
    return kPages[core.Option(Features::MsPagesPerSheet, Values::PagesPerSheet1) - Values::PagesPerSheet1];
}

void WriteInputBin(CoreSettings& core, const PrinterModel& model, TicketWriter& ticket)
{
    const std::uint32_t source = core.Number(Features::MsDefaultSource);
    const auto bin = std::find_if(model.bins.begin(), model.bins.end(),
                                  [source](const PrinterModel::Bin& row) { return row.id == source; });
    const bool isAutomatic = bin == model.bins.end() || bin->id == DMBIN_AUTO;
    ticket.Feature("psk:JobInputBin", isAutomatic ? "psk:AutoSelect" : DriverName(bin->name.ToUtf8()));
}

void WriteFontModes(CoreSettings& core, TicketWriter& ticket)
{
    constexpr std::int32_t kNone = 0;
    const std::uint32_t fonts = core.Number(Features::MsTrueTypeOption);
    if (core.Option(Features::MsPsTrueTypeDownload, kNone) != kNone)
        ticket.Feature("psk:PageTrueTypeFontMode", OptionOf(core, Features::MsPsTrueTypeDownload, kFontDownloads));
    else
        ticket.Feature("psk:PageTrueTypeFontMode", fonts == DMTT_BITMAP ? "psk:RenderAsBitmap" : "psk:Automatic");
    ticket.Feature("psk:PageDeviceFontSubstitution", fonts == DMTT_SUBDEV ? "psk:On" : "psk:Off");
}

void WriteLayout(CoreSettings& core, TicketWriter& ticket)
{
    ticket.Feature("psk:JobNUpAllDocumentsContiguously", {}, {{"psk:PagesPerSheet", PagesPerSheet(core)}});
    ticket.Feature("psk:JobBindAllDocuments", OptionOf(core, Features::MsBooklet, kBooklets));
    ticket.Feature("psk:JobPageOrder", OptionOf(core, Features::MsPageOrder, kPageOrders));
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
                                 const std::string& driverNamespaceUri, IPrintCoreHelper* helper)
{
    const DEVMODEW fields = ClaimedFields(devmode, model);
    CoreSettings core(WithOwnParts(devmode, fields, model), model, helper);

    TicketWriter ticket(driverNamespaceUri);
    WriteMediaSize(fields, model, ticket);
    ticket.Feature("psk:PageOutputColor",
                   core.Number(Features::MsColorMode) == DMCOLOR_COLOR ? "psk:Color" : "psk:Monochrome");
    WriteScaling(core, ticket);
    WriteResolution(core, model, ticket);
    ticket.Feature("psk:PageOrientation", OptionOf(core, Features::MsOrientation, kOrientations));
    ticket.Feature("psk:DocumentCollate", OptionOf(core, Features::MsCollation, kCollations));
    ticket.Feature("psk:JobDuplexAllDocumentsContiguously", OptionOf(core, Features::MsDuplex, kPlexes));
    WriteInputBin(core, model, ticket);
    WriteLayout(core, ticket);
    WriteFontModes(core, ticket);
    ticket.Parameter("psk:JobCopiesAllDocuments", static_cast<std::int16_t>(core.Number(Features::MsCopies)));
    return ticket.Finish();
}
