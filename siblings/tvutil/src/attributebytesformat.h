// The format of persistent attributes and of the lists in them, for its reader and its writer. docs/devmode-format.md
// explains it.
#pragma once

#include <cstddef>
#include <cstdint>

namespace attributebytesformat
{

// A state: u32 size, u16 version, u16 header size, u32 driver version; what a later revision has added to the header;
// then the namespaces.
inline constexpr std::uint8_t kStateFormat = 1;
inline constexpr std::uint16_t kStateVersion = kStateFormat << 8; // high byte: format, low byte: revision
inline constexpr std::size_t kStateHeaderSize = 12;
inline constexpr std::size_t kDriverVersionOffset = 8;
// What every format begins with: the size and the version.
inline constexpr std::size_t kSmallestStateOfAnyFormat = 6;

// A namespace: u32 id, u32 length, a raw list.
inline constexpr std::size_t kNameSpaceHeaderSize = 8;

// An attribute of a raw list: u32 feature, u8 kind, u8 flags, u16 length, the value.
inline constexpr std::size_t kAttributeHeaderSize = 8;
inline constexpr std::size_t kLongestValue = 0xFFFF;

// A list value: u16 number of levels; each u16 length, a raw list.

} // namespace attributebytesformat
