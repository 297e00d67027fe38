#include "corefeatures.h"

#include <algorithm>
#include <charconv>
#include <map>
#include <nlohmann/json.hpp>
#include <set>
#include <span>

#include <tvcore/datamodelids.h>
#include <tvutil/tavlenexception.h>

#include "complugins/msdevmodeusingreverseengineering.h"
#include "corefeaturewords.h"
#include "devmodefields.h"
#include "failure.h"
#include "jsonoutput.h"

namespace
{

using nlohmann::ordered_json;
using Access = MsDevmodeUsingReverseEngineering;
using Feature = MsDevmodeBase::Feature;

constexpr char kSetting[] = "setting a field";
constexpr char kPartIsUnknown[] = "; rotated landscape is kept in the core driver's part, which is not recognised";
constexpr char kNameThePrinter[] = "; with --printer the printer's driver is known";

MsDriverKind AnyDriverOf(CoreDriverLayout layout)
{
    if (layout == CoreDriverLayout::PostScript)
        return {MsDriverKind::kPostScript, 0, MsDriverKind::kPostScriptLayout};
    return {MsDriverKind::kUnidrvA | MsDriverKind::kUnidrvB, 0, 0};
}

bool IsInPrivatePart(const Feature& feature)
{
    return !feature.isPublic;
}

// Whether this driver has the feature at a place that is known.
bool HasPlace(const Feature& feature, const CoreDriver& driver)
{
    if (!driver.isOfPrinter && MsDevmodeOffsets::DependsOnDriver(feature.feature))
        return false;
    const MsDevmodeCell cell = MsDevmodeOffsets::FindPlace(feature.feature, driver.kind).cell;
    return cell != MsDevmodeCell::NotAvailable && cell != MsDevmodeCell::NoOffset;
}

std::string DriverText(const CoreDriver& driver)
{
    std::string text = "a " + std::string(LayoutName(LayoutOf(driver.kind))) + " driver";
    if (driver.isOfPrinter)
        text += " of kind " + HexText(driver.kind.kind) + ", platform " + HexText(driver.kind.platform);
    return text;
}

template <class Text>
std::string Joined(const std::vector<Text>& texts)
{
    std::string joined;
    for (const Text& text : texts)
        joined += (joined.empty() ? "" : ", ") + text;
    return joined;
}

// Which of a layout's drivers it is, its part alone does not tell: without the printer nothing there is written.
bool CanBeSet(const Feature& feature, const CoreDriver& driver, const Access& access)
{
    return HasPlace(feature, driver) &&
           (!IsInPrivatePart(feature) || (driver.isOfPrinter && access.IsLayoutRecognized()));
}

// Whether a bit of a part that nobody knows would count: the public field is then all there is.
bool GoesByFieldAlone(const Feature& feature, const CoreDriver& driver, const Access& access)
{
    return !access.IsLayoutRecognized() && (driver.kind.kind & MsDriverKind::kPostScript) != 0 &&
           MsDevmodeOffsets::FindPlace(feature.feature, driver.kind).cell == MsDevmodeCell::PublicRotated;
}

// The third orientation is the public field's alone for some drivers, and a bit of their part for others.
std::span<const MsDevmodeValueRow> ValuesOf(const Feature& feature, const CoreDriver& driver, const Access& access)
{
    constexpr std::size_t kUnturned = 2; // portrait and landscape
    const bool isLimited = feature.feature == DataModelIds::Feature::MsOrientation &&
                           (!driver.isOfPrinter || GoesByFieldAlone(feature, driver, access));
    return feature.values.first(isLimited ? std::min(kUnturned, feature.values.size()) : feature.values.size());
}

// The numbers of the settings that can be written, in ascending order.
std::string PossibleFeatures(const Access& access, const CoreDriver& driver)
{
    std::map<std::uint32_t, std::string> numbers;
    for (const Feature& feature : access.GetFeatures())
        if (CanBeSet(feature, driver, access))
            numbers.emplace(feature.feature, std::to_string(feature.feature));
    std::vector<std::string> texts;
    for (const auto& [number, text] : numbers)
        texts.push_back(text);
    return Joined(texts);
}

// Several options may stand for one value: the first names it.
std::string PossibleValues(std::span<const MsDevmodeValueRow> values, bool isOfDataModel)
{
    std::vector<std::string> texts;
    std::set<std::string> numbers;
    for (const MsDevmodeValueRow& row : values)
    {
        const std::string number = isOfDataModel ? "@" + std::to_string(row.valueId) : std::to_string(row.devmodeValue);
        if (numbers.insert(number).second)
            texts.push_back(number + " (" + row.displayName + ")");
    }
    return Joined(texts);
}

// "FEAT_MS_COPIES of a unidrv driver"
std::string SettingText(const Feature& feature, const CoreDriver& driver)
{
    return std::string(feature.name) + " of " + DriverText(driver);
}

// Decimal, or hexadecimal with 0x; nothing when it is no number of 32 bits.
std::optional<std::uint32_t> ParseNumber(std::string_view text)
{
    const bool isHexadecimal = text.starts_with("0x") || text.starts_with("0X");
    const std::string_view digits = isHexadecimal ? text.substr(2) : text;
    std::uint32_t number = 0;
    const auto [end, error] =
        std::from_chars(digits.data(), digits.data() + digits.size(), number, isHexadecimal ? 16 : 10);
    return error == std::errc() && end == digits.data() + digits.size() ? std::optional(number) : std::nullopt;
}

std::uint32_t ParseOption(const std::string& key, std::string_view value, const Feature& feature,
                          const CoreDriver& driver, const Access& access)
{
    const std::span<const MsDevmodeValueRow> values = ValuesOf(feature, driver, access);
    const char* const lacking = GoesByFieldAlone(feature, driver, access) ? kPartIsUnknown : kNameThePrinter;
    const bool isOfDataModel = value.starts_with('@');
    const std::optional<std::uint32_t> number = ParseNumber(isOfDataModel ? value.substr(1) : value);
    const MsDevmodeValueRow* row = nullptr;
    if (number)
        row = isOfDataModel ? MsDevmodeValues::FindValueId(values, static_cast<std::int32_t>(*number))
                            : MsDevmodeValues::FindDevmodeValue(values, *number);
    if (row == nullptr)
        Fail(kSetting, key,
             SettingText(feature, driver) + " must be one of " + PossibleValues(values, isOfDataModel) +
                 (values.size() < feature.values.size() ? lacking : ""));
    return row->devmodeValue;
}

// The range is that of the field in the devmode.
std::uint32_t ParsePlainNumber(const std::string& key, std::string_view value, const Feature& feature,
                               const CoreDriver& driver)
{
    const std::string setting = SettingText(feature, driver);
    const DevmodeField* const field = FindDevmodeFieldOfFeature(feature.feature);
    if (value.starts_with('@'))
        Fail(kSetting, key,
             setting + " has no values of the data model, only numbers" +
                 (field != nullptr ? " " + DevmodeNumberRange(*field) : ""));
    if (field != nullptr)
        return static_cast<std::uint32_t>(ParseDevmodeNumber(*field, key + ": " + setting, value));
    const std::optional<std::uint32_t> number = ParseNumber(value);
    if (!number)
        Fail(kSetting, key, setting + ": \"" + std::string(value) + "\" is not a number of 32 bits");
    return *number;
}

// "ms.10"; null when no driver has it.
const MsDevmodeFeatureRow* FindKnownFeature(const std::string& key)
{
    const std::string_view digits = std::string_view(key).substr(kCoreFeaturePrefix.size());
    std::uint32_t number = 0;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), number);
    const bool isNumber = error == std::errc() && end == digits.data() + digits.size();
    const auto* const rowsEnd = MsDevmodeFeatures::kRows + MsDevmodeFeatures::kCount;
    const auto* const row =
        std::find_if(MsDevmodeFeatures::kRows, rowsEnd,
                     [&](const MsDevmodeFeatureRow& candidate) { return isNumber && candidate.feature == number; });
    return row != rowsEnd ? row : nullptr;
}

[[noreturn]] void FailUnknownFeature(const std::string& key, const std::optional<CoreDriver>& driver,
                                     const Devmode& devmode)
{
    const std::string reason = "no core driver has such a feature; ";
    if (!driver)
        Fail(kSetting, key, reason + "they have 3 to 35");
    Devmode copy = devmode;
    Access access(driver->kind, copy.Raw());
    access.Initialize();
    Fail(kSetting, key, reason + DriverText(*driver) + " has " + PossibleFeatures(access, *driver));
}

CoreDriver RequireDriver(const std::string& key, const MsDevmodeFeatureRow& row,
                         const std::optional<DriverParts>& parts, const PrinterModel* model)
{
    const std::optional<CoreDriver> driver = FindCoreDriver(parts, model);
    if (!driver)
        Fail(kSetting, key,
             std::string(row.name) + ": the devmode has no maker's part to tell the core driver's kind by" +
                 kNameThePrinter);
    if (model != nullptr && !driver->isOfPrinter)
        Fail(kSetting, key,
             std::string(row.name) + ": the devmode is one of " + DriverText(*driver) +
                 ", the printer has another; without --printer its public fields can be set");
    return *driver;
}

const Feature& RequireFeature(const std::string& key, const MsDevmodeFeatureRow& row, const Access& access,
                              const CoreDriver& driver)
{
    const Feature* const feature = access.FindFeature(row.feature);
    const std::string possible = PossibleFeatures(access, driver);
    if (feature == nullptr || !HasPlace(*feature, driver))
        Fail(kSetting, key,
             std::string(row.name) + " is no setting of " + DriverText(driver) + ", which has " + possible +
                 (driver.isOfPrinter ? "" : kNameThePrinter));
    if (IsInPrivatePart(*feature) && !access.IsLayoutRecognized())
        Fail(kSetting, key,
             std::string(row.name) + ": the core driver's part is not recognised as that of " + DriverText(driver) +
                 "; only public fields can be set: " + possible);
    if (!CanBeSet(*feature, driver, access))
        Fail(kSetting, key,
             std::string(feature->name) + " lies in the part of " + DriverText(driver) +
                 ": name the printer with --printer; without it only public fields can be set: " + possible);
    return *feature;
}

ordered_json DescribeFeature(Access& access, const Feature& feature, const CoreDriver& driver, const DEVMODEW* devmode)
{
    ordered_json described = {{"name", feature.name}, {"value", nullptr}, {"option", nullptr}, {"text", nullptr}};
    try
    {
        const std::uint32_t value =
            GoesByFieldAlone(feature, driver, access)
                ? access.GetPublicDmFeatureValue_Helper(devmode, feature.feature, MsDevmodeBase::Raw)
                : access.GetMsFeatureValue(feature.feature, MsDevmodeBase::Raw);
        described["value"] = value;
        if (const MsDevmodeValueRow* const row = MsDevmodeValues::FindDevmodeValue(feature.values, value))
        {
            described["option"] = row->valueId;
            described["text"] = row->displayName;
        }
    }
    catch (const TavlenException&)
    {
        // this devmode ends before the setting
    }
    return described;
}

} // namespace

CoreDriverLayout LayoutOf(const MsDriverKind& driver) noexcept
{
    return driver.HasPostScriptLayout() ? CoreDriverLayout::PostScript : CoreDriverLayout::Unidrv;
}

std::optional<CoreDriver> FindCoreDriver(const std::optional<DriverParts>& parts, const PrinterModel* model)
{
    if (model != nullptr)
    {
        const MsDriverKind kind = MsDriverKind::FromCapabilityWord(model->capability);
        if (!parts || LayoutOf(kind) == parts->layout)
            return CoreDriver{kind, true};
    }
    return parts ? std::optional(CoreDriver{AnyDriverOf(parts->layout), false}) : std::nullopt;
}

bool IsCorePartRecognized(const Devmode& devmode, const std::optional<CoreDriver>& driver)
{
    if (!driver)
        return false;
    Devmode copy = devmode;
    Access access(driver->kind, copy.Raw());
    access.Initialize();
    return access.IsLayoutRecognized();
}

ordered_json DescribeCoreFeatures(const Devmode& devmode, const std::optional<CoreDriver>& driver)
{
    ordered_json described = ordered_json::object();
    if (!driver)
        return described;
    Devmode copy = devmode; // looking at a devmode terminates its names
    Access access(driver->kind, copy.Raw());
    access.Initialize();
    std::map<std::uint32_t, const Feature*> features;
    for (const Feature& feature : access.GetFeatures())
        if (HasPlace(feature, *driver) && (access.IsLayoutRecognized() || !IsInPrivatePart(feature)))
            features.emplace(feature.feature, &feature); // of two rows the first
    for (const auto& [number, feature] : features)
        described[std::to_string(number)] = DescribeFeature(access, *feature, *driver, copy.Raw());
    return described;
}

ordered_json CoreFeaturesInWords(const ordered_json& features)
{
    ordered_json words = ordered_json::object();
    for (const auto& [number, feature] : features.items())
    {
        const auto id = static_cast<std::uint32_t>(std::stoul(number));
        words[std::string(CoreFeatureWords::Label(id))] =
            feature["value"].is_null() ? std::string("not in this devmode")
            : feature["option"].is_null()
                ? CoreFeatureWords::Number(id, feature["value"].get<std::uint32_t>())
                : CoreFeatureWords::Option(feature["option"].get<std::int32_t>(), feature["text"].get<std::string>());
    }
    return words;
}

void SetCoreFeature(const std::string& key, std::string_view value, Devmode& devmode, const PrinterModel* model)
{
    const std::optional<DriverParts> parts = LocateDriverParts(devmode.DriverExtra());
    const MsDevmodeFeatureRow* const row = FindKnownFeature(key);
    if (row == nullptr)
        FailUnknownFeature(key, FindCoreDriver(parts, model), devmode);
    const CoreDriver driver = RequireDriver(key, *row, parts, model);
    Access access(driver.kind, devmode.Raw());
    access.Initialize();
    const Feature& feature = RequireFeature(key, *row, access, driver);
    const std::uint32_t number = feature.values.empty() ? ParsePlainNumber(key, value, feature, driver)
                                                        : ParseOption(key, value, feature, driver, access);
    try
    {
        if (GoesByFieldAlone(feature, driver, access))
            access.SetPublicDmFeatureValue_Helper(devmode.Raw(), feature.feature, number, MsDevmodeBase::Raw);
        else
            access.SetMsFeatureValue(feature.feature, number, MsDevmodeBase::Raw);
    }
    catch (const TavlenException& limit)
    {
        Fail(kSetting, key, SettingText(feature, driver) + ": " + limit.what());
    }
}
