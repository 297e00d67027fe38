// Devmodes with a core driver's and the maker's private part, made byte by byte: by what the formats say, not by the
// code that is tested.
#pragma once

#include <windows.h>

#include <cstddef>
#include <cstdint>
#include <span>
#include <utility>
#include <vector>

#include <tvutil/attributebytesrawlist.h>
#include <tvutil/bytebuffer.h>

#include "complugins/formsinforecord.h"
#include "complugins/oemdevmodelocation.h"

namespace OemDevmodeBytes
{

using Bytes = std::vector<std::byte>;
using Entries = std::vector<std::pair<std::uint16_t, ByteBuffer>>;

inline constexpr CoreDriverLayout kLayouts[] = {CoreDriverLayout::PostScript, CoreDriverLayout::Unidrv};
inline constexpr std::size_t kCoreSize = 708; // as PostScript drivers have it
inline constexpr std::size_t kPartOffset = sizeof(DEVMODEW) + kCoreSize;

// Public part (its names without a terminator), core part, maker's part with these entries and their CRC.
[[nodiscard]] Bytes Make(CoreDriverLayout layout, const Entries& entries);

// An entry's content that is a text.
[[nodiscard]] ByteBuffer Text(WStringView text);

[[nodiscard]] std::span<std::byte> PartOf(std::span<std::byte> devmode);
// Makes the part's CRC that of its content.
void StampCrc(std::span<std::byte> part);

// A state with one boolean of the document's namespace and, in the device capabilities' one, the paper list.
inline constexpr std::int32_t kFlagFeature = 59;
[[nodiscard]] ByteBuffer MakeState(bool flag, std::span<const FormsInfoRecord> forms = {});

// A state with one namespace: the document's, or 2, the device capabilities'.
[[nodiscard]] ByteBuffer StateOf(const AttributeBytesRawList& list, int nameSpace = 1);

[[nodiscard]] FormsInfoRecord MakeForm(int paperId, WStringView name, int width, int length, int formType);

} // namespace OemDevmodeBytes
