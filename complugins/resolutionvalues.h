// The data model's values of resolutions.
#pragma once

#include <cstdint>

#include <tvcore/datamodelids.h>

namespace ResolutionValues
{

struct Row
{
    std::uint32_t x; // dots per inch
    std::uint32_t y;
    DataModelIds::tagValueEnum value;
};

inline constexpr Row kRows[] = {
    {200, 200, DataModelIds::Value::MsResolution200x200},     {300, 300, DataModelIds::Value::MsResolution300x300},
    {400, 400, DataModelIds::Value::MsResolution400x400},     {600, 600, DataModelIds::Value::MsResolution600x600},
    {600, 1200, DataModelIds::Value::MsResolution600x1200},   {1200, 600, DataModelIds::Value::MsResolution1200x600},
    {1200, 1200, DataModelIds::Value::MsResolution1200x1200}, {1800, 1800, DataModelIds::Value::MsResolution1800x1800},
    {2400, 2400, DataModelIds::Value::MsResolution2400x2400},
};

// 0 for a resolution that has no value.
[[nodiscard]] constexpr std::int32_t ValueOf(std::uint32_t x, std::uint32_t y) noexcept
{
    for (const Row& row : kRows)
        if (row.x == x && row.y == y)
            return row.value;
    return 0;
}

} // namespace ResolutionValues
