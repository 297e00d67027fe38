#include "modeldefaults.h"

#include <limits>
#include <stdexcept>
#include <string>

#include <tvcore/printermodel.h>
#include <tvutil/attributebytesrawlist.h>

#include "modelchoice.h"

namespace
{

// As the catalogue's values are written.
std::string DefaultText(const JsonCursor& place, const FeatureCatalogue::Row& row)
{
    using FeatureCatalogue::Kind;
    const bool isNumber = row.kind == Kind::Integer || (row.kind == Kind::Option && !place.IsText());
    if (row.kind == Kind::Boolean)
        return place.Switch() ? "true" : "false";
    if (isNumber)
        return std::to_string(place.Number<std::int32_t>(std::numeric_limits<std::int32_t>::min(), kAnyValue));
    return place.Text(kMaxTextLength).ToUtf8();
}

AttributeBytesValue ReadDefault(const JsonCursor& place, std::int32_t feature)
{
    const FeatureCatalogue::Row* const row = FeatureCatalogue::Find(feature);
    if (row == nullptr)
        place.Fault("the feature catalogue has no such feature");
    if (row->values.empty() && row->kind != FeatureCatalogue::Kind::Boolean)
        place.Fault(FeatureCatalogue::DescribeLimit(*row));
    try
    {
        return FeatureCatalogue::ParseValue(*row, DefaultText(place, *row), false);
    }
    catch (const std::invalid_argument& limit)
    {
        place.Fault(limit.what());
    }
}

} // namespace

FeatureCatalogue::DefaultValues ReadModelDefaults(const JsonCursor& place)
{
    FeatureCatalogue::DefaultValues defaults;
    place.ForEachNumberedField([&defaults](std::int32_t feature, const JsonCursor& value)
                               { defaults.emplace(feature, ReadDefault(value, feature)); });
    const AttributeBytesRawList bytes(FeatureCatalogue::MakeSettings(defaults, FeatureCatalogue::Scope::Document));
    if (bytes.GetBytes().size() > PrinterModel::kMaxDocumentDefaults)
        place.Fault("a document's defaults take " + std::to_string(bytes.GetBytes().size()) +
                    " bytes, a devmode has room for " + std::to_string(PrinterModel::kMaxDocumentDefaults));
    return defaults;
}
