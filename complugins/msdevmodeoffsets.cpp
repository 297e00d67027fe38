// What must hold in the offset tables, so that an edit that breaks one does not build.
#include "complugins/msdevmodeoffsets.h"

#include <bit>

#include "complugins/msdevmodefeatures.h"

namespace
{

namespace Offsets = MsDevmodeOffsets;

constexpr bool IsInPart(const MsDevmodePlace& place)
{
    return place.cell != MsDevmodeCell::NotAvailable && place.cell != MsDevmodeCell::NoOffset &&
           place.cell != MsDevmodeCell::Public && place.cell != MsDevmodeCell::Driver;
}

constexpr bool IsSane(const MsDevmodePlace& place, std::uint32_t smallestPart)
{
    const bool wantsBit = place.cell == MsDevmodeCell::Bit || place.cell == MsDevmodeCell::InverseBit ||
                          place.cell == MsDevmodeCell::PublicRotated;
    return (place.cell == MsDevmodeCell::NoOffset) == (place.offset == Offsets::kNoOffset) &&
           IsInPart(place) == (place.offset != 0 && place.offset < smallestPart - 1) &&
           (wantsBit ? std::has_single_bit(place.mask) : place.mask == 0);
}

constexpr bool EveryRowIsSaneAndInOrder()
{
    for (std::size_t at = 0; at < std::size(Offsets::kRows); ++at)
    {
        const MsDevmodeOffsetRow& row = Offsets::kRows[at];
        if ((at > 0 && Offsets::kRows[at - 1].feature >= row.feature) ||
            !IsSane(row.postScript, Offsets::kPostScriptSizes[0]) || !IsSane(row.unidrv, Offsets::kUnidrvSizes[0]))
            return false;
    }
    return true;
}

// Every setting that is no field of DEVMODEW has a row; of those that are, only one.
constexpr bool EveryPrivateFeatureHasAPlace()
{
    for (std::size_t at = 0; at < MsDevmodeFeatures::kCount; ++at)
    {
        const MsDevmodeFeatureRow& feature = MsDevmodeFeatures::kRows[at];
        bool isFound = false;
        for (const MsDevmodeOffsetRow& row : Offsets::kRows)
            isFound = isFound || row.feature == feature.feature;
        if (isFound != (!feature.isPublic || feature.feature == 3))
            return false;
    }
    return true;
}

constexpr bool EveryDriverTableEndsAndNamesDriverSettings()
{
    for (const MsUnidrvOffsetTable& table : Offsets::kUnidrvTables)
    {
        if (std::end(table.offsets)[-1].feature != 0)
            return false;
        for (const MsUnidrvOffset& row : table.offsets)
            if (row.feature != 0 && !Offsets::DependsOnDriver(row.feature))
                return false;
    }
    return true;
}

static_assert(EveryRowIsSaneAndInOrder());
static_assert(EveryPrivateFeatureHasAPlace());
static_assert(EveryDriverTableEndsAndNamesDriverSettings());

} // namespace
