// The product strings that the provider publishes, by number. Their texts are the printer model's.
#pragma once

#include <cstdint>

namespace ProductStrings
{

inline constexpr std::int32_t kAutomatic = 264;
inline constexpr std::int32_t kCopies = 418;
inline constexpr std::int32_t kOneSided = 10027;
inline constexpr std::int32_t kTwoSidedShortEdge = 10029;
inline constexpr std::int32_t kOutputQuality = 10146;
inline constexpr std::int32_t kColorOff = 10210;
inline constexpr std::int32_t kColorBySystem = 10211;
inline constexpr std::int32_t kColorManagement = 10214;
inline constexpr std::int32_t kTwoSidedLongEdge = 10290;
inline constexpr std::int32_t kDuplex = 40373;
inline constexpr std::int32_t kResolution = 41033;
inline constexpr std::int32_t kMediaSize = 41034;
inline constexpr std::int32_t kMediaType = 41035;
inline constexpr std::int32_t kRenderingIntent = 41065;
inline constexpr std::int32_t kAbsoluteColorimetric = 41066;
inline constexpr std::int32_t kRelativeColorimetric = 41067;
inline constexpr std::int32_t kPhotographs = 41068;
inline constexpr std::int32_t kBusinessGraphics = 41069;
inline constexpr std::int32_t kColorByDevice = 41075;

} // namespace ProductStrings
