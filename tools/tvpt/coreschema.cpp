#include "coreschema.h"

#include <windows.h>

#include <algorithm>
#include <iterator>
#include <span>

#include <tvcore/datamodelids.h>

#include "complugins/msdevmodeusingreverseengineering.h"
#include "schemawriter.h"

namespace
{

namespace Features = DataModelIds::Feature;
namespace Values = DataModelIds::Value;
using PropertyKind = SchemaProperty::Kind;
using SettingKind = CoreSetting::Kind;

constexpr long kMicronsPerUnit = 100; // a devmode and a model count tenths of a millimetre
constexpr long kFullSize = 100;       // per cent
constexpr long kMaxScale = 1000;

struct NumberName
{
    std::uint32_t number;
    std::string_view name;
};

// The Print Schema's names of the platform's paper numbers.
constexpr NumberName kMediaSizes[] = {
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

// Of the standard media; a core driver knows the others by their texts only.
constexpr NumberName kMediaTypes[] = {
    {DMMEDIA_STANDARD, "psk:Plain"},
    {DMMEDIA_TRANSPARENCY, "psk:Transparency"},
    {Values::Automatic, "psk:AutoSelect"},
    {Values::MediaPlain, "psk:Plain"},
    {Values::MediaTransparency, "psk:Transparency"},
};

constexpr std::uint16_t kManualBin = 4; // the platform's number, like that of the automatic one
constexpr NumberName kInputBins[] = {
    {DMBIN_AUTO, "psk:AutoSelect"},
};

struct OptionRow
{
    std::uint32_t value;
    std::string_view name;
    std::string_view displayName = {}; // empty: the one of the driver's table
    bool isIdentity = false;
};

struct FeatureRow
{
    std::string_view name;
    std::string_view displayName;
    SettingKind kind;
    std::uint32_t feature;
    std::span<const OptionRow> options; // the default first
};

constexpr OptionRow kOrientations[] = {
    {Values::MsPortrait, "psk:Portrait"},
    {Values::MsLandscape, "psk:Landscape", "Landscape"},
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
    {Values::MsBookletOff, "psk:None", {}, true},
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

// One field of the devmode says both: fonts that are drawn are not substituted.
constexpr OptionRow kFontModes[] = {
    {DMTT_DOWNLOAD, "psk:Automatic", "Automatic"},
    {DMTT_BITMAP, "psk:RenderAsBitmap", "Print as Graphics"},
};

constexpr OptionRow kFontSubstitutions[] = {
    {DMTT_DOWNLOAD, "psk:Off", "Off"},
    {DMTT_SUBDEV, "psk:On", "On"},
};

// Of two rows of one name the first that the driver has counts.
constexpr FeatureRow kFeatures[] = {
    {"psk:PageOrientation", "Orientation", SettingKind::Option, Features::MsOrientation, kOrientations},
    {"psk:DocumentCollate", "Collate Copies", SettingKind::Option, Features::MsCollation, kCollations},
    {"psk:JobDuplexAllDocumentsContiguously", "Two-sided Printing", SettingKind::Option, Features::MsDuplex, kPlexes},
    {"psk:JobBindAllDocuments", "Booklet", SettingKind::Option, Features::MsBooklet, kBooklets},
    {"psk:JobPageOrder", "Page Order", SettingKind::Option, Features::MsPageOrder, kPageOrders},
    {"psk:PageTrueTypeFontMode", "TrueType Font Download", SettingKind::Option, Features::MsPsTrueTypeDownload,
     kFontDownloads},
    {"psk:PageTrueTypeFontMode", "TrueType Font", SettingKind::Number, Features::MsTrueTypeOption, kFontModes},
    {"psk:PageDeviceFontSubstitution", "Device Font Substitution", SettingKind::Number, Features::MsTrueTypeOption,
     kFontSubstitutions},
};

struct ColorRow
{
    std::uint32_t number; // as dmColor has it
    std::int32_t valueId;
    std::string_view name;
    const char* driverBitsPerPixel;
    bool isOfColorDevices;
};

constexpr ColorRow kColors[] = {
    {DMCOLOR_COLOR, Values::ColorModeColor, "psk:Color", "24", true},
    {DMCOLOR_MONOCHROME, Values::ColorModeMonochrome, "psk:Monochrome", "1", false},
};

// Which settings the model's core driver has, whatever a devmode says.
class Driver
{
public:
    explicit Driver(const PrinterModel& model) : m_access(MsDriverKind::FromCapabilityWord(model.capability), Nothing())
    {
    }

    // Null when it has none that it keeps at a known place.
    [[nodiscard]] const MsDevmodeBase::Feature* Find(std::uint32_t feature) const
    {
        const MsDevmodeCell cell = MsDevmodeOffsets::FindPlace(feature, m_access.GetDriverKind()).cell;
        const bool hasPlace = cell != MsDevmodeCell::NotAvailable && cell != MsDevmodeCell::NoOffset;
        return hasPlace ? m_access.FindFeature(feature) : nullptr;
    }

    [[nodiscard]] bool IsPostScript() const noexcept
    {
        return (m_access.GetDriverKind().kind & MsDriverKind::kPostScript) != 0;
    }

private:
    DEVMODEW* Nothing() noexcept
    {
        m_nothing.dmSize = sizeof m_nothing;
        return &m_nothing;
    }

    DEVMODEW m_nothing{};
    MsDevmodeUsingReverseEngineering m_access;
};

CoreSetting FieldSetting(std::uint32_t feature, std::uint32_t value)
{
    return {SettingKind::Number, feature, value};
}

CoreSetting DriverSetting(std::uint32_t feature, std::int32_t valueId)
{
    return {SettingKind::Option, feature, static_cast<std::uint32_t>(valueId)};
}

SchemaProperty Integer(std::string_view name, long value)
{
    return {std::string(name), PropertyKind::Integer, std::to_string(value)};
}

SchemaProperty Reference(const std::string& name, std::string_view parameter)
{
    return {name, PropertyKind::Parameter, std::string(parameter)};
}

// The name that the schema has for the number, else one of the driver's own, after its text: texts that are one as
// names are told apart by their numbers.
std::string OptionName(std::span<const NumberName> known, std::uint32_t number, std::string_view text,
                       const std::vector<SchemaOption>& others)
{
    const auto row = std::find_if(known.begin(), known.end(),
                                  [number](const NumberName& candidate) { return candidate.number == number; });
    std::string name = row != known.end() ? std::string(row->name)
                                          : std::string(SchemaWriter::kDriverPrefix) + ":" + NameFromText(text);
    const bool isTaken =
        std::any_of(others.begin(), others.end(), [&name](const SchemaOption& other) { return other.name == name; });
    return isTaken ? name + "_" + std::to_string(number) : name;
}

std::vector<SchemaParameter> CustomSizeParameters(const PrinterModel& model, bool isPostScript)
{
    const auto extent = [](std::string_view name, long minimum, long maximum, std::uint32_t feature)
    {
        return SchemaParameter{name,
                               {},
                               "microns",
                               false,
                               minimum * kMicronsPerUnit,
                               minimum * kMicronsPerUnit,
                               maximum * kMicronsPerUnit,
                               feature,
                               kMicronsPerUnit};
    };
    const auto constant = [](std::string_view name, std::string_view unit, long value)
    {
        return SchemaParameter{name, {}, unit, false, value, value, value};
    };
    const PrinterModel::Extent& least = model.minExtent;
    const PrinterModel::Extent& most = model.maxExtent;
    if (!isPostScript)
        return {extent("psk:PageMediaSizeMediaSizeWidth", least.width, most.width, Features::MsPaperWidth),
                extent("psk:PageMediaSizeMediaSizeHeight", least.length, most.length, Features::MsPaperLength)};
    return {extent("psk:PageMediaSizePSWidth", least.width, most.width, Features::MsPaperWidth),
            extent("psk:PageMediaSizePSHeight", least.length, most.length, Features::MsPaperLength),
            constant("psk:PageMediaSizePSWidthOffset", "microns", 0),
            constant("psk:PageMediaSizePSHeightOffset", "microns", 0),
            constant("psk:PageMediaSizePSOrientation", "orientation", 1)};
}

// In the parameters' order.
SchemaOption CustomSize(const PrinterModel& model, bool isPostScript)
{
    const PrinterModel::Form* const form = model.FindForm(DMPAPER_USER);
    SchemaOption option{.name = isPostScript ? "psk:PSCustomMediaSize" : "psk:CustomMediaSize",
                        .displayName = form != nullptr ? form->name.ToUtf8() : "Custom",
                        .settings = {FieldSetting(Features::MsPaperSize, DMPAPER_USER)}};
    constexpr std::string_view kFeature = "psk:PageMediaSize"; // with which the parameters' names begin
    for (const SchemaParameter& parameter : CustomSizeParameters(model, isPostScript))
        option.properties.push_back(
            Reference("psk:" + std::string(parameter.name.substr(kFeature.size())), parameter.name));
    return option;
}

SchemaFeature MediaSizes(const PrinterModel& model, const Driver& driver)
{
    SchemaFeature feature{.name = "psk:PageMediaSize", .displayName = "Paper Size", .isProviders = true};
    for (const PrinterModel::Form& form : model.forms)
    {
        const bool isFirst = model.FindForm(form.paperId) == &form;
        if (!isFirst || form.paperId == DMPAPER_USER || form.formType == DataModelIds::PageSizeUnlisted)
            continue;
        feature.options.push_back({.name = OptionName(kMediaSizes, form.paperId, form.name.ToUtf8(), feature.options),
                                   .displayName = form.name.ToUtf8(),
                                   .properties = {Integer("psk:MediaSizeWidth", form.width * kMicronsPerUnit),
                                                  Integer("psk:MediaSizeHeight", form.length * kMicronsPerUnit)},
                                   .settings = {FieldSetting(Features::MsPaperSize, form.paperId)}});
    }
    feature.options.push_back(CustomSize(model, driver.IsPostScript()));
    feature.parameters = CustomSizeParameters(model, driver.IsPostScript());
    return feature;
}

SchemaFeature MediaTypes(const PrinterModel& model)
{
    SchemaFeature feature{.name = "psk:PageMediaType", .displayName = "Media Type", .isProviders = true};
    for (const PrinterModel::MediaType& type : model.mediaTypes)
    {
        const auto id = static_cast<std::uint32_t>(type.id);
        feature.options.push_back({.name = OptionName(kMediaTypes, id, type.name.ToUtf8(), feature.options),
                                   .displayName = type.name.ToUtf8(),
                                   .settings = {FieldSetting(Features::MsMediaType, id)}});
    }
    return feature;
}

SchemaFeature OutputColors(const PrinterModel& model, const Driver& driver)
{
    SchemaFeature feature{.name = "psk:PageOutputColor", .displayName = "Color Printing Mode"};
    for (const ColorRow& row : kColors)
    {
        if (row.isOfColorDevices && !model.IsColor())
            continue;
        SchemaOption option{.name = std::string(row.name),
                            .displayName = std::string(row.name.substr(row.name.find(':') + 1)),
                            .properties = {Integer("psk:DeviceBitsPerPixel", 0),
                                           {"psk:DriverBitsPerPixel", PropertyKind::Integer, row.driverBitsPerPixel}},
                            .settings = {FieldSetting(Features::MsColorMode, row.number)}};
        if (driver.Find(Features::MsColorPrintingMode) != nullptr)
            option.settings.push_back(DriverSetting(Features::MsColorPrintingMode, row.valueId));
        feature.options.push_back(std::move(option));
    }
    return feature;
}

SchemaFeature Scalings()
{
    constexpr std::string_view kParameter = "psk:PageScalingScale";
    return {.name = "psk:PageScaling",
            .displayName = "Scaling",
            .options = {{.name = "psk:None",
                         .displayName = "None",
                         .settings = {FieldSetting(Features::MsScale, kFullSize)},
                         .isIdentity = true},
                        {.name = "psk:CustomSquare",
                         .displayName = "Custom",
                         .properties = {Reference("psk:Scale", kParameter)}}},
            .parameters = {{kParameter, "Scale", "percent", false, kFullSize, 1, kMaxScale, Features::MsScale}}};
}

SchemaFeature Resolutions(const PrinterModel& model)
{
    SchemaFeature feature{.name = "psk:PageResolution", .displayName = "Resolution"};
    for (const PrinterModel::Resolution& row : model.resolutions)
    {
        const std::string x = std::to_string(row.x);
        const std::string y = std::to_string(row.y);
        feature.options.push_back(
            {.name = OptionName({}, 0, x + "x" + y, {}),
             .displayName = x + " x " + y + " dots per inch",
             .properties = ResolutionProperties(row.x, row.y),
             .settings = {FieldSetting(Features::MsResolution, MsDevmodeValues::Resolution(row.x, row.y))}});
    }
    return feature;
}

SchemaFeature InputBins(const PrinterModel& model)
{
    SchemaFeature feature{.name = "psk:JobInputBin", .displayName = "Paper Source"};
    for (const PrinterModel::Bin& bin : model.bins)
    {
        SchemaOption option{.name = OptionName(kInputBins, bin.id, bin.name.ToUtf8(), feature.options),
                            .displayName = bin.name.ToUtf8(),
                            .settings = {FieldSetting(Features::MsDefaultSource, bin.id)}};
        if (bin.id == kManualBin)
            option.properties.push_back({"psk:FeedType", PropertyKind::QName, "psk:Manual"});
        feature.options.push_back(std::move(option));
    }
    return feature;
}

SchemaFeature PagesPerSheet()
{
    constexpr long kPages[] = {1, 2, 4, 6, 9, 16}; // in the order of their values
    static_assert(Values::PagesPerSheet16 - Values::PagesPerSheet1 + 1 == std::size(kPages));
    SchemaFeature feature{.name = "psk:JobNUpAllDocumentsContiguously", .displayName = "Pages per Sheet"};
    std::int32_t valueId = Values::PagesPerSheet1;
    for (const long pages : kPages)
        feature.options.push_back({.name = {},
                                   .displayName = std::to_string(pages),
                                   .properties = {Integer("psk:PagesPerSheet", pages)},
                                   .settings = {DriverSetting(Features::MsPagesPerSheet, valueId++)},
                                   .isIdentity = pages == 1});
    return feature;
}

// Without options where the driver does not have the feature.
SchemaFeature FromRow(const FeatureRow& row, const Driver& driver)
{
    SchemaFeature feature{.name = row.name, .displayName = row.displayName};
    const bool isNumber = row.kind == SettingKind::Number; // a field that every devmode has
    const MsDevmodeBase::Feature* const own = isNumber ? nullptr : driver.Find(row.feature);
    for (const OptionRow& option : row.options)
    {
        const MsDevmodeValueRow* const value =
            own != nullptr ? MsDevmodeValues::FindValueId(own->values, static_cast<std::int32_t>(option.value))
                           : nullptr;
        if (value == nullptr && !isNumber)
            continue;
        feature.options.push_back({.name = std::string(option.name),
                                   .displayName = option.displayName.empty() && value != nullptr
                                                      ? value->displayName
                                                      : std::string(option.displayName),
                                   .settings = {{row.kind, row.feature, option.value}},
                                   .isIdentity = option.isIdentity});
    }
    return feature;
}

} // namespace

bool SchemaOption::RefersTo(std::string_view parameter) const noexcept
{
    return std::any_of(properties.begin(), properties.end(),
                       [parameter](const SchemaProperty& property)
                       { return property.kind == PropertyKind::Parameter && property.value == parameter; });
}

const SchemaFeature* CoreSchema::Find(std::string_view name) const noexcept
{
    const auto found = std::find_if(features.begin(), features.end(),
                                    [name](const SchemaFeature& feature) { return feature.name == name; });
    return found != features.end() ? &*found : nullptr;
}

void WriteScoredProperties(const SchemaOption& option, SchemaWriter& document)
{
    constexpr std::string_view kElement = "ScoredProperty";
    for (const SchemaProperty& property : option.properties)
    {
        if (property.kind == PropertyKind::Parameter)
            document.Referring(kElement, property.name, property.value);
        else
            document.Valued(kElement, property.name, property.kind == PropertyKind::Integer ? "integer" : "QName",
                            property.value);
    }
}

std::vector<SchemaProperty> ResolutionProperties(long x, long y)
{
    return {Integer("psk:ResolutionX", x), Integer("psk:ResolutionY", y)};
}

CoreSchema MakeCoreSchema(const PrinterModel& model)
{
    const Driver driver(model);
    CoreSchema schema;
    schema.features = {MediaSizes(model, driver), MediaTypes(model), OutputColors(model, driver), Scalings(),
                       Resolutions(model),        InputBins(model)};
    if (driver.Find(Features::MsPagesPerSheet) != nullptr)
        schema.features.push_back(PagesPerSheet());
    for (const FeatureRow& row : kFeatures)
        if (SchemaFeature feature = FromRow(row, driver); !feature.options.empty() && schema.Find(row.name) == nullptr)
            schema.features.push_back(std::move(feature));
    schema.copies = {"psk:JobCopiesAllDocuments", "Copy Count", "copies", true, 1, 1, model.maxCopies,
                     Features::MsCopies};
    return schema;
}
