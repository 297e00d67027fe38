#include "corefeaturewords.h"

#include <tvcore/datamodelids.h>

#include <algorithm>
#include <iterator>

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
    const std::string number = std::to_string(value);
    switch (feature)
    {
    case Features::MsScale:
        return number + " %";
    case Features::MsPaperWidth:
    case Features::MsPaperLength:
        return std::to_string(value / 10) + "." + std::to_string(value % 10) + " mm";
    case Features::MsResolution:
        return std::to_string(value >> 16) + " by " + std::to_string(value & 0xFFFF) + " dots per inch";
    default:
        break;
    }
    const FeatureWords* const row = FindFeature(feature);
    return row != nullptr && row->hasOptions ? "no option, value " + number : number;
}
