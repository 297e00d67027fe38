#include "complugins/capabilitycaches.h"

#include <algorithm>
#include <cstring>
#include <iterator>

#include <tvutil/bytereader.h>
#include <tvutil/bytewriter.h>

#include "complugins/fixedtext.h"
#include "complugins/papercache.h"

namespace
{

using DeviceCapabilityTable::Cache;

// A list begins with the number of its records and the size of one.
constexpr std::size_t kListHeader = 8;
constexpr std::size_t kResolutionsHeader = 12;
constexpr std::size_t kBinName = 24; // characters
constexpr std::size_t kName = 64;
constexpr std::size_t kBinSize = 4 + kBinName * sizeof(WCHAR);
constexpr std::size_t kMediaTypeSize = 4 + kName * sizeof(WCHAR);
constexpr std::size_t kNameSize = kName * sizeof(WCHAR);
constexpr std::size_t kResolutionSize = 12 + ResolutionInfoRecord::kNameCapacity * sizeof(WCHAR);

constexpr DWORD kDeviceWords = 11;

struct ListLayout
{
    std::size_t headerSize = 0; // 0: no list
    std::size_t recordSize = 0;
};

ListLayout ListOf(Cache cache) noexcept
{
    switch (cache)
    {
    case Cache::Bins:
        return {kListHeader, kBinSize};
    case Cache::Resolutions:
        return {kResolutionsHeader, kResolutionSize};
    case Cache::DependentFiles:
    case Cache::MediaReady:
        return {kListHeader, kNameSize};
    case Cache::MediaTypes:
        return {kListHeader, kMediaTypeSize};
    case Cache::Papers: // has a layout of its own
    case Cache::Staple:
    case Cache::Device:
    case Cache::Flags:
        break;
    }
    return {};
}

bool HoldsItsRecords(const ListLayout& list, std::span<const std::byte> content) noexcept
{
    ByteReader reader(content);
    const std::uint64_t count = reader.U32();
    const auto recordSize = reader.U32();
    return reader.Ok() && recordSize == list.recordSize && list.headerSize + count * list.recordSize <= content.size();
}

void WriteText(ByteWriter& writer, WStringView text, std::size_t capacity) noexcept
{
    text = text.substr(0, capacity);
    writer.String(text);
    writer.Zeros((capacity - text.size()) * sizeof(WCHAR));
}

template <class List, class WriteRecord>
ByteBuffer WriteList(Cache cache, const List& list, WriteRecord writeRecord)
{
    const ListLayout layout = ListOf(cache);
    ByteBuffer content(layout.headerSize + std::size(list) * layout.recordSize);
    ByteWriter writer(content.bytes());
    writer.U32(static_cast<std::uint32_t>(std::size(list)));
    writer.U32(static_cast<std::uint32_t>(layout.recordSize));
    writer.Zeros(layout.headerSize - writer.Position());
    for (const auto& record : list)
        writeRecord(writer, record);
    return content;
}

template <std::size_t Count>
ByteBuffer WriteWords(const DWORD (&words)[Count])
{
    return ByteBuffer(words, sizeof words);
}

} // namespace

bool CapabilityCaches::IsWhole(Cache cache, std::span<const std::byte> content) noexcept
{
    if (content.size() < DeviceCapabilityTable::RowOf(cache).minimumSize)
        return false;
    if (cache == Cache::Papers)
        return PaperCache::IsWhole(content);
    const ListLayout list = ListOf(cache);
    return list.headerSize == 0 || HoldsItsRecords(list, content);
}

DWORD CapabilityCaches::AnswerOf(Cache cache, std::span<const std::byte> content) noexcept
{
    return cache == Cache::Papers ? PaperCache::ReadHeader(content).paperCount : ByteReader(content).U32();
}

ByteBuffer CapabilityCaches::WriteBins(std::span<const NumberedName> bins)
{
    return WriteList(Cache::Bins, bins,
                     [](ByteWriter& writer, const NumberedName& bin)
                     {
                         writer.U16(static_cast<std::uint16_t>(bin.number));
                         writer.U16(0);
                         WriteText(writer, bin.name.View(), kBinName);
                     });
}

ByteBuffer CapabilityCaches::WriteMediaTypes(std::span<const NumberedName> types)
{
    return WriteList(Cache::MediaTypes, types,
                     [](ByteWriter& writer, const NumberedName& type)
                     {
                         writer.I32(type.number);
                         WriteText(writer, type.name.View(), kName);
                     });
}

ByteBuffer CapabilityCaches::WriteNames(std::span<const CXString> names)
{
    return WriteList(Cache::DependentFiles, names,
                     [](ByteWriter& writer, const CXString& name) { WriteText(writer, name.View(), kName); });
}

ByteBuffer CapabilityCaches::WriteResolutions(std::span<const ResolutionInfoRecord> resolutions)
{
    return WriteList(Cache::Resolutions, resolutions,
                     [](ByteWriter& writer, const ResolutionInfoRecord& resolution)
                     {
                         writer.U32(resolution.x);
                         writer.U32(resolution.y);
                         writer.I32(resolution.valueId);
                         WriteText(writer, GetFixedText(resolution.name), ResolutionInfoRecord::kNameCapacity);
                     });
}

ByteBuffer CapabilityCaches::WriteStaple(DWORD canStaple)
{
    return WriteWords({canStaple, 0});
}

ByteBuffer CapabilityCaches::WriteDevice(const DeviceWords& words)
{
    return WriteWords({kDeviceWords, words.minWidth, words.minLength, words.maxWidth, words.maxLength, words.printRate,
                       words.printRateUnit, words.memory, words.pagesPerMinute, words.isColor,
                       static_cast<DWORD>(words.capabilityWord), static_cast<DWORD>(words.capabilityWord >> 32)});
}

ByteBuffer CapabilityCaches::WriteFlags(const Flags& flags)
{
    return WriteWords({flags.saved, flags.printerCacheCrc, flags.customFormsCrc});
}

std::optional<std::vector<ResolutionInfoRecord>> CapabilityCaches::ReadResolutions(std::span<const std::byte> content)
{
    if (!IsWhole(Cache::Resolutions, content))
        return std::nullopt;
    ByteReader reader(content);
    std::vector<ResolutionInfoRecord> resolutions(reader.U32());
    reader.Skip(kResolutionsHeader - sizeof(std::uint32_t));
    for (ResolutionInfoRecord& resolution : resolutions)
    {
        resolution.x = reader.U32();
        resolution.y = reader.U32();
        resolution.valueId = reader.I32();
        const WideString name = reader.String(ResolutionInfoRecord::kNameCapacity);
        SetFixedText(resolution.name, WStringView(name).substr(0, name.find(WCHAR())));
    }
    return resolutions;
}
