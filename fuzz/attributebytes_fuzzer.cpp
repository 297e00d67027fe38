// Persistent attributes of any bytes: read in every way, then edited; what was set must come back, and what was there
// beside it must stay.
#include <windows.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>

#include <tvutil/attributebytesreader.h>
#include <tvutil/persistentattributes.h>

#include "tests/tvutil/attributebytessamples.h"

namespace
{

constexpr AttributeBytesNameSpacesId kEdited = PersistentAttributes::GetDataModelDocPropNameSpaceId();
constexpr AttributeBytesNameSpacesId kOther = PersistentAttributes::GetMsDeviceCapabilitiesNameSpaceId();
constexpr std::int32_t kFeature = 46;

void Require(bool holds)
{
    if (!holds)
        std::abort();
}

ByteBuffer ListOf(const PersistentAttributes& attributes, AttributeBytesNameSpacesId id)
{
    return ByteBuffer(attributes.GetAttributeBytesListForNameSpace(id).GetBytes());
}

// Asks for each value as every type, and for what collections hold.
void ReadAll(const AttributeBytesRawList& raw, int depth)
{
    AttributeBytesIndexedList list;
    list.ImportFromRawList(raw);
    list.SetIndexed(true);
    for (std::size_t position = 0; position < list.GetCount(); ++position)
    {
        const AttributeBytesFeatureId feature = list.GetFeature(position);
        static_cast<void>(AttributeBytesReader::GetBooleanValueFromAttributeBytes(list, feature));
        static_cast<void>(AttributeBytesReader::GetIntegerValueFromAttributeBytes(list, feature));
        static_cast<void>(AttributeBytesReader::GetStringValueFromAttributeBytes(list, feature));
        static_cast<void>(AttributeBytesReader::GetOptionValueFromAttributeBytes(list, feature));
        static_cast<void>(AttributeBytesReader::GetDimensionValueFromAttributeBytes(list, feature));
        static_cast<void>(list.GetCollection(feature));
        const auto levels = AttributeBytesListValue::FromAttributeBytes(list.GetValue(position));
        for (std::size_t level = 0; depth > 0 && levels && level < levels->GetLevelCount(); ++level)
            ReadAll(levels->GetLevel(level), depth - 1);
    }
}

// A list that was read and is written again has the same bytes; edited, it has what was set beside what it had.
AttributeBytesIndexedList Edit(const ByteBuffer& bytes)
{
    AttributeBytesIndexedList list;
    const bool isReadable = list.ImportFromRawList(RawListOf(bytes));
    Require(BytesOf(list) == (isReadable ? bytes : ByteBuffer()));
    const AttributeBytesIndexedList before(list);
    const AttributeBytesOptionValue option(AttributeBytesNewValueId(10001, W("Red")), true);
    list.SetIndexed(bytes.size() % 2 == 0);
    list.SetAttributeBytes(kFeature, option);
    for (std::size_t position = 0; position < before.GetCount(); ++position)
    {
        const AttributeBytesFeatureId feature = before.GetFeature(position);
        Require(list.GetFeature(position) == feature);
        const bool isReplaced = feature == kFeature && &before.GetValue(position) == before.GetAttributeBytes(kFeature);
        Require(list.GetValue(position) == (isReplaced ? option.ToAttributeBytes() : before.GetValue(position)));
    }
    Require(*list.GetAttributeBytes(kFeature) == option.ToAttributeBytes());
    return list;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const ByteBuffer state(data, size);
    PersistentAttributes attributes(state);
    // The namespaces that there are, and some that the bytes may name.
    for (std::int32_t id = 0; id < 8; ++id)
        ReadAll(attributes.GetAttributeBytesListForNameSpace(AttributeBytesNameSpacesId(id)), 4);
    ReadAll(RawListOf(state), 4);
    const ByteBuffer other = ListOf(attributes, kOther);

    const AttributeBytesIndexedList edited = Edit(ListOf(attributes, kEdited));
    AttributeBytesNameSpaces nameSpaces;
    nameSpaces.SetAttributeBytesList(kEdited, RawListOf(edited));
    if (!attributes.SetAttributeBytesNameSpaces(nameSpaces))
    {
        Require(!attributes.IsReadable() && attributes.GetPersistentAttributesState() == state);
        return 0;
    }
    const PersistentAttributes again(attributes.GetPersistentAttributesState());
    Require(again.IsReadable());
    Require(again.GetPersistentAttributesState().getDword() == again.GetPersistentAttributesState().size());
    Require(ListOf(again, kEdited) == BytesOf(edited) && ListOf(again, kOther) == other);
    return 0;
}
