#include <tvcore/featuresettings.h>

#include <algorithm>
#include <iterator>
#include <utility>

#include <tvcore/featurecatalogue.h>
#include <tvutil/exceptions.h>
#include <tvutil/singleline.h>
#include <tvutil/throwexception.h>

#include "complugins/msdevmodefeatures.h"

namespace
{

using FeatureCatalogue::Kind;
using FeatureCatalogue::Row;

constexpr WCHAR kSourceFile[] = W("siblings\\tvcore\\featuresettings");

bool IsOfTheCoreDriver(std::int32_t feature)
{
    const auto* const end = MsDevmodeFeatures::kRows + MsDevmodeFeatures::kCount;
    return std::any_of(MsDevmodeFeatures::kRows, end,
                       [feature](const MsDevmodeFeatureRow& row)
                       { return row.feature == static_cast<std::uint32_t>(feature); });
}

// A core driver's feature stands by itself, whatever driver there is.
bool Stands(const FeatureIdWithContext& feature)
{
    const std::int32_t number = feature.GetFeature().GetFeatureEnum();
    const auto contexts = feature.GetContexts();
    const Row* const row = FeatureCatalogue::Find(number);
    if (row == nullptr)
        return contexts.empty() && IsOfTheCoreDriver(number);
    return std::all_of(contexts.begin(), contexts.end(),
                       [row](FeatureId context) { return FeatureCatalogue::StandsIn(*row, context.GetFeatureEnum()); });
}

bool TakesLength(const Row& row, const Dimension& length)
{
    const Number microns = length.GetValue(Dimension::Microns);
    // What is finer than a micron counts: a metre and a bit is more than a metre.
    return microns.GetNumerator() >= row.values.front().first * microns.GetDenominator() &&
           microns.GetNumerator() <= row.values.front().last * microns.GetDenominator();
}

struct Fits
{
    const Row& row;

    bool operator()(bool) const
    {
        return row.kind == Kind::Boolean;
    }
    bool operator()(std::int32_t number) const
    {
        return row.kind == Kind::Integer && FeatureCatalogue::Allows(row, number);
    }
    bool operator()(const CXString& text) const
    {
        return row.kind == Kind::String && FeatureCatalogue::Allows(row, static_cast<std::int64_t>(text.Length()));
    }
    // A value of the tables has no name, any other has one: a stored value can then be told from its number alone.
    bool operator()(const ValueId& value) const
    {
        return row.kind == Kind::Option && FeatureCatalogue::Allows(row, value.GetValueEnum()) &&
               value.GetValueName().IsEmpty() == (value.GetValueEnum() < FeatureCatalogue::kFirstCustomValue);
    }
    bool operator()(const Dimension& length) const
    {
        return row.kind == Kind::Dimension && TakesLength(row, length);
    }
    bool operator()(const FeatureList&) const
    {
        return row.kind == Kind::List;
    }
};

bool Takes(std::int32_t feature, const FeatureValue& value)
{
    if (const Row* const row = FeatureCatalogue::Find(feature))
        return std::visit(Fits{*row}, value);
    return std::holds_alternative<std::int32_t>(value) || std::holds_alternative<ValueId>(value);
}

} // namespace

FeatureSettings::FeatureSettings() = default;
FeatureSettings::~FeatureSettings() = default;
FeatureSettings::FeatureSettings(const FeatureSettings&) = default;
FeatureSettings& FeatureSettings::operator=(const FeatureSettings&) = default;

const FeatureValue* FeatureSettings::FindValue(const FeatureIdWithContext& feature) const
{
    const auto found = m_values.find(feature.GetFeature().GetFeatureEnum());
    return found != m_values.end() && Stands(feature) ? &found->second : nullptr;
}

bool FeatureSettings::SetValue(const FeatureIdWithContext& feature, FeatureValue value)
{
    const std::int32_t number = feature.GetFeature().GetFeatureEnum();
    if (auto* const text = std::get_if<CXString>(&value))
        *text = SingleLine(text->View());
    if (!Stands(feature) || !Takes(number, value))
        ThrowException<ExceptionInvalidFeatureValue>({W("FeatureSettings::SetValue"), kSourceFile},
                                                     W("feature %d is not there, or does not take the value"),
                                                     {number});
    const auto [place, isNew] = m_values.try_emplace(number, value);
    if (isNew || place->second == value)
        return isNew;
    place->second = std::move(value);
    return true;
}

bool FeatureSettings::RemoveValue(const FeatureIdWithContext& feature)
{
    return Stands(feature) && m_values.erase(feature.GetFeature().GetFeatureEnum()) > 0;
}

void FeatureSettings::Clear()
{
    m_values.clear();
}

bool FeatureSettings::IsSameAs(const FeatureSettings& other) const
{
    return m_values == other.m_values;
}
