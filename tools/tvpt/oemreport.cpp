#include "oemreport.h"

#include <nlohmann/json.hpp>
#include <set>

namespace
{

namespace Format = OemDevmodeFormat;
using nlohmann::ordered_json;

ordered_json EntryMeaning(std::uint16_t key, bool isRepeated)
{
    if (isRepeated)
        return "repeated";
    switch (key)
    {
    case Format::kPersistentAttributesKey:
        return "settings";
    case Format::kApplicationNameKey:
        return "application";
    default:
        return nullptr;
    }
}

} // namespace

ordered_json FaultJson(const std::string& fault)
{
    return fault.empty() ? ordered_json(nullptr) : ordered_json(fault);
}

ordered_json DescribeOemContent(const OemContent& content)
{
    ordered_json entries = ordered_json::array();
    std::set<std::uint16_t> met;
    for (const auto& [key, value] : content.entries)
        entries.push_back(
            {{"key", key}, {"length", value->size()}, {"meaning", EntryMeaning(key, !met.insert(key).second)}});
    return {{"fault", FaultJson(content.fault)}, {"version", content.version},     {"crc", content.crc},
            {"crcValid", content.crcValid},      {"usedBytes", content.usedBytes}, {"entries", entries}};
}

ordered_json DescribeSettings(const StoredSettings& settings)
{
    return {{"present", settings.isPresent},
            {"fault", FaultJson(settings.fault)},
            {"papersFault", FaultJson(settings.papersFault)},
            {"size", settings.size},
            {"driverVersion", settings.driverVersion}};
}
