#include "corefeaturewords.h"

#include <tvcore/datamodelids.h>

#include <algorithm>
#include <iterator>

#include "devmodefields.h"

namespace
{

namespace Features = DataModelIds::Feature;
namespace Values = DataModelIds::Value;

struct FeatureWords
{
    std::uint32_t feature;
    std::string_view label;
    bool hasOptions = true; // a number is one that no option stands for
};

constexpr FeatureWords kFeatures[] = {
    {Features::MsOrientation, "orientation"},
    {Features::MsScale, "scale", false},
    {Features::MsCopies, "copies", false},
    {Features::MsCollation, "collation"},
    {Features::MsDefaultSource, "paper source", false},
    {Features::MsResolution, "resolution"},
    {Features::MsColorMode, "colour"},
    {Features::MsDuplex, "duplex"},
    {Features::MsTrueTypeOption, "TrueType fonts"},
    {Features::MsPaperSize, "paper size", false},
    {Features::MsPaperWidth, "paper width", false},
    {Features::MsPaperLength, "paper length", false},
    {Features::MsIcmMethod, "colour management"},
    {Features::MsIcmIntent, "rendering intent"},
    {Features::MsMediaType, "media type", false},
    {Features::MsDitherType, "dither type", false},
    {Features::MsPagesPerSheet, "pages per sheet"},
    {Features::MsBooklet, "booklet"},
    {Features::MsPageOrder, "page order"},
    {Features::MsQualityMacro, "quality"},
    {Features::MsAdvancedPrinting, "advanced printing features"},
    {Features::MsPsOutputFormat, "PostScript output format"},
    {Features::MsPsLanguageLevel, "PostScript language level"},
    {Features::MsPsErrorHandler, "PostScript error handler"},
    {Features::MsPsMirroredImage, "mirrored image"},
    {Features::MsPsNegativeImage, "negative image"},
    {Features::MsPsTrueTypeDownload, "PostScript TrueType download"},
    {Features::MsPrintOptimization, "print optimisation"},
    {Features::MsGraphicsMode, "graphics mode"},
    {Features::MsTrueTypeDownload, "TrueType download"},
    {Features::MsHalftone, "halftone"},
    {Features::MsColorPrintingMode, "colour printing mode"},
    {Features::MsEdgeToEdge, "edge to edge"},
};

struct OptionWords
{
    std::int32_t valueId;
    std::string_view text;
};

// Where the display name is for those who know the driver.
constexpr OptionWords kOptions[] = {
    {Values::MsPortrait, "portrait"},
    {Values::MsLandscape, "landscape"},
    {Values::MsRotatedLandscape, "landscape, turned round"},
    {Values::Simplex, "one side"},
    {Values::DuplexLongEdge, "flip on the long edge"},
    {Values::DuplexShortEdge, "flip on the short edge"},
    {Values::PagesPerSheet1, "1"},
    {Values::PagesPerSheet2, "2"},
    {Values::PagesPerSheet4, "4"},
    {Values::PagesPerSheet6, "6"},
    {Values::PagesPerSheet9, "9"},
    {Values::PagesPerSheet16, "16"},
    {Values::MsBookletOff, "off"},
    {Values::MsBookletOn, "on"},
    {Values::MsIntentContrast, "contrast (pictures)"},
    {Values::MsIntentSaturate, "saturation (graphics)"},
    {Values::MsIntentAbsoluteColorimetric, "absolute colorimetric (proof)"},
    {Values::MsIntentColorimetric, "colorimetric (match)"},
};

const FeatureWords* FindFeature(std::uint32_t feature)
{
    const auto* const found = std::find_if(std::begin(kFeatures), std::end(kFeatures),
                                           [feature](const FeatureWords& row) { return row.feature == feature; });
    return found != std::end(kFeatures) ? found : nullptr;
}

// As the devmode's field has it: those of 16 bits have a sign.
std::int64_t SignedValue(std::uint32_t feature, std::uint32_t value)
{
    const DevmodeField* const field = FindDevmodeFieldOfFeature(feature);
    if (field != nullptr && field->type == DevmodeField::Type::Short)
        return static_cast<std::int16_t>(value & 0xFFFF);
    return value;
}

// The platform's names for print qualities stand in place of the dots across, from -1 downwards; then nothing counts
// the dots along.
std::string ResolutionText(std::uint32_t value)
{
    constexpr std::string_view kQualities[] = {"draft", "low", "medium", "high"};
    const int across = static_cast<std::int16_t>(value >> 16);
    const int along = static_cast<std::int16_t>(value & 0xFFFF);
    if (across < 0 && across >= -static_cast<int>(std::size(kQualities)))
        return std::string(kQualities[-across - 1]);
    return std::to_string(across) + " by " + std::to_string(along) + " dots per inch";
}

std::string TenthsText(std::int64_t tenths)
{
    const std::int64_t size = tenths < 0 ? -tenths : tenths;
    return (tenths < 0 ? "-" : "") + std::to_string(size / 10) + "." + std::to_string(size % 10) + " mm";
}

} // namespace

std::string_view CoreFeatureWords::Label(std::uint32_t feature)
{
    const FeatureWords* const row = FindFeature(feature);
    return row != nullptr ? row->label : std::string_view("another setting");
}

std::string CoreFeatureWords::Option(std::int32_t valueId, const std::string& displayName)
{
    const auto* const found = std::find_if(std::begin(kOptions), std::end(kOptions),
                                           [valueId](const OptionWords& row) { return row.valueId == valueId; });
    return found != std::end(kOptions) ? std::string(found->text) : displayName;
}

std::string CoreFeatureWords::Number(std::uint32_t feature, std::uint32_t value)
{
    const std::int64_t signedValue = SignedValue(feature, value);
    const std::string number = std::to_string(signedValue);
    switch (feature)
    {
    case Features::MsScale:
        return number + " %";
    case Features::MsPaperWidth:
    case Features::MsPaperLength:
        return TenthsText(signedValue);
    case Features::MsResolution:
        return ResolutionText(value);
    default:
        break;
    }
    const FeatureWords* const row = FindFeature(feature);
    return row != nullptr && row->hasOptions ? "no option, value " + number : number;
}
