#include "devmodereport.h"

#include <algorithm>
#include <nlohmann/json.hpp>

#include "corefeatures.h"
#include "devmodefields.h"
#include "featurereport.h"
#include "formsreport.h"
#include "oempart.h"
#include "oemreport.h"

namespace
{

using nlohmann::ordered_json;

ordered_json DescribeCore(const Devmode& devmode, const std::optional<DriverParts>& parts, const PrinterModel* model)
{
    const std::optional<CoreDriver> driver = FindCoreDriver(parts, model);
    return {{"kind", parts ? ordered_json(LayoutName(parts->layout)) : ordered_json(nullptr)},
            {"size", parts ? parts->core.size() : 0},
            {"recognized", IsCorePartRecognized(devmode, driver)},
            {"features", DescribeCoreFeatures(devmode, driver)}};
}

ordered_json DescribeOem(const Devmode& devmode, const DriverParts& parts, const OemContent& content)
{
    ordered_json described = {
        {"present", true}, {"offset", devmode.Public().dmSize + parts.core.size()}, {"size", OemDevmodeFormat::kSize}};
    described.update(DescribeOemContent(content));
    return described;
}

ordered_json DescribePapers(const StoredSettings& settings)
{
    if (!settings.papers)
        return nullptr;
    return DescribeForms(*settings.papers);
}

ordered_json DescribeApplication(const OemContent& content)
{
    const ByteBuffer* const name = content.Find(OemDevmodeFormat::kApplicationNameKey);
    return name != nullptr ? ordered_json(name->getAsStringValue().ToUtf8()) : ordered_json(nullptr);
}

std::string CoreText(CoreDriverLayout layout, std::size_t size)
{
    return std::string(LayoutName(layout)) + ", " + std::to_string(size) + " bytes";
}

template <class Item, class Number>
bool HasItem(const std::vector<Item>& list, Number Item::*number, unsigned long value)
{
    return std::any_of(list.begin(), list.end(),
                       [number, value](const Item& item) { return static_cast<unsigned long>(item.*number) == value; });
}

// Empty when the field names an item of the printer's list.
template <class Item, class Number>
std::string UnknownItem(const char* field, unsigned long value, const std::vector<Item>& list, Number Item::*number)
{
    return HasItem(list, number, value) ? "" : "the printer has no " + std::string(field) + " " + std::to_string(value);
}

} // namespace

ordered_json DescribeDevmode(const Devmode& devmode, const PrinterModel* model)
{
    const DEVMODEW fields = devmode.Public();
    const auto parts = LocateDriverParts(devmode.DriverExtra());
    const OemContent content = parts ? ReadOemPart(*parts->oem) : OemContent();
    const StoredSettings settings = ReadStoredSettings(content);
    const ordered_json absent = {{"present", false}, {"fault", ExplainNoOemPart(devmode.DriverExtra())}};
    return {{"public", DevmodeFieldsToJson(fields, fields.dmSize)},
            {"core", DescribeCore(devmode, parts, model)},
            {"oem", parts ? DescribeOem(devmode, *parts, content) : absent},
            {"settings", DescribeSettings(settings)},
            {"features", DescribeFeatures(settings.features)},
            {"choices", DescribeChoices(settings.features)},
            {"application", DescribeApplication(content)},
            {"papers", DescribePapers(settings)}};
}

ordered_json CompareWithPrinter(const Devmode& devmode, const std::string& printerName, const PrinterModel& model)
{
    const DEVMODEW fields = devmode.Public();
    const bool isPostScript = model.coreDriver.kind == PrinterModel::CoreDriverKind::PostScript;
    const std::string own =
        CoreText(isPostScript ? CoreDriverLayout::PostScript : CoreDriverLayout::Unidrv, model.coreDriver.privateSize);
    const auto parts = LocateDriverParts(devmode.DriverExtra());
    const std::string core = parts ? CoreText(parts->layout, parts->core.size()) : "unknown";

    ordered_json differences = ordered_json::array();
    const auto add = [&differences](const std::string& difference)
    {
        if (!difference.empty())
            differences.push_back(difference);
    };
    const auto paper = static_cast<WORD>(fields.dmPaperSize);
    const auto bin = static_cast<WORD>(fields.dmDefaultSource);
    add(core == own ? "" : "the core driver's part is " + core + "; the printer's is " + own);
    if ((fields.dmFields & DM_PAPERSIZE) != 0)
        add(UnknownItem("dmPaperSize", paper, model.forms, &PrinterModel::Form::paperId));
    if ((fields.dmFields & DM_DEFAULTSOURCE) != 0)
        add(UnknownItem("dmDefaultSource", bin, model.bins, &PrinterModel::Bin::id));
    if ((fields.dmFields & DM_MEDIATYPE) != 0)
        add(UnknownItem("dmMediaType", fields.dmMediaType, model.mediaTypes, &PrinterModel::MediaType::id));
    const StoredSettings settings = parts ? ReadStoredSettings(ReadOemPart(*parts->oem)) : StoredSettings();
    if (settings.papers && !HasItem(*settings.papers, &FormsInfoRecord::paperId, paper))
        add("the paper list lacks dmPaperSize " + std::to_string(paper));
    return {{"name", printerName},
            {"driver", model.name.ToUtf8()},
            {"matches", differences.empty()},
            {"differences", differences}};
}
