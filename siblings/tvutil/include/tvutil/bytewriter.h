// ByteWriter: the mirror of ByteReader; writes little-endian into bytes that somebody else owns.
//
// A write that does not fit writes nothing and makes the writer fail; a failed writer writes nothing any more.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>

#include <tvutil/bytereader.h>

class ByteWriter
{
public:
    explicit ByteWriter(std::span<std::byte> bytes) noexcept : m_bytes(bytes)
    {
    }

    void U8(std::uint8_t value) noexcept
    {
        Value(value);
    }

    void U16(std::uint16_t value) noexcept
    {
        Value(value);
    }

    void U32(std::uint32_t value) noexcept
    {
        Value(value);
    }

    void U64(std::uint64_t value) noexcept
    {
        Value(value);
    }

    void I16(std::int16_t value) noexcept
    {
        Value(value);
    }

    void I32(std::int32_t value) noexcept
    {
        Value(value);
    }

    void I64(std::int64_t value) noexcept
    {
        Value(value);
    }

    void Bytes(std::span<const std::byte> bytes) noexcept
    {
        if (!m_ok || bytes.size() > m_bytes.size() - m_position)
        {
            m_ok = false;
            return;
        }
        if (!bytes.empty())
            std::memcpy(m_bytes.data() + m_position, bytes.data(), bytes.size());
        m_position += bytes.size();
    }

    // The characters without a terminator.
    void String(WStringView text) noexcept
    {
        Bytes(std::as_bytes(std::span(text)));
    }

    void Zeros(std::size_t count) noexcept
    {
        if (!m_ok || count > m_bytes.size() - m_position)
        {
            m_ok = false;
            return;
        }
        if (count != 0)
            std::memset(m_bytes.data() + m_position, 0, count);
        m_position += count;
    }

    [[nodiscard]] bool Ok() const noexcept
    {
        return m_ok;
    }

    // Bytes written so far.
    [[nodiscard]] std::size_t Position() const noexcept
    {
        return m_position;
    }

private:
    template <class Value_>
    void Value(Value_ value) noexcept
    {
        Bytes(std::as_bytes(std::span(&value, 1)));
    }

    std::span<std::byte> m_bytes;
    std::size_t m_position = 0;
    bool m_ok = true;
};
