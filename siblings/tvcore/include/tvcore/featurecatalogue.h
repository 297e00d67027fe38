// The feature catalogue: what kind each feature of the data model is, where its setting lies, and which values it
// takes.
//
// Constant data, nothing that must be linked: printer models, devmode tools and the data model all go by it. The core
// driver's features are not in it: their settings lie in the core driver's own part of a devmode.
#pragma once

#include <cstddef>
#include <cstdint>
#include <iterator>
#include <span>
#include <string_view>

#include <tvcore/datamodelids.h>

namespace FeatureCatalogue
{

enum class Kind : std::uint8_t
{
    Boolean,
    Integer,
    String,
    Option,
    Dimension,
    Collection, // holds features of its own, once
    List,       // holds features of its own, any number of times
    Binary,     // bytes that only the driver writes
};

// Whose setting it is.
enum class Scope : std::uint8_t
{
    Document,     // one document's: in its devmode
    Device,       // the printer's: in its device settings
    Capabilities, // what the driver says of the device, in a devmode
};

// First and last: of numbers or option values, of a text's length in characters, of a length in microns.
struct Range
{
    std::int32_t first;
    std::int32_t last;
};

struct Row
{
    std::int32_t feature;
    Kind kind;
    Scope scope;
    std::string_view name;         // for people
    std::span<const Range> values; // ascending; empty for kinds that have no values to choose from
    std::int32_t parent = 0;       // the collection whose features hold the setting; 0: it stands by itself
    std::int32_t context = 0;      // a feature in whose context it is looked up although it is stored elsewhere
};

inline constexpr std::int32_t kLastValue = 2147483647;
// From here on a value is in no table: it has a name of its own, which is stored with it.
inline constexpr std::int32_t kFirstCustomValue = DataModelIds::Value::MediaLastReserved + 1;
inline constexpr std::int32_t kMaxValueNameLength = 64; // characters

namespace Values
{
namespace Value = DataModelIds::Value;

// clang-format off
inline constexpr Range kCustom           = {kFirstCustomValue, kLastValue};
inline constexpr Range kAutomatic        = {Value::Automatic, Value::Automatic};

inline constexpr Range kCopies[]         = {{1, 32767}};
inline constexpr Range kCount[]          = {{0, 32767}};
inline constexpr Range kText[]           = {{0, 255}};
inline constexpr Range kShift[]          = {{-1'000'000, 1'000'000}}; // a metre
inline constexpr Range kAnyOfTheTables[] = {{1, Value::MediaLastReserved}};
inline constexpr Range kCollation[]      = {kAutomatic, {Value::Collated, Value::Uncollated}};
inline constexpr Range kPlex[]           = {kAutomatic, {Value::Simplex, Value::DuplexShortEdge}};
inline constexpr Range kSignature[]      = {kAutomatic, {Value::SignatureOff, Value::SignatureOn}};
inline constexpr Range kDisposition[]    = {kAutomatic, {Value::DispositionPrint, Value::DispositionPrintAndSave}};
inline constexpr Range kRotation[]       = {kAutomatic, {Value::Rotation0, Value::Rotation270}};
inline constexpr Range kPrintingColor[]  = {kAutomatic, {Value::HighlightPrintingRed, Value::HighlightPrintingOther}};
inline constexpr Range kMappingColor[]   = {kAutomatic, {Value::HighlightMappingRed, Value::HighlightMappingOther}};
inline constexpr Range kAlgorithm[]      = {kAutomatic,
                                            {Value::HighlightAlgorithmAutomatic, Value::HighlightAlgorithmMonochrome}};
inline constexpr Range kMismatch[]       = {kAutomatic,
                                            {Value::HighlightMismatchSelectCurrent, Value::HighlightMismatchAbort}};
inline constexpr Range kBypass[]         = {kAutomatic, kCustom};
inline constexpr Range kFinishing[]      = {kAutomatic, {Value::FinishingBooklet, Value::FinishingBooklet},
                                            {Value::StitchingSinglePortrait, Value::StitchingRightDualPortrait},
                                            {Value::BindingLeft, Value::BindingRight}};
inline constexpr Range kPaperColor[]     = {kAutomatic, {Value::PaperColorNone, Value::PaperColorOrange}, kCustom};
inline constexpr Range kDrilling[]       = {kAutomatic, {Value::PaperUndrilled, Value::PaperDrilled}};
// The gaps are reserved: values that no document could name.
inline constexpr Range kMedia[]          = {kAutomatic, {Value::MediaAutoSelect, 6810},
                                            {Value::MediaCardstockGlossy, 6830}, {6832, 6835}, {6838, 6849}, {6851, 6851}, {6853, 6857},
                                            {6859, Value::MediaLastPredefined},
                                            {Value::MediaPreprinted, Value::MediaPreprinted}, kCustom};
// clang-format on
} // namespace Values

namespace Rows
{
namespace Feature = DataModelIds::Feature;
using enum Kind;
using enum Scope;

// clang-format off
inline constexpr Row kRows[] = {
    {Feature::JobCopies,                  Integer,    Document, "JobCopies",                 Values::kCopies},
    {Feature::JobCollation,               Option,     Document, "JobCollation",              Values::kCollation},
    {Feature::JobPlex,                    Option,     Document, "JobPlex",                   Values::kPlex},
    {Feature::JobSignature,               Option,     Document, "JobSignature",              Values::kSignature},
    {Feature::JobDisposition,             Option,     Document, "JobDisposition",            Values::kDisposition},
    {Feature::JobTitle,                   String,     Document, "JobTitle",                  Values::kText},
    {Feature::JobSenderName,              String,     Document, "JobSenderName",             Values::kText},
    {Feature::JobRecipientName,           String,     Document, "JobRecipientName",          Values::kText},
    {Feature::JobMessage,                 String,     Document, "JobMessage",                Values::kText},
    {Feature::JobStartMessage,            String,     Document, "JobStartMessage",           Values::kText},
    {Feature::JobRotation,                Option,     Document, "JobRotation",               Values::kRotation},
    {Feature::ImageShiftX,                Dimension,  Document, "ImageShiftX",               Values::kShift},
    {Feature::ImageShiftY,                Dimension,  Document, "ImageShiftY",               Values::kShift},
    {Feature::ImageShiftX2,               Dimension,  Document, "ImageShiftX2",              Values::kShift},
    {Feature::ImageShiftY2,               Dimension,  Document, "ImageShiftY2",              Values::kShift},
    {Feature::HighlightPrintingColor,     Option,     Document, "HighlightPrintingColor",    Values::kPrintingColor},
    {Feature::HighlightMappingColor,      Option,     Document, "HighlightMappingColor",     Values::kMappingColor},
    {Feature::HighlightMappingAlgorithm,  Option,     Document, "HighlightMappingAlgorithm", Values::kAlgorithm},
    {Feature::MismatchedHighlightColor,   Option,     Document, "MismatchedHighlightColor",  Values::kMismatch},
    // Stored by itself: Finishing is an option, which holds no features.
    {Feature::SlipSheeting,               Option,     Document, "SlipSheeting",              Values::kAnyOfTheTables, 0, Feature::Finishing},
    {Feature::FinishingBypass,            Option,     Document, "FinishingBypass",           Values::kBypass},
    {Feature::PaperColor,                 Option,     Document, "PaperColor",                Values::kPaperColor},
    {Feature::MediaType,                  Option,     Document, "MediaType",                 Values::kMedia, Feature::MediaCollection},
    {Feature::TabCount,                   Integer,    Document, "TabCount",                  Values::kCount},
    {Feature::PaperDrilling,              Option,     Document, "PaperDrilling",             Values::kDrilling},
    {Feature::PaperWeight,                Integer,    Document, "PaperWeight",               Values::kCount},
    {Feature::PageExceptionsPlex,         List,       Document, "PageExceptionsPlex",        {}},
    {Feature::PageExceptions,             List,       Document, "PageExceptions",            {}},
    {Feature::Finishing,                  Option,     Document, "Finishing",                 Values::kFinishing},
    {Feature::MediaCollection,            Collection, Document, "MediaCollection",           {}, Feature::PageMediaCollection},
    {Feature::PageMediaCollection,        Collection, Document, "PageMediaCollection",       {}},
    {Feature::ReplaceDriverPaperInSpreadsheets, Boolean, Device, "ReplaceDriverPaperInSpreadsheets", {}},
    {Feature::DevicePaperList,            Binary,     Capabilities, "DevicePaperList",           {}},
};
// clang-format on
} // namespace Rows
using Rows::kRows; // ascending by feature

// Null for a feature that the catalogue does not have.
[[nodiscard]] constexpr const Row* Find(std::int32_t feature) noexcept
{
    for (const Row& row : kRows)
        if (row.feature == feature)
            return &row;
    return nullptr;
}

// Whether the feature is looked up in that feature's context: within it, or with it.
[[nodiscard]] constexpr bool StandsIn(const Row& row, std::int32_t context) noexcept
{
    for (const Row* within = &row; within != nullptr; within = Find(within->parent))
        if (within->parent == context || within->context == context)
            return true;
    return false;
}

// Whether the number, the text's length or the length in microns is one that the feature takes.
[[nodiscard]] constexpr bool Allows(const Row& row, std::int64_t value) noexcept
{
    for (const Range& range : row.values)
        if (value >= range.first && value <= range.last)
            return true;
    return false;
}

// Whether the feature takes values that bring a name of their own.
[[nodiscard]] constexpr bool TakesCustomValues(const Row& row) noexcept
{
    return row.kind == Kind::Option && Allows(row, kFirstCustomValue);
}

namespace Checks
{

consteval bool AreAscending(std::span<const Range> values)
{
    for (std::size_t at = 0; at < values.size(); ++at)
        if (values[at].first > values[at].last || (at > 0 && values[at].first <= values[at - 1].last))
            return false;
    return true;
}

consteval bool HasSoundParent(const Row& row)
{
    const Row* const parent = Find(row.parent);
    return row.parent == 0 || (parent != nullptr && parent->kind == Kind::Collection && parent->scope == row.scope &&
                               (parent->parent == 0 || parent->parent > parent->feature)); // upwards only: no circle
}

consteval bool HasSoundContext(const Row& row)
{
    return row.context == 0 || (Find(row.context) != nullptr && row.context != row.feature);
}

consteval bool HasFittingValues(const Row& row)
{
    const bool takesValues = row.kind == Kind::Integer || row.kind == Kind::String || row.kind == Kind::Option ||
                             row.kind == Kind::Dimension;
    const bool oneRange = row.kind == Kind::Option || row.values.size() == 1;
    return takesValues ? oneRange && !row.values.empty() && AreAscending(row.values) : row.values.empty();
}

consteval bool IsSound()
{
    for (std::size_t at = 0; at < std::size(kRows); ++at)
        if ((at > 0 && kRows[at].feature <= kRows[at - 1].feature) || kRows[at].name.empty() ||
            !HasSoundParent(kRows[at]) || !HasSoundContext(kRows[at]) || !HasFittingValues(kRows[at]))
            return false;
    return true;
}

static_assert(IsSound());

} // namespace Checks

} // namespace FeatureCatalogue
