// The data model's settings: out of attribute bytes and back into them, over defaults.
#include <gtest/gtest.h>

#include <tvcore/featurereferences.h>
#include <tvcore/featureservices.h>
#include <tvcore/featurevalues.h>
#include <tvutil/attributebytesreader.h>

#include <stdexcept>
#include <string>
#include <utility>

#include "tests/tvutil/attributebytessamples.h"

namespace
{

namespace Feature = DataModelIds::Feature;
namespace Value = DataModelIds::Value;

using Settings = std::initializer_list<std::pair<std::int32_t, AttributeBytesValue>>;

constexpr std::int32_t kUnknown = 9001;

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
        list.AddLevel(AttributeBytesRawList(ListOf(level)));
    return list.ToAttributeBytes();
}

AttributeBytesListTranslator Translator(FeatureServices& services)
{
    return services.GetTranslator(214, 401, 301);
}

const AttributeBytesValue kOne = MakeIntegerAttributeBytes(1);

const struct
{
    const char* name;
    std::int32_t feature;
    AttributeBytesValue value;
} kNotTaken[] = {
    {"a feature that nobody knows", kUnknown, kOne},
    {"another kind", Feature::JobTitle, kOne},
    {"less than the least", Feature::TabCount, MakeIntegerAttributeBytes(-1)},
    {"another feature's value", Feature::JobPlex, Option(Value::Collated)},
    {"a name for a value of the tables", Feature::JobPlex, Option(Value::Simplex, W("mine"))},
    {"a custom value without a name", Feature::PaperColor, Option(9700)},
    {"a name that is too long", Feature::PaperColor, Option(9700, CXString(WideString(65, W('x'))).c_str())},
    {"a text that is too long", Feature::JobMessage, MakeStringAttributeBytes(WideString(256, W('x')))},
    {"a metre and a bit", Feature::ImageShiftX,
     MakeDimensionAttributeBytes(Dimension(Number(1'000'000'001, 1000), Dimension::Microns))},
    {"outside of its collection", Feature::MediaType, Option(Value::MediaPlain)},
    {"no collection", Feature::PageMediaCollection, kOne},
    {"no list", Feature::PageExceptions, kOne},
    {"a list with an item that cannot be read", Feature::PageExceptions,
     AttributeBytesListValue(AttributeBytesRawList(std::as_bytes(std::span("abc", 3)))).ToAttributeBytes()},
    {"the device's", Feature::ReplaceDriverPaperInSpreadsheets, MakeBooleanAttributeBytes(true)},
    {"the driver's own", Feature::DevicePaperList, {AttributeBytesKind::Binary, 0, ByteBuffer(std::size_t{4})}},
};

TEST(DataModelSettings, LeaveOutWhatTheCatalogueDoesNotAllowAndKeepItInTheBytes)
{
    for (const auto& [name, feature, value] : kNotTaken)
    {
        SCOPED_TRACE(name);
        AttributeBytesIndexedList list =
            ListOf({{feature, value}, {Feature::JobSignature, Option(Value::SignatureOn)}});
        FeatureServices services;
        EXPECT_EQ(Translator(services).ImportSettings(list), 1u);
        EXPECT_EQ(services.FindValue(FeatureIdWithContext::FromNumber(feature)), nullptr);
        services.SetValue(Feature::JobCopies, 7);
        EXPECT_TRUE(Translator(services).ExportSettings(list));
        EXPECT_EQ(BytesOf(list), BytesOf(ListOf({{feature, value},
                                                 {Feature::JobSignature, Option(Value::SignatureOn)},
                                                 {Feature::JobCopies, MakeIntegerAttributeBytes(7)}})));
        if (feature == Feature::PageMediaCollection) // there is no place for it
        {
            const ByteBuffer before = BytesOf(list);
            services.SetValue(Feature::MediaType, ValueId(Value::MediaPlain));
            EXPECT_THROW(Translator(services).ExportSettings(list), std::invalid_argument);
            EXPECT_EQ(BytesOf(list), before);
        }
    }
}

TEST(DataModelSettings, KeepWhatElseLiesInCollectionsAndItems)
{
    const AttributeBytesValue media = Option(Value::MediaTransparency);
    AttributeBytesIndexedList list = ListOf({
        {Feature::PageMediaCollection,
         Levels({{{Feature::MediaCollection, Levels({{{kUnknown, kOne}, {Feature::MediaType, media}}})}}})},
        {Feature::PageExceptions, Levels({{{kUnknown, kOne}, {Feature::JobPlex, Option(Value::Simplex)}},
                                          {{Feature::JobCopies, kOne}, {Feature::PageExceptions, Levels({{}})}}})},
        {Feature::JobCopies, kOne},
    });
    const ByteBuffer before = BytesOf(list);
    FeatureServices services;
    EXPECT_EQ(Translator(services).ImportSettings(list), 3u);
    const ListOfValuesRef items(services, Feature::PageExceptions);
    ASSERT_EQ(items.GetNumItems(), 2u);
    EXPECT_EQ(items.GetListOfFeatures(1).FindValue(Feature::PageExceptions), nullptr); // an item has no lists
    EXPECT_FALSE(Translator(services).ExportSettings(list));
    EXPECT_EQ(BytesOf(list), before);

    FeatureSettings item = items.GetListOfFeatures(0);
    item.SetValue(Feature::JobPlex, ValueId(Value::DuplexLongEdge));
    services.SetValue(Feature::PageExceptions, FeatureList{item});
    services.SetValue(Feature::MediaType, ValueId(static_cast<DataModelIds::tagValueEnum>(9700), W("Blue\n90g")));
    services.RemoveValue(Feature::JobCopies);
    EXPECT_TRUE(Translator(services).ExportSettings(list));
    EXPECT_EQ(
        BytesOf(list),
        BytesOf(ListOf({
            {Feature::PageMediaCollection,
             Levels({{{Feature::MediaCollection,
                       Levels({{{kUnknown, kOne}, {Feature::MediaType, Option(9700, W("Blue 90g"))}}})}}})},
            {Feature::PageExceptions, Levels({{{kUnknown, kOne}, {Feature::JobPlex, Option(Value::DuplexLongEdge)}}})},
        })));
}

TEST(DataModelSettings, AreNotWrittenWhereTheyAreTheDefaults)
{
    FeatureSettings defaults;
    defaults.SetValue(Feature::JobCopies, 2);
    defaults.SetValue(Feature::JobTitle, CXString(W("a title")));
    FeatureServices services;
    services.SetDefaults(defaults);
    AttributeBytesIndexedList list = ListOf({{Feature::JobCopies, MakeIntegerAttributeBytes(3)}});
    Translator(services).ImportSettings(list);
    services.CompleteFromDefaults();
    services.KeepAsUnchanged();
    EXPECT_EQ(IntegerFeatureRef(services, Feature::JobCopies).GetValue(), 3);
    EXPECT_EQ(StringFeatureRef(services, Feature::JobTitle).GetValue(), CXString(W("a title")));
    EXPECT_FALSE(Translator(services).ExportSettings(list));
    services.SetValue(Feature::JobCopies, 2); // the default, but not what the list says
    EXPECT_TRUE(services.IsChanged(Feature::JobCopies));
    EXPECT_FALSE(services.IsChanged(Feature::JobTitle));
    EXPECT_TRUE(Translator(services).ExportSettings(list));
    EXPECT_EQ(BytesOf(list), BytesOf(ListOf({{Feature::JobCopies, MakeIntegerAttributeBytes(2)}})));
    EXPECT_THROW(static_cast<void>(services.GetTranslator(214, 401, 303)), std::invalid_argument);
}

} // namespace
