#include "devmodereport.h"

#include <nlohmann/json.hpp>

#include "coredevmode.h"
#include "devmodefields.h"
#include "oempart.h"

namespace
{

using nlohmann::ordered_json;

ordered_json DescribeCore(const std::optional<DriverParts>& parts)
{
    if (!parts)
        return {{"kind", nullptr}, {"size", 0}};
    const CoreSettings settings = ReadCoreSettings(parts->layout, parts->core);
    return {{"kind", LayoutName(parts->layout)},
            {"size", parts->core.size()},
            {"pagesPerSheet", settings.pagesPerSheet},
            {"booklet", settings.booklet}};
}

ordered_json DescribeOem(const Devmode& devmode, const std::optional<DriverParts>& parts)
{
    if (!parts)
        return {{"present", false}};
    const OemContent content = ReadOemPart(parts->oem);
    ordered_json entries = ordered_json::array();
    if (content.entries)
        for (const OemEntry& entry : *content.entries)
            entries.push_back({{"key", entry.key}, {"length", entry.data.size()}});
    return {{"present", true},
            {"offset", devmode.Public().dmSize + parts->core.size()},
            {"size", parts->oem.size()},
            {"version", content.version},
            {"crc", content.crc},
            {"crcValid", content.crcValid},
            {"corrupt", !content.entries.has_value()},
            {"usedBytes", content.usedBytes},
            {"entries", entries}};
}

} // namespace

nlohmann::ordered_json DescribeDevmode(const Devmode& devmode)
{
    const DEVMODEW fields = devmode.Public();
    const auto parts = LocateDriverParts(devmode.DriverExtra());
    return {{"public", DevmodeFieldsToJson(fields, fields.dmSize)},
            {"core", DescribeCore(parts)},
            {"oem", DescribeOem(devmode, parts)},
            {"features", ordered_json::object()}};
}
