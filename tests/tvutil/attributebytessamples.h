// Attribute bytes for tests: bytes written down, a list of every kind, and a reader of everything.
#pragma once

#include <initializer_list>
#include <string>
#include <vector>

#include <tvutil/attributebytesindexedlist.h>
#include <tvutil/attributebytesreader.h>
#include <tvutil/bytebuffer.h>

inline ByteBuffer Bytes(const std::vector<int>& values)
{
    ByteBuffer bytes(values.size());
    for (std::size_t index = 0; index < values.size(); ++index)
        bytes.data()[index] = static_cast<BYTE>(values[index]);
    return bytes;
}

inline ByteBuffer Join(std::initializer_list<ByteBuffer> parts)
{
    ByteBuffer whole;
    for (const ByteBuffer& part : parts)
        whole.append(part.bytes());
    return whole;
}

// For messages that a person compares.
inline std::string Hex(const ByteBuffer& bytes)
{
    std::string text;
    for (std::size_t index = 0; index < bytes.size(); ++index)
        for (const int shift : {4, 0})
            text += "0123456789ABCDEF"[(bytes.data()[index] >> shift) & 0xF];
    return text;
}

inline AttributeBytesRawList RawListOf(const AttributeBytesIndexedList& list)
{
    AttributeBytesRawList raw;
    raw.ImportFromIndexedList(list);
    return raw;
}

inline AttributeBytesRawList RawListOf(const ByteBuffer& bytes)
{
    return AttributeBytesRawList(bytes.bytes());
}

inline ByteBuffer BytesOf(const AttributeBytesIndexedList& list)
{
    return ByteBuffer(RawListOf(list).GetBytes());
}

// One attribute of each kind, a collection within a collection, and one of a kind that nobody knows.
inline AttributeBytesIndexedList SampleList()
{
    AttributeBytesIndexedList inner;
    inner.SetAttributeBytes(1, MakeStringAttributeBytes(W("inner")));
    AttributeBytesListValue levels(RawListOf(inner));
    levels.AddLevel(AttributeBytesRawList());
    AttributeBytesIndexedList outer;
    outer.SetAttributeBytes(1, MakeBooleanAttributeBytes(true));
    outer.SetAttributeBytes(2, levels);

    AttributeBytesIndexedList list;
    list.SetAttributeBytes(60, AttributeBytesListValue(RawListOf(outer)));
    list.SetAttributeBytes(50, MakeDimensionAttributeBytes(Dimension(Number(-254, 10), Dimension::Millimeters)));
    list.SetAttributeBytes(40, AttributeBytesOptionValue(AttributeBytesNewValueId(10001, W("Red")), true));
    list.SetAttributeBytes(30, MakeStringAttributeBytes(W("text")));
    list.SetAttributeBytes(20, MakeIntegerAttributeBytes(-2));
    list.SetAttributeBytes(10, MakeBooleanAttributeBytes(false));
    list.SetAttributeBytes(70, {AttributeBytesKind::Binary, 0, Bytes({1, 2, 3})});
    list.SetAttributeBytes(-1, {static_cast<AttributeBytesKind>(200), 0xFE, Bytes({0})});
    return list;
}

// Asks for each value as every type, and for what collections hold.
inline void ReadAll(const AttributeBytesRawList& raw, int depth)
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
