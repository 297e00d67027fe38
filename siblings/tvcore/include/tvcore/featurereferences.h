// References to features of the data model: one typed way in for each kind of feature.
//
// A reference borrows the settings. Reading gives nothing for a feature without a value, or of another kind; writing
// throws what FeatureSettings::SetValue throws. Nothing here must be linked but FeatureSettings.
#pragma once

#include <cstddef>
#include <optional>
#include <stdexcept>
#include <utility>
#include <variant>

#include <tvcore/featuresettings.h>

template <class Value>
class FeatureRef
{
public:
    FeatureRef(FeatureSettings& settings, FeatureIdWithContext feature)
        : m_settings(settings), m_feature(std::move(feature))
    {
    }

    [[nodiscard]] std::optional<Value> GetValue() const
    {
        const FeatureValue* const value = m_settings.FindValue(m_feature);
        const Value* const typed = value != nullptr ? std::get_if<Value>(value) : nullptr;
        return typed != nullptr ? std::optional<Value>(*typed) : std::nullopt;
    }

    // Whether the value is another one now.
    bool SetValue(Value value)
    {
        return m_settings.SetValue(m_feature, FeatureValue(std::move(value)));
    }

private:
    FeatureSettings& m_settings;
    FeatureIdWithContext m_feature;
};

using BooleanFeatureRef = FeatureRef<bool>;
using IntegerFeatureRef = FeatureRef<std::int32_t>;
using StringFeatureRef = FeatureRef<CXString>;
using OptionFeatureRef = FeatureRef<ValueId>;
using DimensionFeatureRef = FeatureRef<Dimension>; // core driver features have none

// A list feature: any number of items, each with features of its own.
class ListOfValuesRef
{
public:
    ListOfValuesRef(const FeatureSettings& settings, const FeatureIdWithContext& feature)
    {
        const FeatureValue* const value = settings.FindValue(feature);
        m_items = value != nullptr ? std::get_if<FeatureList>(value) : nullptr;
    }

    [[nodiscard]] std::size_t GetNumItems() const
    {
        return m_items != nullptr ? m_items->size() : 0;
    }

    // Valid until the settings change. Throws std::out_of_range.
    [[nodiscard]] const FeatureSettings& GetListOfFeatures(std::size_t item) const
    {
        if (m_items == nullptr)
            throw std::out_of_range("ListOfValuesRef");
        return m_items->at(item);
    }

private:
    const FeatureList* m_items = nullptr; // null: none
};
