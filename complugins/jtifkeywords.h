// The job ticket text as data: its lines in their order, and what they say for which value
// (docs/job-ticket-format.md).
//
// Tables to be held beside that page. The compiler checks that they are well-formed and that the feature catalogue has
// every feature, of the kind that its line writes, and every value.
#pragma once

#include <cstddef>
#include <cstdint>
#include <iterator>
#include <span>
#include <string_view>

#include <tvcore/datamodelids.h>
#include <tvcore/featurecatalogue.h>

namespace Jtif
{

namespace Feature = DataModelIds::Feature;
namespace Value = DataModelIds::Value;
using DataModelIds::tagFeatureEnum;
using DataModelIds::tagValueEnum;

// What stands for a value: a word behind the keyword, or a whole stored line.
struct ValueText
{
    tagValueEnum value;
    std::string_view text;
};

// How a line comes out of its feature. Without a value there is no line, unless it has a text for that.
enum class Rule : std::uint8_t
{
    Always,         // the keyword is the whole line
    Text,           // the string
    Number,         // the integer, decimal
    Word,           // the value's word; nothing for a value without one
    StoredLine,     // the value's whole line; nothing for a value without one
    Name,           // the value's word, or the name of a value without one
    Shift,          // the length in whole millimetres
    ShiftOfBack,    // the same, unless the job is simplex
    Finishing,      // three lines, or the one of a finishing bypass
    PaperOpacity,   // unless the media type is automatic
    PaperPreFinish, // the same
    PageExceptions, // no line
};

struct Line
{
    Rule rule;
    tagFeatureEnum feature;
    std::string_view keyword = {};
    std::span<const ValueText> values = {};
    std::string_view absent = {}; // what is written for a feature without a value; empty: no line
};

// clang-format off

inline constexpr ValueText kSignature[] = {
    {Value::Automatic,                          "%TVLsignature: False\n"},
    {Value::SignatureOff,                       "%TVLsignature: False\n"},
    {Value::SignatureOn,                        "%TVLsignature: True\n"},
};
inline constexpr ValueText kPlex[] = {
    {Value::Simplex,                            "simplex"},
    {Value::DuplexLongEdge,                     "duplex"},
    {Value::DuplexShortEdge,                    "duplex(tumble)"},
};
inline constexpr ValueText kCollation[] = {
    {Value::Collated,                           "%TVLrequirements: collated\n"},
    {Value::Uncollated,                         "%TVLrequirements: uncollated\n"},
};
inline constexpr ValueText kRotation[] = {
    {Value::Rotation0,                          "0"},
    {Value::Rotation90,                         "90"},
    {Value::Rotation180,                        "180"},
    {Value::Rotation270,                        "270"},
};
inline constexpr ValueText kDisposition[] = {
    {Value::Automatic,                          "%TVLdisposition: PRINT\n"},
    {Value::DispositionPrint,                   "%TVLdisposition: PRINT\n"},
    {Value::DispositionSave,                    "%TVLdisposition: SAVE\n"},
    {Value::DispositionPrintAndSave,            "%TVLdisposition: PRINT&SAVE\n"},
};
// HighlightPrintingUnnamed is missing on purpose: it writes nothing. So is yellow, which only the mapping has.
inline constexpr ValueText kHighlightPrintingColor[] = {
    {Value::HighlightPrintingRed,               "%TVLhighlightPrintingColor: red\n"},
    {Value::HighlightPrintingGreen,             "%TVLhighlightPrintingColor: green\n"},
    {Value::HighlightPrintingBlue,              "%TVLhighlightPrintingColor: blue\n"},
    {Value::HighlightPrintingCyan,              "%TVLhighlightPrintingColor: cyan\n"},
    {Value::HighlightPrintingMagenta,           "%TVLhighlightPrintingColor: magenta\n"},
    {Value::HighlightPrintingBlack,             "%TVLhighlightPrintingColor: black\n"},
    {Value::HighlightPrintingCardinal,          "%TVLhighlightPrintingColor: cardinal\n"},
    {Value::HighlightPrintingRoyal,             "%TVLhighlightPrintingColor: royal\n"},
    {Value::HighlightPrintingRuby,              "%TVLhighlightPrintingColor: ruby\n"},
    {Value::HighlightPrintingViolet,            "%TVLhighlightPrintingColor: violet\n"},
    {Value::HighlightPrintingBrown,             "%TVLhighlightPrintingColor: brown\n"},
    {Value::HighlightPrintingOther,             "%TVLhighlightPrintingColor: other\n"},
};
inline constexpr ValueText kHighlightMappingColor[] = {
    {Value::HighlightMappingRed,                "%TVLhighlightMappingColor: red\n"},
    {Value::HighlightMappingGreen,              "%TVLhighlightMappingColor: green\n"},
    {Value::HighlightMappingBlue,               "%TVLhighlightMappingColor: blue\n"},
    {Value::HighlightMappingCyan,               "%TVLhighlightMappingColor: cyan\n"},
    {Value::HighlightMappingMagenta,            "%TVLhighlightMappingColor: magenta\n"},
    {Value::HighlightMappingBlack,              "%TVLhighlightMappingColor: black\n"},
    {Value::HighlightMappingCardinal,           "%TVLhighlightMappingColor: cardinal\n"},
    {Value::HighlightMappingRoyal,              "%TVLhighlightMappingColor: royal\n"},
    {Value::HighlightMappingRuby,               "%TVLhighlightMappingColor: ruby\n"},
    {Value::HighlightMappingViolet,             "%TVLhighlightMappingColor: violet\n"},
    {Value::HighlightMappingBrown,              "%TVLhighlightMappingColor: brown\n"},
    {Value::HighlightMappingYellow,             "%TVLhighlightMappingColor: yellow\n"},
    {Value::HighlightMappingOther,              "%TVLhighlightMappingColor: other\n"},
};
inline constexpr ValueText kHighlightMappingAlgorithm[] = {
    {Value::HighlightAlgorithmAutomatic,        "%TVLhighlightMappingAlgorithm: Automatic\n"},
    {Value::HighlightAlgorithmPictorial,        "%TVLhighlightMappingAlgorithm: Pictorial\n"},
    {Value::HighlightAlgorithmPresentation,     "%TVLhighlightMappingAlgorithm: Presentation\n"},
    {Value::HighlightAlgorithmPictorialTable,   "%TVLhighlightMappingAlgorithm: PictorialTable\n"},
    {Value::HighlightAlgorithmColorToHighlight, "%TVLhighlightMappingAlgorithm: ColorToHighlight\n"},
    {Value::HighlightAlgorithmMonochrome,       "%TVLhighlightMappingAlgorithm: Monochrome\n"},
};
inline constexpr ValueText kMismatchedHighlightColor[] = {
    {Value::HighlightMismatchSelectCurrent,     "%TVLmismatchedHighlightPrintingColor: selectCurrent\n"},
    {Value::HighlightMismatchHold,              "%TVLmismatchedHighlightPrintingColor: hold\n"},
    {Value::HighlightMismatchAbort,             "%TVLmismatchedHighlightPrintingColor: abort\n"},
};
inline constexpr ValueText kPaperColor[] = {
    {Value::PaperColorNone,                     "noColor"},
    {Value::PaperColorWhite,                    "white"},
    {Value::PaperColorPink,                     "pink"},
    {Value::PaperColorYellow,                   "yellow"},
    {Value::PaperColorBlue,                     "blue"},
    {Value::PaperColorGreen,                    "green"},
    {Value::PaperColorBuff,                     "buff"},
    {Value::PaperColorGoldenrod,                "goldenrod"},
    {Value::PaperColorRed,                      "red"},
    {Value::PaperColorGray,                     "gray"},
    {Value::PaperColorIvory,                    "ivory"},
    {Value::PaperColorOrange,                   "orange"},
};

// The ticket, line by line.
inline constexpr Line kLines[] = {
    {Rule::Always,         {},                                 "%TVLbegin: 001.0300\n"},
    {Rule::Text,           Feature::JobTitle,                  "%TVLtitle: ",               {}, "Default job"},
    {Rule::Text,           Feature::JobSenderName,             "%TVLsenderName: ",          {}, "Default Sender"},
    {Rule::Text,           Feature::JobRecipientName,          "%TVLrecipientName: "},
    {Rule::Text,           Feature::JobMessage,                "%TVLmessage: "},
    {Rule::Text,           Feature::JobStartMessage,           "%TVLjobStartMessage: "},
    {Rule::StoredLine,     Feature::JobSignature,              {},                          kSignature},
    {Rule::Number,         Feature::JobCopies,                 "%TVLcopyCount: "},
    {Rule::Word,           Feature::JobPlex,                   "%TVLrequirements: ",        kPlex},
    {Rule::Finishing,      Feature::FinishingBypass},
    {Rule::StoredLine,     Feature::JobCollation,              {},                          kCollation},
    {Rule::Word,           Feature::JobRotation,               "%TVLrotation: ",            kRotation},
    {Rule::Shift,          Feature::ImageShiftX,               "%TVLxImageShift: "},
    {Rule::Shift,          Feature::ImageShiftY,               "%TVLyImageShift: "},
    {Rule::ShiftOfBack,    Feature::ImageShiftX2,              "%TVLx2ImageShift: "},
    {Rule::ShiftOfBack,    Feature::ImageShiftY2,              "%TVLy2ImageShift: "},
    {Rule::StoredLine,     Feature::JobDisposition,            {},                          kDisposition},
    {Rule::StoredLine,     Feature::HighlightPrintingColor,    {},                          kHighlightPrintingColor},
    {Rule::StoredLine,     Feature::HighlightMappingColor,     {},                          kHighlightMappingColor},
    {Rule::StoredLine,     Feature::HighlightMappingAlgorithm, {},                          kHighlightMappingAlgorithm},
    {Rule::StoredLine,     Feature::MismatchedHighlightColor,  {},                          kMismatchedHighlightColor},
    {Rule::Name,           Feature::PaperColor,                "%TVLdocumentPaperColors: ", kPaperColor},
    {Rule::PaperOpacity,   Feature::MediaType,                 "%TVLpaperType-opacity: "},
    {Rule::PaperPreFinish, Feature::MediaType,                 "%TVLpaperType-preFinish: "},
    {Rule::Number,         Feature::PaperWeight,               "%TVLpaperType-weight: "},
    {Rule::PageExceptions, Feature::PageExceptions},
    {Rule::PageExceptions, Feature::PageExceptionsPlex},
};

// --- Finishing. Stored with the blank at its end: the bypass value's name follows.
inline constexpr std::string_view kFinishingBypass = "%TVLoutputLocation: FinishingBypass ";
inline constexpr std::string_view kSlipSheeting    = "%TVLrequirements: slipSheeting\n";

enum class Slot : std::uint8_t
{
    Binding,
    Stitching,
    Booklet,
};

struct SlotLine
{
    std::string_view keyword;
    std::string_view emptyLine;
};

// By Slot.
inline constexpr SlotLine kSlotLines[] = {
    {"%TVLbinding: ",      "%TVLbinding: None\n"},
    {"%TVLedgeStitching: ", "%TVLedgeStitching: None\n"},
    {"%TVLbookletMaker: ", "%TVLbookletMaker: False\n"},
};

struct FinishingText
{
    tagValueEnum value;
    Slot slot;
    std::string_view text;
};

inline constexpr FinishingText kFinishing[] = {
    {Value::FinishingBooklet,             Slot::Booklet,   "True"},
    {Value::StitchingSinglePortrait,      Slot::Stitching, "SinglePortrait"},
    {Value::StitchingSingleLandscape,     Slot::Stitching, "SingleLandscape"},
    {Value::StitchingRightSinglePortrait, Slot::Stitching, "RightSinglePortrait"},
    {Value::StitchingRightSingleLandscape, Slot::Stitching, "RightSingleLandscape"},
    {Value::StitchingDualLandscape,       Slot::Stitching, "DualLandscape"},
    {Value::StitchingDualPortrait,        Slot::Stitching, "DualPortrait"},
    {Value::StitchingRightDualLandscape,  Slot::Stitching, "RightDualLandscape"},
    {Value::StitchingRightDualPortrait,   Slot::Stitching, "RightDualPortrait"},
    {Value::BindingLeft,                  Slot::Binding,   "left"},
    {Value::BindingRight,                 Slot::Binding,   "right"},
};

// --- The type of the paper.
inline constexpr std::string_view kOpaque       = "opaque";
inline constexpr std::string_view kTransparency = "transparency";

struct PreFinish
{
    tagValueEnum media;
    std::string_view drilled;
    std::string_view undrilled;
    bool isFollowedByTabs; // then the text ends in a blank
};

inline constexpr PreFinish kPreFinish[] = {
    {Value::MediaPlain,          "PlainDrilled 3 0",      "Plain 0 0",         false},
    {Value::MediaTransparency,   "PlainDrilled 3 0",      "Plain 0 0",         false},
    {Value::MediaTabStockPreCut, "DrilledPreCutTab 3 ",   "PlainPreCutTab 0 ", true},
    {Value::MediaTabStockFull,   "DrilledPreCutTab 3 ",   "PlainPreCutTab 0 ", true},
    {Value::MediaPreprinted,     "PreprintedDrilled 3 0", "Preprinted 0 0",    false},
};
// Of any other paper: its opacity, then one of these, then the tabs.
inline constexpr std::string_view kDrilledOther   = " 3 ";
inline constexpr std::string_view kUndrilledOther = " 0 ";

// --- Page exceptions. Their lists are read and nothing is written for them, on purpose: these keywords stand in no
// ticket.
inline constexpr std::string_view kPageExceptionKeywords[] = {
    "%TVLpageExceptions: ",
    "%TVLpageExceptions-plex: ",
    "%TVLpageExceptions-rotation: ",
    "%TVLpageExceptions-xShift: ",
    "%TVLpageExceptions-yShift: ",
};
// clang-format on

namespace Checks
{

consteval bool IsKeyword(std::string_view text)
{
    return text.starts_with("%TVL") && text.ends_with(": ") && text.find('\n') == text.npos;
}

consteval bool IsStoredLine(std::string_view text)
{
    return text.starts_with("%TVL") && text.find(": ") != text.npos && text.find('\n') == text.size() - 1;
}

consteval bool IsWord(std::string_view text)
{
    return !text.empty() && text.find('\n') == text.npos;
}

consteval bool Takes(tagFeatureEnum feature, tagValueEnum value)
{
    const FeatureCatalogue::Row* const row = FeatureCatalogue::Find(feature);
    return row != nullptr && row->kind == FeatureCatalogue::Kind::Option && FeatureCatalogue::Allows(*row, value);
}

// Ascending, and so each once; of the feature.
template <class Row>
consteval bool AreValuesOf(tagFeatureEnum feature, std::span<const Row> rows, tagValueEnum Row::*value)
{
    for (std::size_t at = 0; at < rows.size(); ++at)
        if ((at > 0 && rows[at].*value <= rows[at - 1].*value) || !Takes(feature, rows[at].*value))
            return false;
    return true;
}

consteval bool IsOfKind(tagFeatureEnum feature, FeatureCatalogue::Kind kind)
{
    const FeatureCatalogue::Row* const row = FeatureCatalogue::Find(feature);
    return row != nullptr && row->kind == kind;
}

consteval bool HasFittingFeature(const Line& line)
{
    using enum FeatureCatalogue::Kind;
    switch (line.rule)
    {
    case Rule::Always:
        return line.feature == tagFeatureEnum{};
    case Rule::Text:
        return IsOfKind(line.feature, String);
    case Rule::Number:
        return IsOfKind(line.feature, Integer);
    case Rule::Shift:
    case Rule::ShiftOfBack:
        return IsOfKind(line.feature, Dimension);
    case Rule::PageExceptions:
        return IsOfKind(line.feature, List);
    default:
        return IsOfKind(line.feature, Option);
    }
}

consteval bool HasFittingTexts(const Line& line)
{
    for (const ValueText& row : line.values)
        if (line.rule == Rule::StoredLine ? !IsStoredLine(row.text) : !IsWord(row.text))
            return false;
    if (line.rule == Rule::Always)
        return IsStoredLine(line.keyword);
    const bool isWithoutKeyword =
        line.rule == Rule::StoredLine || line.rule == Rule::Finishing || line.rule == Rule::PageExceptions;
    return isWithoutKeyword ? line.keyword.empty() : IsKeyword(line.keyword);
}

consteval bool AreLinesSound()
{
    for (const Line& line : kLines)
        if (!HasFittingFeature(line) || !HasFittingTexts(line) ||
            !AreValuesOf(line.feature, line.values, &ValueText::value))
            return false;
    return true;
}

consteval bool AreSlotLinesSound()
{
    for (const SlotLine& line : kSlotLines)
        if (!IsKeyword(line.keyword) || !IsStoredLine(line.emptyLine) || !line.emptyLine.starts_with(line.keyword))
            return false;
    return std::size(kSlotLines) == static_cast<std::size_t>(Slot::Booklet) + 1;
}

consteval bool IsPreFinishSound()
{
    for (const PreFinish& row : kPreFinish)
        if (row.drilled.ends_with(' ') != row.isFollowedByTabs || row.undrilled.ends_with(' ') != row.isFollowedByTabs)
            return false;
    return true;
}

static_assert(AreLinesSound());
static_assert(IsStoredLine(kSlipSheeting) && kFinishingBypass.ends_with("Bypass ") && AreSlotLinesSound());
static_assert(AreValuesOf<FinishingText>(Feature::Finishing, kFinishing, &FinishingText::value));
static_assert(AreValuesOf<PreFinish>(Feature::MediaType, kPreFinish, &PreFinish::media) && IsPreFinishSound());

} // namespace Checks

} // namespace Jtif
