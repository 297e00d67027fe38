#include "modelmediatypes.h"

#include <set>
#include <string>

#include <tvcore/featurecatalogue.h>
#include <tvcore/standardmedia.h>

#include "modelchoice.h"

namespace
{

namespace Value = DataModelIds::Value;

constexpr std::size_t kMaxMediaName = 64;

// As the provider's table has it.
std::int32_t FoldedMediaId(std::int32_t id)
{
    return id == Value::MediaAutoSelect ? std::int32_t{Value::Automatic} : FoldStandardMediaNumber(id);
}

void CheckMediaId(const JsonCursor& place, std::int32_t givenId)
{
    const std::int32_t id = FoldedMediaId(givenId);
    const bool isInTable = id > Value::MediaAutoSelect && id <= Value::MediaLastPredefined;
    if (isInTable && !FeatureCatalogue::Allows(*FeatureCatalogue::Find(DataModelIds::Feature::MediaType), id))
        place.Fault("media value " + std::to_string(id) + " is reserved: it has no option name");
    if (id != Value::Automatic && !isInTable && id <= Value::MediaLastReserved)
        place.Fault("media value " + std::to_string(id) + " is unknown");
}

// What a document will call the media type: two types of one name could not be told apart.
std::string OptionKey(const PrinterModel::MediaType& media)
{
    if (media.id > Value::MediaLastReserved)
        return "custom " + media.name.ToUtf8();
    return std::to_string(FoldedMediaId(media.id));
}

} // namespace

std::vector<PrinterModel::MediaType> ReadModelMediaTypes(const JsonCursor& place)
{
    std::vector<PrinterModel::MediaType> mediaTypes;
    std::set<std::string> known;
    place.ForEachItem(
        [&](const JsonCursor& item)
        {
            item.OnlyFields({"id", "name"});
            PrinterModel::MediaType media;
            media.id = item.Field("id").Number<std::int32_t>(0, kAnyValue);
            media.name = item.Field("name").Name(kMaxMediaName);
            CheckMediaId(item.Field("id"), media.id);
            if (!known.insert(OptionKey(media)).second)
                item.Field("id").Fault("another media type would have the same option name");
            mediaTypes.push_back(std::move(media));
        });
    place.NotEmpty();
    return mediaTypes;
}
