// The media types that the provider knows: their values in the data model, the options of "PageMediaType" that stand
// for them, and what the Print Schema says of each.
//
// Public names and properties: the platform's "Print Schema Specification", PageMediaType.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <iterator>

#include <tvcore/datamodelids.h>

#include "utilitiesstaticlib/wideliteral.h"

namespace MediaTypeTable
{

// In which namespace an option's name lives: the Print Schema's keywords, or the maker's.
enum Namespace : bool
{
    kPrivate = false,
    kPublic = true,
};

// The scored properties, in the order in which an option has them.
inline constexpr std::array<const WCHAR*, 6> kPropertyNames = {
    W("BackCoating"), W("FrontCoating"), W("Material"), W("PrePrinted"), W("PrePunched"), W("Recycled"),
};
using PropertyValues = std::array<const WCHAR*, kPropertyNames.size()>; // public keywords

struct Row
{
    std::int32_t mediaTypeId;
    const WCHAR* optionName;
    Namespace nameSpace;
    PropertyValues properties;
};

namespace Rows
{
inline constexpr const WCHAR* kSkip = W(""); // the property is not written
inline constexpr const WCHAR* kNone = W("None");
inline constexpr const WCHAR* kPaper = W("Paper");
inline constexpr const WCHAR* kClear = W("Transparency");
inline constexpr const WCHAR* kGloss = W("Glossy");
inline constexpr const WCHAR* kLetter = W("Letterhead");
inline constexpr const WCHAR* kPrinted = W("PrePrinted");
inline constexpr const WCHAR* kPunched = W("PrePunched");
inline constexpr const WCHAR* kAgain = W("Standard");

// clang-format off
// Rows without a usable name are reserved: they stay, so that a value's row is found by its number.
inline constexpr Row kRows[] = {
    // id   option name                               namespace  the properties, in the order above
    { 5001, W("AutoSelect"),                            kPublic,  {kSkip,  kSkip,  kSkip,  kSkip,    kSkip,    kSkip}},
    { 6800, W("Plain"),                                 kPublic,  {kNone,  kNone,  kPaper, kNone,    kNone,    kNone}},
    { 6801, W("Transparency"),                          kPublic,  {kNone,  kNone,  kClear, kNone,    kNone,    kNone}},
    { 6802, W("tab-stock"),                             kPrivate, {kNone,  kNone,  kPaper, kNone,    kNone,    kNone}},
    { 6803, W("TabStockPreCut"),                        kPublic,  {kNone,  kNone,  kPaper, kNone,    kNone,    kNone}},
    { 6804, W("TabStockFull"),                          kPublic,  {kNone,  kNone,  kPaper, kNone,    kNone,    kNone}},
    { 6805, W("Label"),                                 kPublic,  {kSkip,  kSkip,  kSkip,  kNone,    kNone,    kNone}},
    { 6806, W("EnvelopePlain"),                         kPublic,  {kNone,  kNone,  kPaper, kNone,    kNone,    kNone}},
    { 6807, W("stationery-heavyweight"),                kPrivate, {kNone,  kNone,  kPaper, kNone,    kNone,    kNone}},
    { 6808, W("Bond"),                                  kPublic,  {kNone,  kNone,  kPaper, kNone,    kNone,    kNone}},
    { 6809, W("other"),                                 kPrivate, {kSkip,  kSkip,  kSkip,  kSkip,    kSkip,    kSkip}},
    { 6810, W("system-default"),                        kPrivate, {kSkip,  kSkip,  kPaper, kSkip,    kSkip,    kSkip}},
    { 6811, W(""),                                      kPrivate, {kSkip,  kSkip,  kSkip,  kSkip,    kSkip,    kSkip}},
    { 6812, W(""),                                      kPrivate, {kSkip,  kSkip,  kSkip,  kSkip,    kSkip,    kSkip}},
    { 6813, W(""),                                      kPrivate, {kSkip,  kSkip,  kSkip,  kSkip,    kSkip,    kSkip}},
    { 6814, W(""),                                      kPrivate, {kSkip,  kSkip,  kSkip,  kSkip,    kSkip,    kSkip}},
    { 6815, W(""),                                      kPrivate, {kSkip,  kSkip,  kSkip,  kSkip,    kSkip,    kSkip}},
    { 6816, W(""),                                      kPrivate, {kSkip,  kSkip,  kSkip,  kSkip,    kSkip,    kSkip}},
    { 6817, W(""),                                      kPrivate, {kSkip,  kSkip,  kSkip,  kSkip,    kSkip,    kSkip}},
    { 6818, W(""),                                      kPrivate, {kSkip,  kSkip,  kSkip,  kSkip,    kSkip,    kSkip}},
    { 6819, W(""),                                      kPrivate, {kSkip,  kSkip,  kSkip,  kSkip,    kSkip,    kSkip}},
    { 6820, W("cardstock-glossy"),                      kPrivate, {kSkip,  kGloss, kPaper, kNone,    kNone,    kNone}},
    { 6821, W("letterhead"),                            kPrivate, {kNone,  kNone,  kPaper, kLetter,  kNone,    kNone}},
    { 6822, W("CardStock"),                             kPublic,  {kNone,  kNone,  kPaper, kNone,    kNone,    kNone}},
    { 6823, W("cardstock-lightweight"),                 kPrivate, {kNone,  kNone,  kPaper, kNone,    kNone,    kNone}},
    { 6824, W("thick-cardstock"),                       kPrivate, {kNone,  kNone,  kPaper, kNone,    kNone,    kNone}},
    { 6825, W("Photographic"),                          kPublic,  {kSkip,  kSkip,  kPaper, kNone,    kNone,    kNone}},
    { 6826, W("business-cards"),                        kPrivate, {kNone,  kNone,  kPaper, kNone,    kNone,    kNone}},
    { 6827, W("greeting-cards"),                        kPrivate, {kNone,  kNone,  kPaper, kNone,    kNone,    kNone}},
    { 6828, W("cd-dvd-labels"),                         kPrivate, {kNone,  kNone,  kPaper, kNone,    kNone,    kNone}},
    { 6829, W("cd-dvd-inserts"),                        kPrivate, {kNone,  kNone,  kPaper, kNone,    kNone,    kNone}},
    { 6830, W("stationery-colored"),                    kPrivate, {kNone,  kNone,  kPaper, kNone,    kNone,    kNone}},
    { 6831, W("-"),                                     kPrivate, {kSkip,  kSkip,  kSkip,  kSkip,    kSkip,    kSkip}},
    { 6832, W("stationery-lightweight"),                kPrivate, {kNone,  kNone,  kPaper, kNone,    kNone,    kNone}},
    { 6833, W("stationery-pre-punched"),                kPrivate, {kNone,  kNone,  kPaper, kNone,    kPunched, kNone}},
    { 6834, W("stationery-pre-printed"),                kPrivate, {kNone,  kNone,  kPaper, kPrinted, kNone,    kNone}},
    { 6835, W("extra-thick-cardstock"),                 kPrivate, {kNone,  kNone,  kPaper, kNone,    kNone,    kNone}},
    { 6836, W("-"),                                     kPrivate, {kSkip,  kSkip,  kSkip,  kSkip,    kSkip,    kSkip}},
    { 6837, W("-"),                                     kPrivate, {kSkip,  kSkip,  kSkip,  kSkip,    kSkip,    kSkip}},
    { 6838, W("second-side"),                           kPrivate, {kSkip,  kSkip,  kSkip,  kSkip,    kSkip,    kSkip}},
    { 6839, W("recycled"),                              kPrivate, {kNone,  kNone,  kPaper, kNone,    kNone,    kAgain}},
    { 6840, W("custom1"),                               kPrivate, {kSkip,  kSkip,  kSkip,  kSkip,    kSkip,    kSkip}},
    { 6841, W("custom2"),                               kPrivate, {kSkip,  kSkip,  kSkip,  kSkip,    kSkip,    kSkip}},
    { 6842, W("custom3"),                               kPrivate, {kSkip,  kSkip,  kSkip,  kSkip,    kSkip,    kSkip}},
    { 6843, W("custom4"),                               kPrivate, {kSkip,  kSkip,  kSkip,  kSkip,    kSkip,    kSkip}},
    { 6844, W("custom5"),                               kPrivate, {kSkip,  kSkip,  kSkip,  kSkip,    kSkip,    kSkip}},
    { 6845, W("custom6"),                               kPrivate, {kSkip,  kSkip,  kSkip,  kSkip,    kSkip,    kSkip}},
    { 6846, W("custom7"),                               kPrivate, {kSkip,  kSkip,  kSkip,  kSkip,    kSkip,    kSkip}},
    { 6847, W("custom8"),                               kPrivate, {kSkip,  kSkip,  kSkip,  kSkip,    kSkip,    kSkip}},
    { 6848, W("custom9"),                               kPrivate, {kSkip,  kSkip,  kSkip,  kSkip,    kSkip,    kSkip}},
    { 6849, W("custom10"),                              kPrivate, {kSkip,  kSkip,  kSkip,  kSkip,    kSkip,    kSkip}},
    { 6850, W("-"),                                     kPrivate, {kSkip,  kSkip,  kSkip,  kSkip,    kSkip,    kSkip}},
    { 6851, W("cardstock-reloaded"),                    kPrivate, {kNone,  kNone,  kPaper, kNone,    kNone,    kNone}},
    { 6852, W("-"),                                     kPrivate, {kSkip,  kSkip,  kSkip,  kSkip,    kSkip,    kSkip}},
    { 6853, W("cardstock-heavyweight-reloaded"),        kPrivate, {kNone,  kNone,  kPaper, kNone,    kNone,    kNone}},
    { 6854, W("labels-heavyweight"),                    kPrivate, {kNone,  kSkip,  kPaper, kNone,    kNone,    kNone}},
    { 6855, W("labels-extra-heavyweight"),              kPrivate, {kNone,  kSkip,  kPaper, kNone,    kNone,    kNone}},
    { 6856, W("cardstock-lightweight-glossy"),          kPrivate, {kSkip,  kGloss, kPaper, kNone,    kNone,    kNone}},
    { 6857, W("cardstock-lightweight-glossy-reloaded"), kPrivate, {kGloss, kSkip,  kPaper, kNone,    kNone,    kNone}},
    { 6858, W("-"),                                     kPrivate, {kSkip,  kSkip,  kSkip,  kSkip,    kSkip,    kSkip}},
    { 6859, W("cardstock-glossy-reloaded"),             kPrivate, {kGloss, kSkip,  kPaper, kNone,    kNone,    kNone}},
    { 6860, W("cardstock-heavyweight-glossy"),          kPrivate, {kSkip,  kGloss, kPaper, kNone,    kNone,    kNone}},
    { 6861, W("cardstock-heavyweight-glossy-reloaded"), kPrivate, {kGloss, kSkip,  kPaper, kNone,    kNone,    kNone}},
    { 6862, W("stationery2"),                           kPrivate, {kNone,  kNone,  kPaper, kNone,    kNone,    kNone}},
    { 6863, W("cardstock-lightweight-reloaded"),        kPrivate, {kNone,  kNone,  kPaper, kNone,    kNone,    kNone}},
    { 6864, W("textured-surface"),                      kPrivate, {kSkip,  kSkip,  kPaper, kNone,    kNone,    kNone}},
    { 6865, W("ordered-stock"),                         kPrivate, {kSkip,  kSkip,  kSkip,  kSkip,    kSkip,    kSkip}},
    { 6866, W("gloss-f"),                               kPrivate, {kSkip,  kGloss, kPaper, kNone,    kNone,    kNone}},
    { 6867, W("heavyweight-f"),                         kPrivate, {kNone,  kNone,  kPaper, kNone,    kNone,    kNone}},
    { 6868, W("archive"),                               kPrivate, {kNone,  kNone,  kPaper, kNone,    kNone,    kNone}},
    { 6869, W("cardstock-postcard"),                    kPrivate, {kNone,  kNone,  kPaper, kNone,    kNone,    kNone}},
    { 6870, W("heavyweight-side2"),                     kPrivate, {kNone,  kNone,  kPaper, kNone,    kNone,    kNone}},
    { 6871, W("heavyweight-gloss-side2"),               kPrivate, {kNone,  kNone,  kPaper, kNone,    kNone,    kNone}},
    { 6872, W("extra-heavyweight-side2"),               kPrivate, {kNone,  kNone,  kPaper, kNone,    kNone,    kNone}},
    { 6873, W("lightweight-gloss"),                     kPrivate, {kNone,  kNone,  kPaper, kNone,    kNone,    kNone}},
    { 6874, W("lightweight-gloss-side2"),               kPrivate, {kNone,  kNone,  kPaper, kNone,    kNone,    kNone}},
    { 6875, W("lightweight-cardstock"),                 kPrivate, {kNone,  kNone,  kPaper, kNone,    kNone,    kNone}},
    { 6876, W("lightweight-cardstock-side2"),           kPrivate, {kNone,  kNone,  kPaper, kNone,    kNone,    kNone}},
    { 6877, W("cardstock-extra-heavyweight"),           kPrivate, {kNone,  kNone,  kPaper, kNone,    kNone,    kNone}},
    { 6878, W("cardstock-heavyweight"),                 kPrivate, {kNone,  kNone,  kPaper, kNone,    kNone,    kNone}},
    {   -1, W(""),                                      kPrivate, {kSkip,  kSkip,  kSkip,  kSkip,    kSkip,    kSkip}},
};
// clang-format on
} // namespace Rows
using Rows::kRows;

inline constexpr std::int32_t kFirstId = DataModelIds::Value::MediaAutoSelect;    // the number of row 0, which is
inline constexpr std::int32_t kLastId = DataModelIds::Value::MediaLastPredefined; // published like "no choice"

// Null for a number that has no row. The row of kFirstId holds the value that means automatic selection.
[[nodiscard]] constexpr const Row* FindRow(std::int32_t mediaTypeId) noexcept
{
    return mediaTypeId >= kFirstId && mediaTypeId <= kLastId ? &kRows[mediaTypeId - kFirstId] : nullptr;
}

namespace Checks
{

constexpr bool IsReserved(std::size_t row) noexcept
{
    return (row >= 12 && row <= 20) || row == 32 || row == 37 || row == 38 || row == 51 || row == 53 || row == 59;
}

constexpr bool HasUsableName(const Row& row) noexcept
{
    const WStringView name = row.optionName;
    return !name.empty() && name != WStringView(W("-"));
}

constexpr bool HasProperties(const Row& row) noexcept
{
    for (const WCHAR* const value : row.properties)
        if (!WStringView(value).empty())
            return true;
    return false;
}

consteval bool IsSound()
{
    constexpr std::size_t kEnd = std::size(kRows) - 1;
    if (kRows[0].mediaTypeId != DataModelIds::Value::Automatic || kRows[kEnd].mediaTypeId != -1)
        return false;
    for (std::size_t at = 1; at < kEnd; ++at)
        if (kRows[at].mediaTypeId != kFirstId + static_cast<std::int32_t>(at) ||
            HasUsableName(kRows[at]) == IsReserved(at) || (IsReserved(at) && HasProperties(kRows[at])))
            return false;
    return HasUsableName(kRows[0]) && !HasUsableName(kRows[kEnd]) && !HasProperties(kRows[kEnd]);
}

static_assert(std::size(kRows) == 81);
static_assert(kLastId - kFirstId == 79);
static_assert(IsSound());

} // namespace Checks

} // namespace MediaTypeTable
