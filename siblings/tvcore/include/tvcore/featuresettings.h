// FeatureSettings: what the features of one place are set to: the job's, or those of one item of a list.
//
// Typed values by feature. A feature has the kind that the catalogue says (tvcore/featurecatalogue.h); the core
// driver's features, which are not in it, are options or integers. A feature without a value is one that nobody set and
// that has no default.
//
// A value type; one thread at a time. The library is delay-loaded (tvcore/tvcoreapi.h).
#pragma once

#include <cstdint>
#include <map>
#include <variant>
#include <vector>

#include <tvcore/featureid.h>
#include <tvcore/tvcoreapi.h>
#include <tvcore/valueid.h>
#include <tvutil/cxstring.h>
#include <tvutil/dimension.h>

class FeatureSettings;

using FeatureList = std::vector<FeatureSettings>; // the items of a list feature
using FeatureValue = std::variant<bool, std::int32_t, CXString, ValueId, Dimension, FeatureList>;

class TVCORE_API FeatureSettings
{
public:
    FeatureSettings();
    ~FeatureSettings();
    FeatureSettings(const FeatureSettings&);
    FeatureSettings& operator=(const FeatureSettings&);

    // Null when the feature has no value, or does not stand in the contexts. Valid until the next change.
    [[nodiscard]] const FeatureValue* FindValue(const FeatureIdWithContext& feature) const;

    // Whether the value is another one now. A text becomes one line (tvutil/singleline.h). Throws
    // ExceptionInvalidFeatureValue, with nothing changed, for a feature that does not exist or not in these contexts,
    // and for a value of the wrong kind or that the feature does not take.
    bool SetValue(const FeatureIdWithContext& feature, FeatureValue value);

    // Whether there was one.
    bool RemoveValue(const FeatureIdWithContext& feature);
    void Clear();

    [[nodiscard]] bool IsSameAs(const FeatureSettings& other) const;

    friend bool operator==(const FeatureSettings& left, const FeatureSettings& right)
    {
        return left.IsSameAs(right);
    }

private:
    std::map<std::int32_t, FeatureValue> m_values;
};
