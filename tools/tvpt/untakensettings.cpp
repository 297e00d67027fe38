#include "untakensettings.h"

#include <tvcore/attributebyteslisttranslator.h>

namespace
{

using FeatureCatalogue::Kind;
using FeatureCatalogue::Row;

// Whether the feature's bytes gave it a value. A collection's only have to hold features.
bool IsTaken(const AttributeBytesIndexedList& list, const Row& row, const FeatureSettings& taken)
{
    if (row.kind == Kind::Collection)
        return list.GetCollection(row.feature) != nullptr;
    return taken.FindValue(static_cast<DataModelIds::tagFeatureEnum>(row.feature)) != nullptr;
}

// Of the features whose collection is the parent; 0: of those that stand by themselves.
void Collect(const AttributeBytesIndexedList& list, std::int32_t parent, const FeatureSettings& taken,
             std::vector<std::string>& untaken)
{
    for (const Row& row : FeatureCatalogue::kRows)
    {
        if (row.parent != parent || row.scope != FeatureCatalogue::Scope::Document ||
            list.GetAttributeBytes(row.feature) == nullptr)
            continue;
        if (!IsTaken(list, row, taken))
            untaken.push_back(std::to_string(row.feature) + " " + std::string(row.name));
        else if (row.kind == Kind::Collection)
            Collect(*list.GetCollection(row.feature), row.feature, taken, untaken);
    }
}

} // namespace

std::vector<std::string> FindUntakenSettings(const AttributeBytesIndexedList& settings)
{
    FeatureSettings taken;
    AttributeBytesListTranslator(FeatureCatalogue::Scope::Document, taken, FeatureSettings()).ImportSettings(settings);
    std::vector<std::string> untaken;
    Collect(settings, 0, taken, untaken);
    return untaken;
}
