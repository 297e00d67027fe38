// The driver data of a ticket, decoded for people: a devmode's maker's part as Base64, behind its CRC-32.
#pragma once

#include <nlohmann/json_fwd.hpp>
#include <string>

// "present", "characters", "bytes" (of the part), "crcValid", "fault" (why the driver would ignore it, in words; null
// when it would not), and for data that it would take "part", "settings" and "features".
[[nodiscard]] nlohmann::ordered_json DescribeDriverData(const std::string& text);
