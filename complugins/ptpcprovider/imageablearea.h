// What of a sheet can be printed on, as the property "PageImageableSize" says it, in each of the four orientations.
#pragma once

#include <windows.h>

#include <tvcore/printermodel.h>

#include "utilitiesstaticlib/wideliteral.h"

namespace ImageableArea
{

enum class Geometry
{
    Portrait,
    ReversedPortrait,
    Landscape,
};

struct Area // microns
{
    LONG sizeWidth;
    LONG sizeHeight;
    LONG originWidth;
    LONG originHeight;
    LONG extentWidth;
    LONG extentHeight;

    friend bool operator==(const Area&, const Area&) = default;
};

struct OrientationRow
{
    WStringView orientation; // an option of "PageOrientation"
    Geometry geometry;
};

// "ReverseLandscape" is not turned, on purpose: only its origin is reversed.
inline constexpr OrientationRow kOrientations[] = {
    {W("Landscape"), Geometry::Landscape},
    {W("ReversePortrait"), Geometry::ReversedPortrait},
    {W("ReverseLandscape"), Geometry::ReversedPortrait},
};

// Anything else is portrait.
[[nodiscard]] constexpr Geometry GeometryOf(WStringView orientation) noexcept
{
    for (const OrientationRow& row : kOrientations)
        if (row.orientation == orientation)
            return row.geometry;
    return Geometry::Portrait;
}

// Of a sheet's measures in portrait, microns. What margins leave of a sheet that is smaller than they are is negative.
[[nodiscard]] constexpr Area AreaOf(Geometry geometry, LONG width, LONG height,
                                    const PrinterModel::Margins& margins) noexcept
{
    const auto between = [](LONG whole, LONG before, LONG behind)
    {
        return static_cast<LONG>(LONGLONG{whole} - before - behind);
    };
    const LONG across = between(width, margins.right, margins.left);
    const LONG down = between(height, margins.bottom, margins.top);
    // clang-format off
    switch (geometry)
    {
    //                               size           origin                         extent
    case Geometry::ReversedPortrait:
        return                      {width, height, margins.right,  margins.bottom, across, down};
    case Geometry::Landscape:
        return                      {height, width, margins.bottom, margins.left,   down,   across};
    case Geometry::Portrait:
        break;
    }
    return                          {width, height, margins.left,   margins.top,    across, down};
    // clang-format on
}

} // namespace ImageableArea
