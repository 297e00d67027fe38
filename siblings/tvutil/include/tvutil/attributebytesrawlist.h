// AttributeBytesRawList: the attributes of one namespace, or of one level of a collection, as the bytes that are
// stored.
//
// The bytes are not looked at here: AttributeBytesIndexedList reads and writes them. A list that nobody edits passes
// from a devmode into a devmode byte for byte.
#pragma once

#include <span>

#include <tvutil/bytebuffer.h>

class AttributeBytesIndexedList;

class TVUTIL_API AttributeBytesRawList
{
public:
    AttributeBytesRawList() noexcept;
    explicit AttributeBytesRawList(std::span<const std::byte> bytes);
    explicit AttributeBytesRawList(const AttributeBytesIndexedList& list); // imported

    // Everything in the indexed list, in its order.
    void ImportFromIndexedList(const AttributeBytesIndexedList& list);

    [[nodiscard]] std::span<const std::byte> GetBytes() const noexcept;
    [[nodiscard]] bool IsEmpty() const noexcept;

private:
    ByteBuffer m_bytes;
};
