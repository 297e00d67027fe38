// Features of the data model, as its users name them: a feature, and where it is looked up.
//
// Nothing that must be linked.
#pragma once

#include <span>
#include <vector>

#include <tvcore/datamodelids.h>

class FeatureId
{
public:
    constexpr FeatureId(DataModelIds::tagFeatureEnum feature) : m_feature(feature)
    {
    }

    [[nodiscard]] constexpr DataModelIds::tagFeatureEnum GetFeatureEnum() const
    {
        return m_feature;
    }

    friend constexpr bool operator==(const FeatureId&, const FeatureId&) = default;

private:
    DataModelIds::tagFeatureEnum m_feature;
};

// A feature, and the features in whose context it is looked up: FeatureIdWithContext(MediaType) with
// PushFeature(PageMediaCollection) is the media type of the page's media. Without any it is the feature wherever it
// stands.
class FeatureIdWithContext
{
public:
    FeatureIdWithContext(FeatureId feature) : m_feature(feature)
    {
    }
    FeatureIdWithContext(DataModelIds::tagFeatureEnum feature) : m_feature(feature)
    {
    }

    // One more context, around those that are there.
    FeatureIdWithContext& PushFeature(FeatureId context)
    {
        m_contexts.push_back(context);
        return *this;
    }

    [[nodiscard]] FeatureId GetFeature() const
    {
        return m_feature;
    }

    // The innermost first.
    [[nodiscard]] std::span<const FeatureId> GetContexts() const
    {
        return m_contexts;
    }

private:
    FeatureId m_feature;
    std::vector<FeatureId> m_contexts;
};
