// Attribute bytes for tests: bytes written down, and a list of every kind.
#pragma once

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
    return AttributeBytesRawList(list);
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
    list.SetAttributeBytes(
        50, MakeDimensionAttributeBytes(Dimension(Number(-25'400'001, 1'000'000), Dimension::Millimeters)));
    list.SetAttributeBytes(40, AttributeBytesOptionValue(AttributeBytesNewValueId(10001, W("Red")), true));
    list.SetAttributeBytes(30, MakeStringAttributeBytes(W("text")));
    list.SetAttributeBytes(20, MakeIntegerAttributeBytes(-2));
    list.SetAttributeBytes(10, MakeBooleanAttributeBytes(false));
    list.SetAttributeBytes(70, {AttributeBytesKind::Binary, 0, Bytes({1, 2, 3})});
    list.SetAttributeBytes(-1, {static_cast<AttributeBytesKind>(200), 0xFE, Bytes({0})});
    return list;
}
