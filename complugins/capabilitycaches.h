// The contents of the capability caches other than the papers', and whether a cache of any kind is whole.
//
// docs/device-capabilities-caches.md has the bytes.
#pragma once

#include <windows.h>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include <tvutil/bytebuffer.h>
#include <tvutil/cxstring.h>

#include "complugins/devicecapabilitytable.h"

// A resolution, as the list of a printer's capabilities shows it.
struct ResolutionInfoRecord
{
    static constexpr std::size_t kNameCapacity = 32; // characters, the terminator among them

    std::uint32_t x = 0; // dots per inch
    std::uint32_t y = 0;
    std::int32_t valueId = 0; // the data model's value; 0: it has none
    WCHAR name[kNameCapacity] = {};
};

namespace CapabilityCaches
{

// From the minimum of its row up, and with every record that it promises.
[[nodiscard]] bool IsWhole(DeviceCapabilityTable::Cache cache, std::span<const std::byte> content) noexcept;

// The word that a query answers: the number of papers, or the first word.
[[nodiscard]] DWORD AnswerOf(DeviceCapabilityTable::Cache cache, std::span<const std::byte> content) noexcept;

struct NumberedName
{
    std::int32_t number = 0;
    CXString name;
};

// Names that are longer than their room are cut.
[[nodiscard]] ByteBuffer WriteBins(std::span<const NumberedName> bins);
[[nodiscard]] ByteBuffer WriteMediaTypes(std::span<const NumberedName> types);
[[nodiscard]] ByteBuffer WriteNames(std::span<const CXString> names); // dependent files, media that are ready
[[nodiscard]] ByteBuffer WriteResolutions(std::span<const ResolutionInfoRecord> resolutions);
[[nodiscard]] ByteBuffer WriteStaple(DWORD canStaple);

struct DeviceWords
{
    DWORD minWidth = 0; // tenths of a millimetre
    DWORD minLength = 0;
    DWORD maxWidth = 0;
    DWORD maxLength = 0;
    DWORD printRate = 0;
    DWORD printRateUnit = 0; // PRINTRATEUNIT_...
    DWORD memory = 0;        // kilobytes
    DWORD pagesPerMinute = 0;
    DWORD isColor = 0;
    std::uint64_t capabilityWord = 0; // the printer model's
};
[[nodiscard]] ByteBuffer WriteDevice(const DeviceWords& words);

struct Flags
{
    DWORD saved = 0; // the dirty bits of the caches that were saved together
    DWORD printerCacheCrc = 0;
    DWORD customFormsCrc = 0;
};
[[nodiscard]] ByteBuffer WriteFlags(const Flags& flags);

// Nothing when the content is not whole.
[[nodiscard]] std::optional<std::vector<ResolutionInfoRecord>> ReadResolutions(std::span<const std::byte> content);

} // namespace CapabilityCaches
