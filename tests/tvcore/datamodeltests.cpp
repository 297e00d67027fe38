// The data model's settings: out of attribute bytes and back into them, over defaults.
#include <gtest/gtest.h>

#include <tvcore/featurereferences.h>
#include <tvcore/featureservices.h>

#include <stdexcept>

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

AttributeBytesValue Levels(std::initializer_list<Settings> levels)
{
    AttributeBytesListValue list;
    for (const Settings& level : levels)
        list.AddLevel(RawListOf(ListOf(level)));
    return list.ToAttributeBytes();
}

AttributeBytesListTranslator Translator(FeatureServices& services)
{
    return services.GetTranslator(214, 401, 301);
}

TEST(DataModelSettings, LeaveOutWhatTheCatalogueDoesNotAllowAndKeepItInTheBytes)
{
    const AttributeBytesValue tooLong =
        MakeDimensionAttributeBytes(Dimension(Number(1'000'000'001, 1000), Dimension::Microns));
    const Settings notTaken = {
        {kUnknown, kOne},
        {Feature::JobTitle, kOne},
        {Feature::TabCount, MakeIntegerAttributeBytes(-1)},
        {Feature::JobPlex, Option(Value::Collated)},
        {Feature::JobPlex, Option(Value::Simplex, W("a name for a value of the tables"))},
        {Feature::PaperColor, Option(9700, W(" "))},
        {Feature::JobMessage, MakeStringAttributeBytes(WideString(256, W('x')))},
        {Feature::ImageShiftX, tooLong},
        {Feature::MediaType, Option(Value::MediaPlain)}, // outside of its collection
        {Feature::PageMediaCollection, kOne},
        {Feature::PageExceptions, kOne},
        {Feature::PageExceptions, AttributeBytesListValue(RawListOf(Bytes({1, 2, 3}))).ToAttributeBytes()},
        {Feature::ReplaceDriverPaperInSpreadsheets, MakeBooleanAttributeBytes(true)}, // the device's
    };
    for (const auto& [feature, value] : notTaken)
    {
        SCOPED_TRACE(std::to_string(feature) + " " + Hex(value.data));
        AttributeBytesIndexedList list = ListOf({{feature, value}, {Feature::JobCopies, kOne}});
        FeatureServices services;
        EXPECT_EQ(Translator(services).ImportSettings(list), 1u);
        EXPECT_EQ(services.FindValue(FeatureIdWithContext::FromNumber(feature)), nullptr);
        services.SetValue(Feature::JobCopies, 7);
        EXPECT_TRUE(Translator(services).ExportSettings(list));
        const auto expected = ListOf({{feature, value}, {Feature::JobCopies, MakeIntegerAttributeBytes(7)}});
        EXPECT_EQ(Hex(BytesOf(list)), Hex(BytesOf(expected)));
        if (feature != Feature::PageMediaCollection)
            continue;
        services.SetValue(Feature::MediaType, ValueId(Value::MediaPlain));
        EXPECT_THROW(Translator(services).ExportSettings(list), std::invalid_argument); // there is no place for it
        EXPECT_EQ(Hex(BytesOf(list)), Hex(BytesOf(expected)));
    }
}

TEST(DataModelSettings, KeepWhatElseLiesInCollectionsAndItemsAndWriteNoDefaults)
{
    const auto listOf = [](const AttributeBytesValue& media, const AttributeBytesValue& plex, std::int32_t copies)
    {
        return ListOf(
            {{Feature::PageMediaCollection,
              Levels({{{Feature::MediaCollection, Levels({{{kUnknown, kOne}, {Feature::MediaType, media}}})}}})},
             {Feature::PageExceptions, Levels({{{Feature::JobCopies, kOne}, {Feature::PageExceptions, Levels({})}},
                                               {{kUnknown, kOne}, {Feature::JobPlex, plex}}})},
             {Feature::JobCopies, MakeIntegerAttributeBytes(copies)}});
    };
    AttributeBytesIndexedList list = listOf(Option(Value::MediaPlain), Option(Value::Simplex), 3);
    FeatureSettings defaults;
    defaults.SetValue(Feature::JobCopies, 2);
    defaults.SetValue(Feature::TabCount, 5);
    FeatureServices services;
    services.SetDefaults(defaults);
    EXPECT_EQ(Translator(services).ImportSettings(list), 3u);
    services.CompleteFromDefaults();
    EXPECT_EQ(IntegerFeatureRef(services, Feature::JobCopies).GetValue(), 3);
    EXPECT_EQ(IntegerFeatureRef(services, Feature::TabCount).GetValue(), 5);
    EXPECT_FALSE(Translator(services).ExportSettings(list));

    const ListOfValuesRef stored(services, Feature::PageExceptions);
    ASSERT_EQ(stored.GetNumItems(), 2u);
    EXPECT_EQ(stored.GetListOfFeatures(0).FindValue(Feature::PageExceptions), nullptr); // an item has no lists
    FeatureList items = {stored.GetListOfFeatures(0), stored.GetListOfFeatures(1)};
    items[1].SetValue(Feature::JobPlex, ValueId(Value::DuplexLongEdge));
    services.SetValue(Feature::PageExceptions, items);
    services.SetValue(Feature::MediaType, ValueId(static_cast<DataModelIds::tagValueEnum>(9700), W("Blue\n90g")));
    services.SetValue(Feature::JobCopies, 2); // the default, but not what the list says
    EXPECT_TRUE(Translator(services).ExportSettings(list));
    EXPECT_EQ(Hex(BytesOf(list)), Hex(BytesOf(listOf(Option(9700, W("Blue 90g")), Option(Value::DuplexLongEdge), 2))));
}

} // namespace
