#include <windows.h>

#include <tvutil/persistentattributes.h>

#include <algorithm>
#include <array>
#include <limits>
#include <stdexcept>
#include <utility>
#include <vector>

#include <tvutil/bytereader.h>
#include <tvutil/bytewriter.h>

#include "attributebytesformat.h"

namespace
{

using namespace attributebytesformat;

struct NameSpace
{
    std::uint32_t id;
    std::span<const std::byte> list;
};

constexpr std::uint32_t IdOf(AttributeBytesNameSpacesId id) noexcept
{
    return static_cast<std::uint32_t>(id.GetId());
}

constexpr std::uint8_t FormatOf(std::uint16_t version) noexcept
{
    return static_cast<std::uint8_t>(version >> 8);
}

// Whatever a later format does, it begins with its own size and its version; what does not is no state of any format.
bool IsOfALaterFormat(std::span<const std::byte> bytes) noexcept
{
    ByteReader reader(bytes);
    const auto size = reader.U32();
    const auto version = reader.U16();
    return reader.Ok() && size >= kSmallestStateOfAnyFormat && size <= bytes.size() && FormatOf(version) > kStateFormat;
}

// The header of the state that the bytes begin with; its namespaces, duplicates too, are shown to `visit` in their
// order. Nothing when there is no state of this format, or when a length in it contradicts another: then nothing that
// was shown is believed. Allocates nothing by itself.
template <class Visit>
std::optional<std::span<const std::byte>> ReadState(std::span<const std::byte> bytes, Visit visit)
{
    ByteReader head(bytes);
    const auto size = head.U32();
    const auto version = head.U16();
    const auto headerSize = head.U16();
    if (!head.Ok() || FormatOf(version) != kStateFormat || size > bytes.size() || headerSize < kStateHeaderSize)
        return std::nullopt;

    ByteReader reader(bytes.first(size));
    const auto header = reader.Bytes(headerSize);
    while (reader.Remaining() != 0)
    {
        const auto id = reader.U32();
        const auto length = reader.U32();
        const auto list = reader.Bytes(length);
        if (reader.Ok())
            visit(NameSpace{id, list});
    }
    return reader.Ok() ? std::optional(header) : std::nullopt;
}

constexpr auto kVisitNone = [](const NameSpace&) noexcept {
};

// Puts the list in the place of the first one of its namespace, or behind all others.
void Replace(std::vector<NameSpace>& nameSpaces, const NameSpace& replacement)
{
    const auto found = std::find_if(nameSpaces.begin(), nameSpaces.end(),
                                    [&](const NameSpace& nameSpace) { return nameSpace.id == replacement.id; });
    if (found != nameSpaces.end())
        *found = replacement;
    else
        nameSpaces.push_back(replacement);
}

std::array<std::byte, kStateHeaderSize> NewHeader() noexcept
{
    std::array<std::byte, kStateHeaderSize> header = {};
    ByteWriter writer(header);
    writer.U32(0); // the size, to come
    writer.U16(kStateVersion);
    writer.U16(kStateHeaderSize);
    return header;
}

// The header is written as it is, with what a later revision has added to it.
ByteBuffer WriteState(std::span<const std::byte> header, const std::vector<NameSpace>& nameSpaces,
                      std::optional<DWORD> driverVersion)
{
    std::size_t size = header.size();
    for (const NameSpace& nameSpace : nameSpaces)
        size += kNameSpaceHeaderSize + nameSpace.list.size();
    if (size > std::numeric_limits<std::uint32_t>::max())
        throw std::length_error("persistent attributes are longer than their size word can tell");

    ByteBuffer bytes(size);
    ByteWriter writer(bytes.bytes());
    writer.Bytes(header);
    for (const NameSpace& nameSpace : nameSpaces)
    {
        writer.U32(nameSpace.id);
        writer.U32(static_cast<std::uint32_t>(nameSpace.list.size()));
        writer.Bytes(nameSpace.list);
    }
    ByteWriter(bytes.bytes()).U32(static_cast<std::uint32_t>(size));
    if (driverVersion)
        ByteWriter(bytes.bytes().subspan(kDriverVersionOffset)).U32(*driverVersion);
    return bytes;
}

} // namespace

PersistentAttributes::PersistentAttributes(std::optional<DWORD> driverVersion) : m_driverVersion(driverVersion)
{
}

PersistentAttributes::PersistentAttributes(const ByteBuffer& state, std::optional<DWORD> driverVersion)
    : m_state(state), m_driverVersion(driverVersion)
{
    // What lies behind the state does not belong to it. Of what cannot be read nobody knows where it ends.
    if (IsReadable())
        m_state.resize(m_state.getDword());
}

bool PersistentAttributes::IsReadable() const noexcept
{
    return ReadState(m_state.bytes(), kVisitNone).has_value();
}

DWORD PersistentAttributes::GetDriverVersion() const noexcept
{
    return IsReadable() ? ByteReader(m_state.bytes().subspan(kDriverVersionOffset)).U32() : 0;
}

AttributeBytesRawList PersistentAttributes::GetAttributeBytesListForNameSpace(AttributeBytesNameSpacesId id) const
{
    std::optional<std::span<const std::byte>> first;
    const auto header = ReadState(m_state.bytes(),
                                  [&first, id](const NameSpace& nameSpace)
                                  {
                                      if (!first && nameSpace.id == IdOf(id))
                                          first = nameSpace.list;
                                  });
    return header && first ? AttributeBytesRawList(*first) : AttributeBytesRawList();
}

bool PersistentAttributes::SetAttributeBytesNameSpaces(const AttributeBytesNameSpaces& nameSpaces)
{
    if (IsOfALaterFormat(m_state.bytes()))
        return false;
    const auto newHeader = NewHeader();
    std::vector<NameSpace> stored;
    auto header = ReadState(m_state.bytes(), [&stored](const NameSpace& nameSpace) { stored.push_back(nameSpace); });
    if (!header)
    {
        header = newHeader;
        stored.clear();
    }
    for (const auto& [id, list] : nameSpaces.GetAttributeBytesLists())
        Replace(stored, {IdOf(id), list.GetBytes()});
    m_state = WriteState(*header, stored, m_driverVersion);
    return true;
}

const ByteBuffer& PersistentAttributes::GetPersistentAttributesState() const noexcept
{
    return m_state;
}
