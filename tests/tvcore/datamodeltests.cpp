// The data model's settings: out of attribute bytes and back into them, over defaults.
#include <gtest/gtest.h>

#include <tvcore/featurereferences.h>
#include <tvcore/featureservices.h>

#include "tests/tvutil/attributebytessamples.h"

namespace
{

namespace Feature = DataModelIds::Feature;
namespace Value = DataModelIds::Value;
using Settings = std::initializer_list<std::pair<std::int32_t, AttributeBytesValue>>;

constexpr std::int32_t kUnknown = 9001;
const AttributeBytesValue kOne = MakeIntegerAttributeBytes(1);

AttributeBytesIndexedList ListOf(Settings settings)
{
    AttributeBytesIndexedList list;
    for (const auto& [feature, value] : settings)
        list.SetAttributeBytes(feature, value);
    return list;
}

AttributeBytesValue Option(std::int32_t value, const WCHAR* name = W(""))
{
    return AttributeBytesOptionValue(AttributeBytesNewValueId(value, name), true).ToAttributeBytes();
}

AttributeBytesValue Levels(Settings first, Settings second = {})
{
    AttributeBytesListValue list(RawListOf(ListOf(first)));
    list.AddLevel(RawListOf(ListOf(second)));
    return list.ToAttributeBytes();
}

TEST(DataModelSettings, LeaveOutWhatTheCatalogueDoesNotAllowAndKeepItInTheBytes)
{
    const Settings notTaken = {
        {kUnknown, kOne},
        {Feature::JobTitle, kOne},
        {Feature::JobPlex, Option(Value::Collated)},
        {Feature::PaperColor, Option(9700, W(" "))},
        {Feature::JobMessage, MakeStringAttributeBytes(WideString(256, W('x')))},
        {Feature::ImageShiftX, MakeDimensionAttributeBytes({Number(1'000'000'001, 1000), Dimension::Microns})},
        {Feature::MediaType, Option(Value::MediaPlain)}, // outside of its collection
        {Feature::PageMediaCollection, kOne},
        {Feature::PageExceptions, AttributeBytesListValue(RawListOf(Bytes({1, 2, 3}))).ToAttributeBytes()},
        {Feature::ReplaceDriverPaperInSpreadsheets, MakeBooleanAttributeBytes(true)}, // the device's
    };
    for (const auto& [feature, value] : notTaken)
    {
        SCOPED_TRACE(std::to_string(feature) + " " + Hex(value.data));
        AttributeBytesIndexedList list = ListOf({{feature, value}, {Feature::JobCopies, kOne}});
        FeatureServices services;
        EXPECT_EQ(services.GetTranslator(214, 401, 301).ImportSettings(list), 1u);
        EXPECT_EQ(services.FindValue(FeatureIdWithContext::FromNumber(feature)), nullptr);
        services.SetValue(Feature::JobCopies, 7);
        EXPECT_TRUE(services.GetTranslator(214, 401, 301).ExportSettings(list));
        const auto expected = ListOf({{feature, value}, {Feature::JobCopies, MakeIntegerAttributeBytes(7)}});
        EXPECT_EQ(Hex(BytesOf(list)), Hex(BytesOf(expected)));
    }
}

TEST(DataModelSettings, KeepWhatElseLiesInCollectionsAndItemsAndWriteNoDefaults)
{
    const auto listOf = [](const AttributeBytesValue& media, const AttributeBytesValue& plex)
    {
        const AttributeBytesValue inside = Levels({{kUnknown, kOne}, {Feature::MediaType, media}});
        return ListOf({{Feature::PageMediaCollection, Levels({{Feature::MediaCollection, inside}})},
                       {Feature::PageExceptions, Levels({{Feature::PageExceptions, Levels({})}},
                                                        {{kUnknown, kOne}, {Feature::JobPlex, plex}})}});
    };
    AttributeBytesIndexedList list = listOf(Option(Value::MediaPlain), Option(Value::Simplex));
    FeatureServices services;
    FeatureSettings defaults;
    defaults.SetValue(Feature::JobCopies, 2);
    services.SetDefaults(defaults);
    const auto translator = services.GetTranslator(214, 401, 301);
    EXPECT_EQ(services.GetTranslator(214, 401, 301).ImportSettings(list), 2u);
    services.CompleteFromDefaults();
    EXPECT_FALSE(translator.ExportSettings(list));

    const ListOfValuesRef stored(services, Feature::PageExceptions);
    FeatureList items = {stored.GetListOfFeatures(0), stored.GetListOfFeatures(1)};
    EXPECT_EQ(items[0], FeatureSettings()); // an item has no lists
    items[1].SetValue(Feature::JobPlex, ValueId(Value::DuplexLongEdge));
    services.SetValue(Feature::PageExceptions, items);
    services.SetValue(Feature::MediaType, ValueId(static_cast<DataModelIds::tagValueEnum>(9700), W("Blue\n90g")));
    EXPECT_TRUE(translator.ExportSettings(list));
    EXPECT_EQ(Hex(BytesOf(list)), Hex(BytesOf(listOf(Option(9700, W("Blue 90g")), Option(Value::DuplexLongEdge)))));
}

} // namespace
