// Attribute bytes: the lists and the values in them.
#include <windows.h>

#include <stdexcept>
#include <utility>

#include <gtest/gtest.h>

#include "tests/tvutil/attributebytessamples.h"

namespace
{

using Reader = AttributeBytesReader;

// The feature has no value of a type that we know.
void ExpectNoValue(const AttributeBytesIndexedList& list, AttributeBytesFeatureId feature)
{
    EXPECT_FALSE(Reader::GetBooleanValueFromAttributeBytes(list, feature));
    EXPECT_FALSE(Reader::GetIntegerValueFromAttributeBytes(list, feature));
    EXPECT_FALSE(Reader::GetStringValueFromAttributeBytes(list, feature));
    EXPECT_FALSE(Reader::GetOptionValueFromAttributeBytes(list, feature));
    EXPECT_FALSE(Reader::GetDimensionValueFromAttributeBytes(list, feature));
    EXPECT_FALSE(list.GetCollection(feature));
}

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
              Dimension(Number(-25'400'001, 10'000'000), Dimension::Centimeters)); // to the nanometre
    const auto option = Reader::GetOptionValueFromAttributeBytes(list, 40);
    ASSERT_TRUE(option);
    EXPECT_TRUE(option->GetValueId() == 10001 && option->GetValueName() == W("Red") && option->IsChoice());

    const auto outer = list.GetCollection(60);
    ASSERT_TRUE(outer);
    const auto inner = outer->GetCollection(2);
    ASSERT_TRUE(inner);
    EXPECT_EQ(Reader::GetStringValueFromAttributeBytes(*inner, 1), CXString(W("inner")));

    for (const AttributeBytesFeatureId feature : {99, 70, -1})
        ExpectNoValue(list, feature);
}

// Three attributes, the first of a feature that stands twice; whatever is edited, the rest stays byte for byte.
TEST_P(AttributeLists, AreEditedInPlace)
{
    const std::string kept = "05000000C8FE02000809"; // of no known kind
    const std::string last = "0900000002000000";
    const ByteBuffer stored =
        Bytes({9, 0, 0, 0, 1, 0x81, 1, 0, 1, 5, 0, 0, 0, 200, 0xFE, 2, 0, 8, 9, 9, 0, 0, 0, 2, 0, 0, 0});
    const AttributeBytesIndexedList original = Read(stored);
    AttributeBytesIndexedList replaced(original); // shares until it is edited
    replaced.SetAttributeBytes(9, MakeBooleanAttributeBytes(false));
    EXPECT_EQ(Hex(BytesOf(replaced)), "090000000100010000" + kept + last);

    AttributeBytesIndexedList longer(original);
    for (const std::int32_t feature : {7, 3, 9, 8})
        longer.SetAttributeBytes(feature, {AttributeBytesKind::Binary, 0, {}});
    for (const std::int32_t feature : {7, 3, 9, 8, 5})
        EXPECT_NE(longer.GetAttributeBytes(feature), nullptr) << feature;
    EXPECT_EQ(Hex(BytesOf(longer)),
              "0900000007000000" + kept + last + "0700000007000000" + "0300000007000000" + "0800000007000000");

    AttributeBytesIndexedList shorter(original);
    EXPECT_TRUE(shorter.RemoveAttributeBytes(9));
    EXPECT_FALSE(shorter.RemoveAttributeBytes(9));
    EXPECT_NE(shorter.GetAttributeBytes(5), nullptr);
    EXPECT_EQ(Hex(BytesOf(shorter)), kept) << "both";
    EXPECT_EQ(Hex(BytesOf(original)), Hex(stored)) << "the edits were the copies' own";
    EXPECT_EQ(original.GetAttributeBytes(9)->flags, 0x81) << "the first one counts";
}

// Values whose bytes make none, and lists that contradict themselves.
TEST_P(AttributeLists, BelieveNoBytesThatMakeNoSense)
{
    const std::pair<AttributeBytesKind, std::vector<int>> cases[] = {
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
        {AttributeBytesKind::List, {0, 0}}, // no level: no collection
        {AttributeBytesKind::List, {1, 0, 1, 0}},
        {AttributeBytesKind::List, {1, 0, 0, 0, 0}},          // behind the last level
        {AttributeBytesKind::List, {1, 0, 4, 0, 1, 0, 0, 0}}, // half an attribute
    };
    for (const auto& [kind, value] : cases)
    {
        SCOPED_TRACE(std::to_string(static_cast<int>(kind)) + ", " + Hex(Bytes(value)));
        AttributeBytesIndexedList written;
        written.SetAttributeBytes(9, MakeBooleanAttributeBytes(true));
        const std::size_t good = BytesOf(written).size();
        written.SetAttributeBytes(1, {kind, 0, Bytes(value)});
        const ByteBuffer bytes = BytesOf(written);
        const AttributeBytesIndexedList list = Read(bytes);
        ExpectNoValue(list, 1);
        EXPECT_EQ(Hex(BytesOf(list)), Hex(bytes)) << "what nobody edits is kept";
        for (std::size_t size = good + 1; size < bytes.size(); ++size)
            EXPECT_EQ(Read(ByteBuffer(bytes.bytes().first(size)), false).GetCount(), 0u) << size;
    }
}

TEST(AttributeValues, HaveLimits)
{
    AttributeBytesIndexedList list;
    list.SetAttributeBytes(1, {AttributeBytesKind::Binary, 0, ByteBuffer(65535)});
    EXPECT_THROW(list.SetAttributeBytes(1, {AttributeBytesKind::Binary, 0, ByteBuffer(65536)}), std::length_error);

    AttributeBytesListValue levels(RawListOf(ByteBuffer(65531)));
    EXPECT_EQ(levels.ToAttributeBytes().data.size(), 65535u);
    levels.AddLevel(AttributeBytesRawList());
    EXPECT_THROW(static_cast<void>(levels.ToAttributeBytes()), std::length_error);
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
    ByteBuffer foreignOption = Bytes({3, 0, 0, 0});
    foreignOption.append(foreign.bytes());
    list.SetAttributeBytes(4, {AttributeBytesKind::Option, 0, foreignOption});

    EXPECT_EQ(list.GetAttributeBytes(1)->data, ByteBuffer(std::as_bytes(std::span(clean))));
    for (const std::int32_t feature : {1, 3})
        EXPECT_EQ(Reader::GetStringValueFromAttributeBytes(list, feature), CXString(clean)) << feature;
    for (const std::int32_t feature : {2, 4})
        EXPECT_EQ(Reader::GetOptionValueFromAttributeBytes(list, feature)->GetValueName(), clean) << feature;
}

} // namespace
