// The core drivers' settings in words, for people.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace CoreFeatureWords
{

// "duplex"
[[nodiscard]] std::string_view Label(std::uint32_t feature);
// "flip on the long edge"; the display name where it says as much.
[[nodiscard]] std::string Option(std::int32_t valueId, const std::string& displayName);
// A value that no table has, with its unit.
[[nodiscard]] std::string Number(std::uint32_t feature, std::uint32_t value);

} // namespace CoreFeatureWords
