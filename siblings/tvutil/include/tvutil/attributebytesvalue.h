// AttributeBytesValue: the value of one feature as attribute bytes, of whatever kind, known or not.
//
// The kinds and their bytes are described in docs/devmode-format.md. A value of a kind or with flags that this version
// does not know is kept byte for byte. A value type; copies share nothing.
#pragma once

#include <cstdint>

#include <tvutil/bytebuffer.h>

enum class AttributeBytesKind : std::uint8_t
{
    Boolean = 1,   // one byte, 0 or 1
    Integer = 2,   // i32
    String = 3,    // UTF-16 characters without a terminator
    Option = 4,    // i32 value, then the characters of its name; none for a value of the catalogue
    Dimension = 5, // i64, nanometres
    List = 6,      // nested lists of attributes, one a level
    Binary = 7,    // bytes that their users know
};

struct AttributeBytesValue
{
    // Somebody chose the value; without it, it only says what was in force.
    static constexpr std::uint8_t kIsChoice = 0x01;

    AttributeBytesKind kind = AttributeBytesKind::Binary; // may hold a number that has no name here
    std::uint8_t flags = 0;
    ByteBuffer data; // at most 65,535 bytes

    friend bool operator==(const AttributeBytesValue& left, const AttributeBytesValue& right) noexcept = default;
};
