#include "printercaches.h"

#include <nlohmann/json.hpp>
#include <optional>
#include <vector>

#include "complugins/customforms.h"
#include "complugins/msdevicecapabilities.h"
#include "complugins/papercache.h"
#include "customsizecommands.h"
#include "failure.h"
#include "formsreport.h"
#include "jsonoutput.h"
#include "printerhandle.h"
#include "printersetup.h"

namespace
{

using nlohmann::ordered_json;

struct FoundCache
{
    std::string name;
    MSDeviceCapabilities::CacheDescription description;
};

struct FoundCaches
{
    std::vector<FoundCache> caches; // in the table's order: the papers first
    std::optional<DWORD> storedCrc;
    DWORD crcNow = 0;
    std::vector<FormsInfoRecord> forms;
};

const char* NameOf(MSDeviceCapabilities::CacheState state)
{
    switch (state)
    {
    case MSDeviceCapabilities::CacheState::Valid:
        return "valid";
    case MSDeviceCapabilities::CacheState::Stale:
        return "stale";
    case MSDeviceCapabilities::CacheState::Short:
        return "short";
    case MSDeviceCapabilities::CacheState::Missing:
        break;
    }
    return "missing";
}

FoundCaches FindCaches(const std::string& name)
{
    constexpr char kReading[] = "reading the caches of the device capabilities";
    const PrinterHandle printer = PrinterHandle::Open(name, PrinterHandle::Access::Use);
    if (SetUpStateOf(printer) == SetUpState::NotOurs)
        Fail(kReading, name, "it was not installed by this program");
    MSDeviceCapabilities capabilities;
    capabilities.Initialize(printer.Get());
    FoundCaches found;
    for (const DeviceCapabilityTable::Row& row : DeviceCapabilityTable::kRows)
    {
        auto description = capabilities.DescribeCache(row.cache);
        if (!description)
            Fail(kReading, name, "the printer does not answer");
        found.caches.push_back({CXString(row.name).ToUtf8(), *std::move(description)});
    }
    const ByteBuffer& papers = found.caches.front().description.content;
    if (papers.size() >= PaperCache::kHeaderSize)
        found.storedCrc = PaperCache::ReadHeader(papers.bytes()).customFormsCrc;
    found.crcNow = capabilities.GetCustomFormsCRC();
    static_cast<void>(capabilities.GetPaperDatabaseCachedDeviceCapabilitiesVector(printer.Get(), nullptr, found.forms));
    return found;
}

std::string ToJson(const FoundCaches& found)
{
    ordered_json caches = ordered_json::array();
    for (const FoundCache& cache : found.caches)
        caches.push_back(
            {{"name", cache.name}, {"size", cache.description.size}, {"state", NameOf(cache.description.state)}});
    const ordered_json stored = found.storedCrc ? ordered_json(*found.storedCrc) : ordered_json();
    return JsonText({{"caches", caches},
                     {"customForms", {{"stored", stored}, {"now", found.crcNow}}},
                     {"forms", DescribeForms(found.forms)}});
}

std::string ToText(const FoundCaches& found)
{
    constexpr std::size_t kNameColumn = 21;
    constexpr std::size_t kSizeColumn = 10;
    const auto padded = [](const std::string& text, std::size_t width)
    {
        return text + std::string(width > text.size() ? width - text.size() : 1, ' ');
    };
    std::string text;
    for (const FoundCache& cache : found.caches)
        text += padded(cache.name, kNameColumn) + padded(std::to_string(cache.description.size), kSizeColumn) +
                NameOf(cache.description.state) + "\n";
    text += "custom forms: stored " + (found.storedCrc ? std::to_string(*found.storedCrc) : "none") + ", now " +
            std::to_string(found.crcNow) + "\n" + DescribeUnusableSizes();
    return found.forms.empty() ? text + "no forms\n" : text + FormTable(found.forms);
}

} // namespace

std::string ShowPrinterCaches(const std::string& name, bool asJson)
{
    const FoundCaches found = FindCaches(name);
    return asJson ? ToJson(found) : ToText(found);
}
