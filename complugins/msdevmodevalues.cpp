// What must hold in the value tables, so that an edit that breaks one does not build.
#include "complugins/msdevmodevalues.h"

#include <string_view>

#include "complugins/msdevmodefeatures.h"

namespace
{

using MsDevmodeValues::kSelections;

constexpr bool IsEnd(const MsDevmodeValueRow& row)
{
    return row.devmodeValue == 0 && row.valueId == 0 && row.displayName == nullptr && row.keyword == nullptr &&
           row.optionIndex == 0;
}

// Behind the last row of each table, which a selection leaves out, is its end.
constexpr bool EveryTableHasItsEndAndNoOther()
{
    for (const MsDevmodeValueSelection& selection : kSelections)
    {
        for (const MsDevmodeValueRow& row : selection.table)
            if (row.valueId == 0 || row.displayName == nullptr)
                return false;
        if (selection.table.empty() || !IsEnd(selection.table.data()[selection.table.size()]))
            return false;
    }
    return true;
}

// One devmode value is always one data-model value and the other way round; a keyword stands once.
constexpr bool EveryRowAgreesWithItsTable()
{
    for (const MsDevmodeValueSelection& selection : kSelections)
        for (std::size_t at = 0; at < selection.table.size(); ++at)
            for (std::size_t other = 0; other < at; ++other)
            {
                const MsDevmodeValueRow& row = selection.table[at];
                const MsDevmodeValueRow& former = selection.table[other];
                if ((row.devmodeValue == former.devmodeValue) != (row.valueId == former.valueId) ||
                    (row.keyword == nullptr) != (former.keyword == nullptr) ||
                    (row.keyword != nullptr && std::string_view(row.keyword) == former.keyword))
                    return false;
            }
    return true;
}

// A setting that has no keyword has no options with keywords, and the other way round.
constexpr bool KeywordsStandWhereTheFeatureHasOne()
{
    for (const MsDevmodeValueSelection& selection : kSelections)
        for (const MsDevmodeFeatureRow& feature : MsDevmodeFeatures::kRows)
            if (feature.feature == selection.feature &&
                (feature.keyword == nullptr) != (selection.table.front().keyword == nullptr))
                return false;
    return true;
}

constexpr bool SomeDriverHas(const MsDevmodeValueSelection& wanted)
{
    constexpr std::uint32_t kKinds[] = {MsDriverKind::kUnidrvA, MsDriverKind::kUnidrvB, MsDriverKind::kPostScript,
                                        MsDriverKind::kPlainOrientation};
    for (const std::uint32_t kind : kKinds)
        for (std::uint32_t flags = 0; flags <= MsDriverKind::kCoreFlagsMask; ++flags)
            for (const MsDevmodeValueSelection& selection : kSelections)
                if (selection.feature == wanted.feature && selection.Fits({kind, 0, flags}))
                {
                    if (&selection == &wanted)
                        return true;
                    break; // the first that fits counts
                }
    return false;
}

constexpr bool EveryTableCanBeReached()
{
    for (const MsDevmodeValueSelection& selection : kSelections)
        if (!SomeDriverHas(selection))
            return false;
    return true;
}

static_assert(EveryTableHasItsEndAndNoOther());
static_assert(EveryRowAgreesWithItsTable());
static_assert(KeywordsStandWhereTheFeatureHasOne());
static_assert(EveryTableCanBeReached());

} // namespace
