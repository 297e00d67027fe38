// ByteReader: reads little-endian bytes that somebody else wrote.
//
//     ByteReader reader(part);
//     const auto key = reader.U16();
//     const auto length = reader.U16();
//     const auto data = reader.Bytes(length);
//     if (!reader.Ok())
//         ...                                  // a length ran past the end: nothing that was read is believed
//
// A read that does not fit yields 0 or an empty span and makes the reader fail; a failed reader reads nothing any
// more, so one question at the end covers all reads before it. One read a statement: arguments of a call have no
// order of evaluation. The reader does not own the bytes; spans that it hands out live as long as they do.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>

#include "utilitiesstaticlib/wideliteral.h"

// Both platforms are little-endian, as the formats are.
static_assert(std::endian::native == std::endian::little);

class ByteReader
{
public:
    explicit ByteReader(std::span<const std::byte> bytes) noexcept : m_bytes(bytes)
    {
    }

    std::uint8_t U8() noexcept
    {
        return Value<std::uint8_t>();
    }

    std::uint16_t U16() noexcept
    {
        return Value<std::uint16_t>();
    }

    std::uint32_t U32() noexcept
    {
        return Value<std::uint32_t>();
    }

    std::uint64_t U64() noexcept
    {
        return Value<std::uint64_t>();
    }

    std::int16_t I16() noexcept
    {
        return Value<std::int16_t>();
    }

    std::int32_t I32() noexcept
    {
        return Value<std::int32_t>();
    }

    std::int64_t I64() noexcept
    {
        return Value<std::int64_t>();
    }

    std::span<const std::byte> Bytes(std::size_t count) noexcept
    {
        if (!m_ok || count > m_bytes.size())
        {
            m_ok = false;
            return {};
        }
        const auto result = m_bytes.first(count);
        m_bytes = m_bytes.subspan(count);
        return result;
    }

    // A copy, since the characters may lie at an odd address.
    WideString String(std::size_t characters)
    {
        if (characters > m_bytes.size() / sizeof(WCHAR))
        {
            m_ok = false;
            return {};
        }
        const auto bytes = Bytes(characters * sizeof(WCHAR));
        WideString text(bytes.size() / sizeof(WCHAR), WCHAR());
        if (!bytes.empty())
            std::memcpy(text.data(), bytes.data(), bytes.size());
        return text;
    }

    void Skip(std::size_t count) noexcept
    {
        Bytes(count);
    }

    // For formats that know by themselves that what they have read makes no sense.
    void Fail() noexcept
    {
        m_ok = false;
    }

    [[nodiscard]] bool Ok() const noexcept
    {
        return m_ok;
    }

    [[nodiscard]] std::size_t Remaining() const noexcept
    {
        return m_ok ? m_bytes.size() : 0;
    }

private:
    template <class Value_>
    Value_ Value() noexcept
    {
        Value_ value = 0;
        const auto bytes = Bytes(sizeof(Value_));
        if (!bytes.empty())
            std::memcpy(&value, bytes.data(), sizeof(Value_));
        return value;
    }

    std::span<const std::byte> m_bytes;
    bool m_ok = true;
};
