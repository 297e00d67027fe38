// The maker's private part of a devmode: its byte format.
//
// The part travels inside the devmode, behind the core driver's private part, and is stored by the spooler. It is
// exactly kSize bytes, little-endian:
//
//     offset  width  field
//      0      u32    size, always kSize
//      4      u32    signature
//      8      u32    version
//     12      44     left as found
//     56      u32    CRC-32 of the kCheckedSize bytes from kCountOffset on; 0 together with a zero count: no data
//     60      u16    number of entries
//     62             entries back to back: u16 key, u16 length, that many bytes; zeros fill up the part
//
// The first 12 bytes are the header that core drivers expect in front of every maker's part.
#pragma once

#include <cstddef>
#include <cstdint>

namespace OemDevmodeFormat
{

inline constexpr std::size_t kSize = 5956;
inline constexpr std::uint32_t kSignature = 0x54564E31; // the multi-character constant 'TVN1'

inline constexpr std::size_t kSizeOffset = 0;
inline constexpr std::size_t kSignatureOffset = 4;
inline constexpr std::size_t kVersionOffset = 8;
inline constexpr std::size_t kHeaderSize = 12;
inline constexpr std::size_t kCrcOffset = 56;
inline constexpr std::size_t kCountOffset = 60;
inline constexpr std::size_t kEntriesOffset = 62;
inline constexpr std::size_t kEntryHeaderSize = 4;
inline constexpr std::size_t kCheckedSize = kSize - kCountOffset;

inline constexpr std::uint16_t kPersistentAttributesKey = 1; // the data model's persistent attributes
inline constexpr std::uint16_t kApplicationNameKey = 2;      // executable file name of the producer, wide characters

// A longer state of persistent attributes is not stored: the part must keep room for the other entries.
inline constexpr std::size_t kMaxPersistentAttributesSize = 5400;

// Where the core drivers note the size of their own private part, counted from the private area's start; the maker's
// part follows it. The PostScript place is asked first, the Unidrv place is the fallback.
inline constexpr std::size_t kPostScriptSizeOffset = 114; // u16
inline constexpr std::size_t kUnidrvSizeOffset = 8;       // u16

static_assert(kCheckedSize == 5896);

} // namespace OemDevmodeFormat

// The part as a place inside a devmode: bytes only, at any address. Fields are read and written through ByteReader and
// ByteWriter at the offsets above.
struct OemDevmode
{
    std::byte bytes[OemDevmodeFormat::kSize];
};

static_assert(sizeof(OemDevmode) == OemDevmodeFormat::kSize && alignof(OemDevmode) == 1);
