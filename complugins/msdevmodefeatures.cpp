// What must hold in the feature table, so that an edit that breaks it does not build.
#include "complugins/msdevmodefeatures.h"

#include <string_view>

#include "complugins/msdriverkind.h"

namespace
{

using MsDevmodeFeatures::kCount;
using MsDevmodeFeatures::kRows;

constexpr std::uint32_t kFirst = 3;
constexpr std::uint32_t kLastPublic = 18;
constexpr std::uint32_t kLast = 35;

constexpr bool IsEnd(const MsDevmodeFeatureRow& row)
{
    return row.mask == 0 && row.feature == 0 && row.name == nullptr && row.keyword == nullptr;
}

constexpr bool OnlyTheLastRowIsTheEnd()
{
    for (std::size_t at = 0; at < kCount; ++at)
        if (IsEnd(kRows[at]))
            return false;
    return IsEnd(kRows[kCount]);
}

constexpr bool EveryFeatureHasARow()
{
    for (std::uint32_t feature = kFirst; feature <= kLast; ++feature)
    {
        bool isFound = false;
        for (std::size_t at = 0; at < kCount; ++at)
            isFound = isFound || kRows[at].feature == feature;
        if (!isFound)
            return false;
    }
    return true;
}

constexpr bool EveryRowIsSane()
{
    constexpr std::uint32_t kKnownBits = MsDriverKind::kKindMask | MsDriverKind::kPlatformMask;
    for (std::size_t at = 0; at < kCount; ++at)
    {
        const MsDevmodeFeatureRow& row = kRows[at];
        const std::string_view name = row.name;
        if (row.feature < kFirst || row.feature > kLast || (row.mask & ~kKnownBits) != 0 ||
            row.isPublic != (row.feature <= kLastPublic) || !name.starts_with("FEAT_MS_") ||
            row.isExposed == name.starts_with("FEAT_MS_INTERNAL_") || (row.keyword != nullptr && *row.keyword == '\0'))
            return false;
        for (std::size_t other = 0; other < at; ++other)
            if ((kRows[other].feature == row.feature) != (name == kRows[other].name))
                return false;
    }
    return true;
}

static_assert(kCount == 37);
static_assert(OnlyTheLastRowIsTheEnd());
static_assert(EveryFeatureHasARow());
static_assert(EveryRowIsSane());

} // namespace
