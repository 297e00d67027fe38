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
    std::int32_t parent;           // the collection whose features hold the setting; 0: it stands by itself
    std::string_view name;         // for people
    std::span<const Range> values; // ascending; empty for kinds that have no values to choose from
};

inline constexpr std::int32_t kLastValue = 2147483647;
// From here on a value is in no table: it has a name of its own, which is stored with it.
inline constexpr std::int32_t kFirstCustomValue = DataModelIds::Value::MediaLastReserved + 1;
inline constexpr std::int32_t kMaxValueNameLength = 64; // characters

namespace Values
{
using namespace DataModelIds::Value;

// clang-format off
inline constexpr Range kCustom           = {kFirstCustomValue, kLastValue};
inline constexpr Range kAutomatic        = {Automatic, Automatic};

inline constexpr Range kCopies[]         = {{1, 32767}};
inline constexpr Range kCount[]          = {{0, 32767}};
inline constexpr Range kText[]           = {{0, 255}};
inline constexpr Range kShift[]          = {{-1'000'000, 1'000'000}}; // a metre
inline constexpr Range kAnyOfTheTables[] = {{1, DataModelIds::Value::MediaLastReserved}};
inline constexpr Range kCollation[]      = {kAutomatic, {Collated, Uncollated}};
inline constexpr Range kPlex[]           = {kAutomatic, {Simplex, DuplexShortEdge}};
inline constexpr Range kSignature[]      = {kAutomatic, {SignatureOff, SignatureOn}};
inline constexpr Range kDisposition[]    = {kAutomatic, {DispositionPrint, DispositionPrintAndSave}};
inline constexpr Range kRotation[]       = {kAutomatic, {Rotation0, Rotation270}};
inline constexpr Range kPrintingColor[]  = {kAutomatic, {HighlightPrintingRed, HighlightPrintingOther}};
inline constexpr Range kMappingColor[]   = {kAutomatic, {HighlightMappingRed, HighlightMappingOther}};
inline constexpr Range kAlgorithm[]      = {kAutomatic, {HighlightAlgorithmAutomatic, HighlightAlgorithmMonochrome}};
inline constexpr Range kMismatch[]       = {kAutomatic, {HighlightMismatchSelectCurrent, HighlightMismatchAbort}};
inline constexpr Range kBypass[]         = {kAutomatic, kCustom};
inline constexpr Range kFinishing[]      = {kAutomatic, {FinishingBooklet, FinishingBooklet},
                                            {StitchingSinglePortrait, StitchingRightDualPortrait},
                                            {BindingLeft, BindingRight}};
inline constexpr Range kPaperColor[]     = {kAutomatic, {PaperColorNone, PaperColorOrange}, kCustom};
inline constexpr Range kDrilling[]       = {kAutomatic, {PaperUndrilled, PaperDrilled}};
// The gaps are reserved: values that no document could name.
inline constexpr Range kMedia[]          = {kAutomatic, {MediaAutoSelect, 6810}, {MediaCardstockGlossy, 6830},
                                            {6832, 6835}, {6838, 6849}, {6851, 6851}, {6853, 6857},
                                            {6859, MediaLastPredefined}, {MediaPreprinted, MediaPreprinted}, kCustom};
// clang-format on
} // namespace Values

namespace Rows
{
using namespace DataModelIds::Feature;

// clang-format off
inline constexpr Row kRows[] = {
    {JobCopies,                 Kind::Integer,    Scope::Document, 0, "JobCopies",                 Values::kCopies},
    {JobCollation,              Kind::Option,     Scope::Document, 0, "JobCollation",              Values::kCollation},
    {JobPlex,                   Kind::Option,     Scope::Document, 0, "JobPlex",                   Values::kPlex},
    {JobSignature,              Kind::Option,     Scope::Document, 0, "JobSignature",              Values::kSignature},
    {JobDisposition,            Kind::Option,     Scope::Document, 0, "JobDisposition",            Values::kDisposition},
    {JobTitle,                  Kind::String,     Scope::Document, 0, "JobTitle",                  Values::kText},
    {JobSenderName,             Kind::String,     Scope::Document, 0, "JobSenderName",             Values::kText},
    {JobRecipientName,          Kind::String,     Scope::Document, 0, "JobRecipientName",          Values::kText},
    {JobMessage,                Kind::String,     Scope::Document, 0, "JobMessage",                Values::kText},
    {JobStartMessage,           Kind::String,     Scope::Document, 0, "JobStartMessage",           Values::kText},
    {JobRotation,               Kind::Option,     Scope::Document, 0, "JobRotation",               Values::kRotation},
    {ImageShiftX,               Kind::Dimension,  Scope::Document, 0, "ImageShiftX",               Values::kShift},
    {ImageShiftY,               Kind::Dimension,  Scope::Document, 0, "ImageShiftY",               Values::kShift},
    {ImageShiftX2,              Kind::Dimension,  Scope::Document, 0, "ImageShiftX2",              Values::kShift},
    {ImageShiftY2,              Kind::Dimension,  Scope::Document, 0, "ImageShiftY2",              Values::kShift},
    {HighlightPrintingColor,    Kind::Option,     Scope::Document, 0, "HighlightPrintingColor",    Values::kPrintingColor},
    {HighlightMappingColor,     Kind::Option,     Scope::Document, 0, "HighlightMappingColor",     Values::kMappingColor},
    {HighlightMappingAlgorithm, Kind::Option,     Scope::Document, 0, "HighlightMappingAlgorithm", Values::kAlgorithm},
    {MismatchedHighlightColor,  Kind::Option,     Scope::Document, 0, "MismatchedHighlightColor",  Values::kMismatch},
    // Looked up in the context of Finishing, but stored by itself: Finishing is an option, which holds no features.
    {SlipSheeting,              Kind::Option,     Scope::Document, 0, "SlipSheeting",              Values::kAnyOfTheTables},
    {FinishingBypass,           Kind::Option,     Scope::Document, 0, "FinishingBypass",           Values::kBypass},
    {PaperColor,                Kind::Option,     Scope::Document, 0, "PaperColor",                Values::kPaperColor},
    {MediaType,                 Kind::Option,     Scope::Document, MediaCollection, "MediaType",   Values::kMedia},
    {TabCount,                  Kind::Integer,    Scope::Document, 0, "TabCount",                  Values::kCount},
    {PaperDrilling,             Kind::Option,     Scope::Document, 0, "PaperDrilling",             Values::kDrilling},
    {PaperWeight,               Kind::Integer,    Scope::Document, 0, "PaperWeight",               Values::kCount},
    {PageExceptionsPlex,        Kind::List,       Scope::Document, 0, "PageExceptionsPlex",        {}},
    {PageExceptions,            Kind::List,       Scope::Document, 0, "PageExceptions",            {}},
    {Finishing,                 Kind::Option,     Scope::Document, 0, "Finishing",                 Values::kFinishing},
    {MediaCollection,           Kind::Collection, Scope::Document, PageMediaCollection, "MediaCollection", {}},
    {PageMediaCollection,       Kind::Collection, Scope::Document, 0, "PageMediaCollection",       {}},
    {ReplaceDriverPaperInSpreadsheets, Kind::Boolean, Scope::Device, 0, "ReplaceDriverPaperInSpreadsheets", {}},
    {DevicePaperList,           Kind::Binary,     Scope::Capabilities, 0, "DevicePaperList",       {}},
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
            !HasSoundParent(kRows[at]) || !HasFittingValues(kRows[at]))
            return false;
    return true;
}

static_assert(IsSound());

} // namespace Checks

} // namespace FeatureCatalogue
