// The drivers' parts of a devmode as a reader from outside sees them: where they are, what they hold, and in words what
// is wrong with them. Format: complugins/oemdevmode.h, docs/devmode-format.md.
#pragma once

#include <windows.h>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <set>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include <tvutil/attributebytesindexedlist.h>

#include "complugins/formsinforecord.h"
#include "complugins/oemdevmodecontent.h"
#include "complugins/oemdevmodelocation.h"

[[nodiscard]] std::string_view LayoutName(CoreDriverLayout layout) noexcept;

// Where a devmode's driver area, the bytes behind the public part, holds which part.
struct DriverParts
{
    CoreDriverLayout layout = CoreDriverLayout::Unidrv;
    std::span<const std::byte> core; // the core driver's private part
    const OemDevmode* oem = nullptr; // the maker's part; never null
};

// Nothing when there is no maker's part with the right size and signature: then nobody can tell the parts apart. The
// result refers to the area that was given.
[[nodiscard]] std::optional<DriverParts> LocateDriverParts(std::span<const std::byte> driverExtra);
// "as postscript: wrong signature 0x12345678 at offset 708 of the drivers' bytes, not 0x54564E31": what stands at each
// place to which a core driver's note leads.
[[nodiscard]] std::string ExplainNoOemPart(std::span<const std::byte> driverExtra);

struct OemContent
{
    std::uint32_t version = 0;
    std::uint32_t crc = 0;
    bool crcValid = false; // also for a part that holds no data
    std::size_t usedBytes = 0;
    OemDevmodeContent::Entries entries;   // as they stand; empty when one of them runs past the part
    std::set<std::uint16_t> repeatedKeys; // of the entries; the driver reads the first, and keeps no other
    std::string fault;                    // empty for a sound part; else the driver believes none of it

    // Null when the part has no such entry, or is not sound.
    [[nodiscard]] const ByteBuffer* Find(std::uint16_t key) const noexcept;
};

[[nodiscard]] OemContent ReadOemPart(const OemDevmode& part);

// The persistent attributes of a sound part.
struct StoredSettings
{
    bool isPresent = false;
    std::size_t size = 0;
    DWORD driverVersion = 0;
    AttributeBytesIndexedList features;
    std::optional<std::vector<FormsInfoRecord>> papers; // none when it carries none, or none that can be read
    std::string papersFault;                            // why it cannot; empty when it can, or is not there
    std::string fault;                                  // empty when all features can be read
};

[[nodiscard]] StoredSettings ReadStoredSettings(const OemContent& content);
