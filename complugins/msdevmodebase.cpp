#include "complugins/msdevmodebase.h"

#include <algorithm>
#include <cstring>
#include <string_view>

#include <tvcore/datamodelids.h>
#include <tvutil/exceptions.h>
#include <tvutil/throwexception.h>

#include "complugins/devmodenames.h"
#include "complugins/msdevmodepublicfields.h"

namespace
{

constexpr WCHAR kSourceFile[] = W("complugins\\msdevmodebase");

// The places that exceptions name, with the lines that the system reports for them.
constexpr ThrowSite kConstructor{W("MsDevmodeBase::MsDevmodeBase"), kSourceFile};
constexpr ThrowSite kGetPublic{W("MsDevmodeBase::GetPublicDmFeatureValue_Helper"), kSourceFile, 165};
constexpr ThrowSite kSetPublic{W("MsDevmodeBase::SetPublicDmFeatureValue_Helper"), kSourceFile, 305};
constexpr ThrowSite kValueTable{W("MsDevmodeBase::GetDmValueTable_Helper"), kSourceFile, 469};
constexpr WCHAR kFromKeyword[] = W("MsDevmodeBase::GetFeatureValueFromIPrintCoreHelperValue_Helper");
constexpr ThrowSite kNullKeyword{kFromKeyword, kSourceFile, 513};
constexpr ThrowSite kUnknownKeyword{kFromKeyword, kSourceFile, 543};
constexpr ThrowSite kToKeyword{W("MsDevmodeBase::GetIPrintCoreHelperValueFromFeatureValue_Helper"), kSourceFile, 583};
constexpr ThrowSite kFromValueId{W("MsDevmodeBase::GetMsDmValueFromValueEnum_Helper"), kSourceFile, 815};
constexpr ThrowSite kToValueId{W("MsDevmodeBase::GetValueEnumFromMsDmValue_Helper"), kSourceFile};

constexpr char kPageOrientationKeyword[] = "PageOrientation";

template <class Pointer>
Pointer NotNull(Pointer devmode, const ThrowSite& site)
{
    if (devmode == nullptr)
        ThrowException<ExceptionInvalidArgumentNullPointer>(site);
    return devmode;
}

std::vector<MsDevmodeBase::Feature> FeaturesOf(const MsDriverKind& driver)
{
    std::vector<MsDevmodeBase::Feature> features;
    for (std::size_t at = 0; at < MsDevmodeFeatures::kCount; ++at)
    {
        const MsDevmodeFeatureRow& row = MsDevmodeFeatures::kRows[at];
        if (!driver.Fits(row.mask))
            continue;
        MsDevmodeBase::Feature& feature =
            features.emplace_back(MsDevmodeBase::Feature{row, MsDevmodeValues::FindTable(row.feature, driver)});
        if (row.feature == DataModelIds::Feature::MsOrientation &&
            (driver.coreFlags & MsDriverKind::kPageOrientation) != 0)
            feature.keyword = kPageOrientationKeyword;
    }
    return features;
}

// The fields of a feature that lie within the public part: all of them, or none.
std::span<const MsDevmodePublicField> FieldsOf(const DEVMODEW& devmode, std::uint32_t feature)
{
    const std::span<const MsDevmodePublicField> all(MsDevmodePublicFields::kFields);
    const auto isOfFeature = [feature](const MsDevmodePublicField& field)
    {
        return field.feature == feature;
    };
    const auto first = std::find_if(all.begin(), all.end(), isOfFeature);
    const auto end = std::find_if_not(first, all.end(), isOfFeature);
    const bool isThere = std::all_of(first, end,
                                     [&devmode](const MsDevmodePublicField& field)
                                     { return field.offset + field.width <= devmode.dmSize; });
    return isThere ? std::span(first, end) : std::span<const MsDevmodePublicField>();
}

} // namespace

MsDevmodeBase::MsDevmodeBase(HANDLE printer, DEVMODEW* devmode)
    : m_devmode(NotNull(devmode, kConstructor)),
      m_driver(MsDriverKind::OfPrinter(printer)),
      m_features(FeaturesOf(m_driver))
{
    TerminateDevmodeNames(*m_devmode);
}

MsDevmodeBase::MsDevmodeBase(const MsDriverKind& driver, DEVMODEW* devmode)
    : m_devmode(NotNull(devmode, kConstructor)), m_driver(driver), m_features(FeaturesOf(driver))
{
    TerminateDevmodeNames(*m_devmode);
}

MsDevmodeBase::~MsDevmodeBase() = default;

void MsDevmodeBase::Initialize()
{
}

const std::vector<MsDevmodeBase::Feature>& MsDevmodeBase::GetFeatures() const noexcept
{
    return m_features;
}

const MsDevmodeBase::Feature* MsDevmodeBase::FindFeature(std::uint32_t feature) const noexcept
{
    const auto found = std::find_if(m_features.begin(), m_features.end(),
                                    [feature](const Feature& row) { return row.feature == feature; });
    return found != m_features.end() ? &*found : nullptr;
}

const MsDriverKind& MsDevmodeBase::GetDriverKind() const noexcept
{
    return m_driver;
}

DEVMODEW* MsDevmodeBase::GetDevmode() const noexcept
{
    return m_devmode;
}

std::uint32_t MsDevmodeBase::GetPublicDmFeatureValue_Helper(const DEVMODEW* devmode, std::uint32_t feature, Map map,
                                                            bool* found) const
{
    const auto fields = FieldsOf(*NotNull(devmode, kGetPublic), feature);
    if (found != nullptr)
        *found = !fields.empty();
    if (fields.empty())
    {
        if (found != nullptr)
            return 0;
        ThrowException<ExceptionMicrosoftFeatureNotFound>(kGetPublic, W("feature %u is no field of the public devmode"),
                                                          {feature});
    }
    std::uint32_t value = 0;
    for (const MsDevmodePublicField& field : fields)
    {
        std::uint32_t part = 0; // little-endian: a 16-bit field fills the low half
        std::memcpy(&part, reinterpret_cast<const std::byte*>(devmode) + field.offset, field.width);
        value = (value << 16) | part; // only a feature of two fields comes here again
    }
    return FromDevmodeValue(feature, value, map);
}

void MsDevmodeBase::SetPublicDmFeatureValue_Helper(DEVMODEW* devmode, std::uint32_t feature, std::uint32_t value,
                                                   Map map) const
{
    const auto fields = FieldsOf(*NotNull(devmode, kSetPublic), feature);
    if (fields.empty())
        ThrowException<ExceptionMicrosoftFeatureNotFound>(kSetPublic, W("feature %u is no field of the public devmode"),
                                                          {feature});
    std::uint32_t rest = ToDevmodeValue(feature, value, map);
    for (auto field = fields.rbegin(); field != fields.rend(); ++field)
    {
        std::memcpy(reinterpret_cast<std::byte*>(devmode) + field->offset, &rest, field->width);
        devmode->dmFields |= field->flag;
        rest >>= 16;
    }
}

std::span<const MsDevmodeValueRow> MsDevmodeBase::GetDmValueTable_Helper(std::uint32_t feature) const
{
    const Feature* const row = FindFeature(feature);
    const std::span<const MsDevmodeValueRow> values =
        row != nullptr ? row->values : MsDevmodeValues::FindTable(feature, m_driver);
    if (values.empty())
        ThrowException<ExceptionMicrosoftFeatureNotFound>(
            kValueTable, W("the driver (kind %u, platform %u, core flags %u) has no table of values for feature %u"),
            {m_driver.kind, m_driver.platform, m_driver.coreFlags, feature});
    return values;
}

std::uint32_t MsDevmodeBase::GetFeatureValueFromIPrintCoreHelperValue_Helper(std::uint32_t feature, const char* option,
                                                                             Map map) const
{
    NotNull(option, kNullKeyword);
    const MsDevmodeValueRow* const row = MsDevmodeValues::FindRow(
        GetDmValueTable_Helper(feature), [option](const MsDevmodeValueRow& candidate)
        { return candidate.keyword != nullptr && std::string_view(option) == candidate.keyword; });
    if (row == nullptr)
        ThrowException<ExceptionMicrosoftDevmodeValueMappingFailed>(
            kUnknownKeyword, W("feature %u has no option \"%s\""), {feature, CXString::FromUtf8(option)});
    return map == DataModel ? static_cast<std::uint32_t>(row->valueId) : row->devmodeValue;
}

const char* MsDevmodeBase::GetIPrintCoreHelperValueFromFeatureValue_Helper(std::uint32_t feature,
                                                                           std::uint32_t value) const
{
    const MsDevmodeValueRow* const row =
        MsDevmodeValues::FindRow(GetDmValueTable_Helper(feature), [value](const MsDevmodeValueRow& candidate)
                                 { return candidate.keyword != nullptr && candidate.devmodeValue == value; });
    if (row == nullptr)
        ThrowException<ExceptionMicrosoftDevmodeValueMappingFailed>(
            kToKeyword, W("feature %u has no option for the value %u"), {feature, value});
    return row->keyword;
}

std::uint32_t MsDevmodeBase::GetMsDmValueFromValueEnum_Helper(std::uint32_t feature, std::uint32_t valueId) const
{
    const MsDevmodeValueRow* const row =
        MsDevmodeValues::FindValueId(GetDmValueTable_Helper(feature), static_cast<std::int32_t>(valueId));
    if (row == nullptr)
        ThrowException<ExceptionMicrosoftDevmodeValueMappingFailed>(
            kFromValueId, W("feature %u does not have the value %u of the data model"), {feature, valueId});
    return row->devmodeValue;
}

std::uint32_t MsDevmodeBase::GetValueEnumFromMsDmValue_Helper(std::uint32_t feature, std::uint32_t value) const
{
    const MsDevmodeValueRow* const row = MsDevmodeValues::FindDevmodeValue(GetDmValueTable_Helper(feature), value);
    if (row == nullptr)
        ThrowException<ExceptionMicrosoftDevmodeValueMappingFailed>(
            kToValueId, W("feature %u has no value of the data model for the devmode's value %u"), {feature, value});
    return static_cast<std::uint32_t>(row->valueId);
}

std::uint32_t MsDevmodeBase::ToDevmodeValue(std::uint32_t feature, std::uint32_t value, Map map) const
{
    return map == DataModel ? GetMsDmValueFromValueEnum_Helper(feature, value) : value;
}

std::uint32_t MsDevmodeBase::FromDevmodeValue(std::uint32_t feature, std::uint32_t value, Map map) const
{
    return map == DataModel ? GetValueEnumFromMsDmValue_Helper(feature, value) : value;
}
