// What the maker's part of a devmode holds: reader and writer of the format in complugins/oemdevmode.h.
//
// The functions take a whole part, wherever it lies, and read and write nothing else.
#pragma once

#include <windows.h>

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <span>

#include <tvutil/bytebuffer.h>
#include <tvutil/globalcaches.h>

#include "complugins/oemdevmode.h"

namespace OemDevmodeContent
{

using Entries = GlobalCaches::PropertyBagEntries; // in stored order, a key possibly more than once
using PropertyBag = std::map<unsigned short, std::shared_ptr<const ByteBuffer>>;

[[nodiscard]] DWORD GetStoredCrc(const OemDevmode& part) noexcept;
[[nodiscard]] std::uint16_t GetCount(const OemDevmode& part) noexcept;

// Whether CRC, count and the first key are all zero.
[[nodiscard]] bool IsEmpty(const OemDevmode& part) noexcept;

// Whether CRC and count are both zero: no entries, whatever else the part holds, and no CRC to check it by.
[[nodiscard]] bool IsUnchecked(const OemDevmode& part) noexcept;

// Whether the stored CRC is that of the content. That of an unchecked part is taken as right without computing it.
[[nodiscard]] bool HasRightCrc(const OemDevmode& part) noexcept;

// Nothing when an entry runs past the part: none of it is believed.
[[nodiscard]] std::optional<Entries> ReadEntries(const OemDevmode& part);

// The used region, header to last entry: as the entries of the part stand, believed up to its end (one whose header
// does not lie within the part is as long as the rest); and as a bag would need it.
[[nodiscard]] std::size_t MeasureEntries(const OemDevmode& part) noexcept;
[[nodiscard]] std::size_t MeasureEntries(const PropertyBag& bag) noexcept;

// Everything from the CRC on, in ascending order of keys. False, with nothing written, when the bag does not fit.
bool WriteEntries(OemDevmode& part, const PropertyBag& bag) noexcept;

} // namespace OemDevmodeContent
