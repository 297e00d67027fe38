// ByteBuffer: the system's growable byte buffer: devmode copies, cached blobs, Base64 data, job ticket text.
//
// A value type. Spans and pointers into it are valid until the next operation that changes it. Operations that
// allocate throw std::bad_alloc.
#pragma once

#include <cstddef>
#include <span>
#include <string_view>
#include <vector>

#include <tvutil/cxstring.h>

class TVUTIL_API ByteBuffer
{
public:
    ByteBuffer() noexcept;
    explicit ByteBuffer(std::size_t size); // zeroed
    explicit ByteBuffer(std::span<const std::byte> bytes);
    ByteBuffer(const void* data, std::size_t size); // as setWithLpbyte
    ByteBuffer(const ByteBuffer& other);
    ByteBuffer(ByteBuffer&& other) noexcept;
    ByteBuffer& operator=(const ByteBuffer& other);
    ByteBuffer& operator=(ByteBuffer&& other) noexcept;
    ~ByteBuffer();

    // The content becomes a copy of the bytes; null or size 0 make it empty. The bytes may lie in this buffer.
    void setWithLpbyte(const BYTE* data, std::size_t size);

    // The first 32-bit word, little-endian, unsigned or signed; 0 when there are less than four bytes.
    [[nodiscard]] DWORD getDword() const noexcept;
    [[nodiscard]] LONG getAsLongValue() const noexcept;

    // The content as a wide string: up to its terminator, or to the end when it has none; an odd trailing byte does
    // not belong to it.
    [[nodiscard]] CXString getAsStringValue() const;
    void getAsStringValue(CXString& text) const;

    // The content as text of the ANSI code page: up to its terminator, or to the end.
    [[nodiscard]] CXString getAsStringValueFromAnsiBuffer() const;
    void getAsStringValueFromAnsiBuffer(CXString& text) const;

    [[nodiscard]] std::size_t size() const noexcept;
    [[nodiscard]] bool empty() const noexcept;
    [[nodiscard]] BYTE* data() noexcept;
    [[nodiscard]] const BYTE* data() const noexcept;
    [[nodiscard]] std::span<const std::byte> bytes() const noexcept;
    [[nodiscard]] std::span<std::byte> bytes() noexcept;

    void clear() noexcept;
    void reserve(std::size_t capacity);
    void resize(std::size_t size); // new bytes are zero
    // What is appended may lie in this buffer.
    void append(const void* data, std::size_t size); // null appends nothing
    void append(std::span<const std::byte> bytes);
    // Each UTF-16 unit as one byte, so that the length stays; one beyond ASCII, which has none, becomes '?', whatever
    // the code page is: what is read back as text of any code page is the same. No terminator; nothing is escaped.
    void appendAscii(WStringView text);
    // As it is.
    void appendAscii(std::string_view text);
    // The characters with their terminator, as getAsStringValue reads them.
    void appendString(WStringView text);

    friend TVUTIL_API bool operator==(const ByteBuffer& left, const ByteBuffer& right) noexcept;

private:
    std::vector<std::byte> m_bytes;
};
