// Attribute bytes: the lists and the values in them.
#include <windows.h>

#include <functional>
#include <limits>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <tvutil/bytewriter.h>

#include "tests/tvutil/attributebytessamples.h"

namespace
{

using Reader = AttributeBytesReader;

constexpr LONGLONG kMost = std::numeric_limits<LONGLONG>::max();

// With an index and without one the answers are the same.
class AttributeLists : public testing::TestWithParam<bool>
{
protected:
    [[nodiscard]] static AttributeBytesIndexedList Read(const ByteBuffer& bytes, bool isReadable = true)
    {
        AttributeBytesIndexedList list;
        list.SetIndexed(GetParam());
        EXPECT_EQ(list.ImportFromRawList(AttributeBytesRawList(bytes.bytes())), isReadable);
        return list;
    }
};
INSTANTIATE_TEST_SUITE_P(Indexed, AttributeLists, testing::Bool());

TEST_P(AttributeLists, BringEachKindBack)
{
    const ByteBuffer bytes = BytesOf(SampleList());
    const AttributeBytesIndexedList list = Read(bytes);
    EXPECT_EQ(Hex(BytesOf(list)), Hex(bytes));
    EXPECT_EQ(Reader::GetBooleanValueFromAttributeBytes(list, 10), false);
    EXPECT_EQ(Reader::GetIntegerValueFromAttributeBytes(list, 20), -2);
    EXPECT_EQ(Reader::GetStringValueFromAttributeBytes(list, 30), CXString(W("text")));
    EXPECT_EQ(Reader::GetDimensionValueFromAttributeBytes(list, 50),
              Dimension(Number(-254, 100), Dimension::Centimeters));
    const auto option = Reader::GetOptionValueFromAttributeBytes(list, 40);
    ASSERT_TRUE(option);
    EXPECT_EQ(option->GetValueId(), 10001);
    EXPECT_EQ(option->GetValueName(), W("Red"));
    EXPECT_TRUE(option->IsChoice());
    EXPECT_EQ(list.GetAttributeBytes(70)->data, Bytes({1, 2, 3}));

    const auto outer = list.GetCollection(60);
    ASSERT_TRUE(outer);
    EXPECT_EQ(Reader::GetBooleanValueFromAttributeBytes(*outer, 1), true);
    EXPECT_EQ(AttributeBytesListValue::FromAttributeBytes(*outer->GetAttributeBytes(2))->GetLevelCount(), 2u);
    const auto inner = outer->GetCollection(2);
    ASSERT_TRUE(inner);
    EXPECT_EQ(Reader::GetStringValueFromAttributeBytes(*inner, 1), CXString(W("inner")));

    for (const AttributeBytesFeatureId feature : {99, 70, -1})
    {
        EXPECT_EQ(Reader::GetBooleanValueFromAttributeBytes(list, feature), std::nullopt);
        EXPECT_EQ(Reader::GetIntegerValueFromAttributeBytes(list, feature), std::nullopt);
        EXPECT_EQ(Reader::GetStringValueFromAttributeBytes(list, feature), std::nullopt);
        EXPECT_EQ(Reader::GetDimensionValueFromAttributeBytes(list, feature), std::nullopt);
        EXPECT_FALSE(Reader::GetOptionValueFromAttributeBytes(list, feature));
        EXPECT_FALSE(list.GetCollection(feature));
    }
    EXPECT_THROW(static_cast<void>(list.GetFeature(8)), std::out_of_range);
    EXPECT_THROW(static_cast<void>(list.GetValue(8)), std::out_of_range);
}

// Three attributes, the first of a feature that stands twice; whatever is edited, the rest stays byte for byte.
TEST_P(AttributeLists, AreEditedInPlace)
{
    const ByteBuffer kept = Bytes({5, 0, 0, 0, 200, 0xFE, 2, 0, 8, 9}); // of no known kind
    const ByteBuffer stored = Join({Bytes({9, 0, 0, 0, 1, 0x81, 1, 0, 1}), kept, Bytes({9, 0, 0, 0, 2, 0, 0, 0})});
    const AttributeBytesIndexedList original = Read(stored);
    const auto edited = [&original](const std::function<void(AttributeBytesIndexedList&)>& edit)
    {
        AttributeBytesIndexedList list(original); // shares until it is edited
        edit(list);
        return Hex(BytesOf(list));
    };
    EXPECT_EQ(edited([](auto& list) { list.SetAttributeBytes(9, MakeBooleanAttributeBytes(false)); }),
              Hex(Join({Bytes({9, 0, 0, 0, 1, 0, 1, 0, 0}), kept, Bytes({9, 0, 0, 0, 2, 0, 0, 0})})));
    EXPECT_EQ(
        edited(
            [](auto& list)
            {
                for (const std::int32_t feature : {7, 3, 9, 8})
                    list.SetAttributeBytes(feature, {AttributeBytesKind::Binary, 0, {}});
                for (const std::int32_t feature : {7, 3, 9, 8, 5})
                    EXPECT_NE(list.GetAttributeBytes(feature), nullptr) << feature;
            }),
        Hex(Join({Bytes({9, 0, 0, 0, 7, 0, 0, 0}), kept, Bytes({9, 0, 0, 0, 2, 0, 0, 0}),
                  Bytes({7, 0, 0, 0, 7, 0, 0, 0}), Bytes({3, 0, 0, 0, 7, 0, 0, 0}), Bytes({8, 0, 0, 0, 7, 0, 0, 0})})));
    EXPECT_EQ(edited(
                  [](auto& list)
                  {
                      EXPECT_TRUE(list.RemoveAttributeBytes(9));
                      EXPECT_FALSE(list.RemoveAttributeBytes(9));
                      EXPECT_EQ(list.GetAttributeBytes(9), nullptr);
                      EXPECT_NE(list.GetAttributeBytes(5), nullptr);
                  }),
              Hex(kept));
    EXPECT_EQ(Hex(BytesOf(original)), Hex(stored)) << "the edits were the copies' own";
    EXPECT_EQ(original.GetAttributeBytes(9)->flags, 0x81) << "the first one counts";
}

// Values whose bytes make none, and lists that contradict themselves.
TEST_P(AttributeLists, BelieveNoBytesThatMakeNoSense)
{
    struct Case
    {
        AttributeBytesKind kind;
        std::vector<int> bytes;
    };
    const Case cases[] = {
        {AttributeBytesKind::Boolean, {}},
        {AttributeBytesKind::Boolean, {2}},
        {AttributeBytesKind::Boolean, {1, 0}},
        {AttributeBytesKind::Integer, {1, 0, 0}},
        {AttributeBytesKind::Integer, {1, 0, 0, 0, 0}},
        {AttributeBytesKind::String, {1, 0, 0}},
        {AttributeBytesKind::Option, {1, 0}},
        {AttributeBytesKind::Option, {1, 0, 0, 0, 65}},
        {AttributeBytesKind::Dimension, {1, 0, 0, 0, 0, 0, 0}},
        {AttributeBytesKind::Dimension, {1, 0, 0, 0, 0, 0, 0, 0, 0}},
        {AttributeBytesKind::List, {}},
        {AttributeBytesKind::List, {0, 0}}, // no level: no collection
        {AttributeBytesKind::List, {1, 0, 1, 0}},
        {AttributeBytesKind::List, {2, 0, 0, 0}},
        {AttributeBytesKind::List, {1, 0, 0, 0, 0}},          // behind the last level
        {AttributeBytesKind::List, {1, 0, 4, 0, 1, 0, 0, 0}}, // half an attribute
        {AttributeBytesKind::List, {255, 255, 255, 255, 0, 0, 0, 0}},
    };
    for (const Case& test : cases)
    {
        SCOPED_TRACE(std::to_string(static_cast<int>(test.kind)) + ", " + Hex(Bytes(test.bytes)));
        AttributeBytesIndexedList written;
        written.SetAttributeBytes(9, MakeBooleanAttributeBytes(true));
        const std::size_t good = BytesOf(written).size();
        written.SetAttributeBytes(1, {test.kind, 0, Bytes(test.bytes)});
        const ByteBuffer bytes = BytesOf(written);
        const AttributeBytesIndexedList list = Read(bytes);
        EXPECT_FALSE(Reader::GetBooleanValueFromAttributeBytes(list, 1));
        EXPECT_FALSE(Reader::GetIntegerValueFromAttributeBytes(list, 1));
        EXPECT_FALSE(Reader::GetStringValueFromAttributeBytes(list, 1));
        EXPECT_FALSE(Reader::GetOptionValueFromAttributeBytes(list, 1));
        EXPECT_FALSE(Reader::GetDimensionValueFromAttributeBytes(list, 1));
        EXPECT_FALSE(list.GetCollection(1));
        EXPECT_EQ(Hex(BytesOf(list)), Hex(bytes)) << "what nobody edits is kept";
        for (std::size_t size = good + 1; size < bytes.size(); ++size)
            EXPECT_EQ(Read(ByteBuffer(bytes.bytes().first(size)), false).GetCount(), 0u) << size;
    }
}

TEST(AttributeValues, HaveLimits)
{
    AttributeBytesIndexedList list;
    const auto binary = [](std::size_t size)
    {
        return AttributeBytesValue{AttributeBytesKind::Binary, 0, ByteBuffer(size)};
    };
    list.SetAttributeBytes(1, binary(65535));
    EXPECT_THROW(list.SetAttributeBytes(1, binary(65536)), std::length_error);
    EXPECT_THROW(
        list.SetAttributeBytes(
            2, AttributeBytesOptionValue(AttributeBytesNewValueId(1, CXString(WideString(32766, W('x')))), false)),
        std::length_error);
    EXPECT_EQ(list.GetCount(), 1u);
    EXPECT_EQ(list.GetAttributeBytes(1)->data.size(), 65535u);

    AttributeBytesListValue levels(RawListOf(ByteBuffer(65531)));
    EXPECT_EQ(levels.ToAttributeBytes().data.size(), 65535u);
    levels.AddLevel(AttributeBytesRawList());
    EXPECT_THROW(static_cast<void>(levels.ToAttributeBytes()), std::length_error);
    EXPECT_THROW(static_cast<void>(levels.GetLevel(2)), std::out_of_range);
}

// Written by us they are clean; read from somebody else's bytes they are cleaned.
TEST(AttributeValues, AreTextsOfOneLine)
{
    const WideString forged = W("a\r\nb\x7F\x85\x9F\x2028\x2029\xA0\x1F") + WideString(1, WCHAR()) + W("c");
    const WideString clean = W("a  b     \xA0  c");
    AttributeBytesIndexedList list;
    list.SetAttributeBytes(1, MakeStringAttributeBytes(forged));
    list.SetAttributeBytes(2, AttributeBytesOptionValue(AttributeBytesNewValueId(3, CXString(forged)), false));
    ByteBuffer foreign(std::as_bytes(std::span(forged)));
    list.SetAttributeBytes(3, {AttributeBytesKind::String, 0, foreign});
    list.SetAttributeBytes(4, {AttributeBytesKind::Option, 0, Join({Bytes({3, 0, 0, 0}), foreign})});

    EXPECT_EQ(list.GetAttributeBytes(1)->data, ByteBuffer(std::as_bytes(std::span(clean))));
    for (const std::int32_t feature : {1, 3})
        EXPECT_EQ(Reader::GetStringValueFromAttributeBytes(list, feature), CXString(clean)) << feature;
    for (const std::int32_t feature : {2, 4})
        EXPECT_EQ(Reader::GetOptionValueFromAttributeBytes(list, feature)->GetValueName(), clean) << feature;
}

TEST(AttributeValues, HoldDimensionsToTheNanometre)
{
    for (const LONGLONG nanometers : {LONGLONG{0}, LONGLONG{1}, LONGLONG{-1}, LONGLONG{25'400'001}, -kMost / 1000})
    {
        AttributeBytesIndexedList list;
        ByteBuffer bytes(8);
        ByteWriter(bytes.bytes()).I64(nanometers);
        list.SetAttributeBytes(1, {AttributeBytesKind::Dimension, 0, bytes});
        const auto dimension = Reader::GetDimensionValueFromAttributeBytes(list, 1);
        ASSERT_TRUE(dimension);
        EXPECT_EQ(dimension->GetValue(Dimension::Microns).GetNumerator(), nanometers);
        EXPECT_EQ(MakeDimensionAttributeBytes(*dimension).data, bytes) << nanometers;
    }
}

} // namespace
