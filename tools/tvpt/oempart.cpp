#include "oempart.h"

#include <tvcore/datamodelids.h>
#include <tvutil/bytereader.h>
#include <tvutil/crc32.h>
#include <tvutil/persistentattributes.h>

#include <algorithm>

#include "complugins/devicepaperlist.h"
#include "jsonoutput.h"

namespace
{

namespace Format = OemDevmodeFormat;

// The first entry that does not end within the part, from 1; 0 when all do.
std::size_t EntryPastTheEnd(const OemDevmode& part)
{
    ByteReader reader(std::span(part.bytes).subspan(Format::kEntriesOffset));
    for (std::size_t entry = 1; entry <= OemDevmodeContent::GetCount(part); ++entry)
    {
        reader.Skip(sizeof(std::uint16_t));
        reader.Skip(reader.U16());
        if (!reader.Ok())
            return entry;
    }
    return 0;
}

std::string ExplainContent(const OemDevmode& part, const OemContent& content)
{
    std::string fault;
    if (!content.crcValid)
        fault = "CRC mismatch: " + HexText(content.crc) + " is stored, the content makes " +
                HexText(Crc32::GetCrc(part.bytes + Format::kCountOffset, Format::kCheckedSize));
    if (const std::size_t entry = EntryPastTheEnd(part); entry != 0)
        fault += (fault.empty() ? "entry " : "; entry ") + std::to_string(entry) + " of " +
                 std::to_string(OemDevmodeContent::GetCount(part)) + " runs past the part's end";
    return fault;
}

// What stands at one place where the maker's part may be.
std::string ExplainPlace(std::span<const std::byte> driverExtra, const OemDevmodeSearch& search)
{
    const std::size_t offset = search.location.offset;
    const std::string place = " at offset " + std::to_string(offset) + " of the drivers' bytes";
    ByteReader part(driverExtra.subspan(std::min(offset, driverExtra.size())));
    const auto size = part.U32();
    const auto signature = part.U32();
    switch (search.finding)
    {
    case OemDevmodeFinding::NoCoreSize:
        return "absent: no core driver says where it would begin";
    case OemDevmodeFinding::NoRoom:
        return "absent: the drivers' bytes end at " + std::to_string(driverExtra.size()) +
               ", the part would begin at " + std::to_string(offset);
    case OemDevmodeFinding::WrongSignature:
        return "wrong signature " + HexText(signature) + place + ", not " + HexText(Format::kSignature);
    case OemDevmodeFinding::WrongSize:
        return "wrong size " + std::to_string(size) + place + ", not " + std::to_string(Format::kSize);
    case OemDevmodeFinding::CutOff:
        return "cut off: " + std::to_string(driverExtra.size() - offset) + " of " + std::to_string(Format::kSize) +
               " bytes" + place;
    case OemDevmodeFinding::Part:
        break;
    }
    return {};
}

// What the capabilities beside the features hold: the paper list, or a word on why it cannot be read.
void ReadPapers(const PersistentAttributes& settings, StoredSettings& stored)
{
    AttributeBytesIndexedList capabilities;
    if (!capabilities.ImportFromRawList(
            settings.GetAttributeBytesListForNameSpace(PersistentAttributes::GetMsDeviceCapabilitiesNameSpaceId())))
        stored.papersFault = "a capability runs past the end of the capabilities";
    stored.papers = DevicePaperList::ReadFrom(capabilities);
    if (!stored.papers && capabilities.GetAttributeBytes(DataModelIds::Feature::DevicePaperList) != nullptr)
        stored.papersFault = "the paper list contradicts itself";
}

} // namespace

std::string_view LayoutName(CoreDriverLayout layout) noexcept
{
    return layout == CoreDriverLayout::PostScript ? "postscript" : "unidrv";
}

std::optional<DriverParts> LocateDriverParts(std::span<const std::byte> driverExtra)
{
    const auto location = LocateOemDevmode(driverExtra);
    if (!location)
        return std::nullopt;
    return DriverParts{location->layout, driverExtra.first(location->offset),
                       reinterpret_cast<const OemDevmode*>(driverExtra.data() + location->offset)};
}

std::string ExplainNoOemPart(std::span<const std::byte> driverExtra)
{
    std::string explanation;
    for (const OemDevmodeSearch& search : SearchOemDevmode(driverExtra))
        if (search.finding != OemDevmodeFinding::NoCoreSize)
            explanation += (explanation.empty() ? "" : "; ") + std::string("as ") +
                           std::string(LayoutName(search.location.layout)) + ": " + ExplainPlace(driverExtra, search);
    return explanation.empty() ? ExplainPlace(driverExtra, {OemDevmodeFinding::NoCoreSize, {}}) : explanation;
}

const ByteBuffer* OemContent::Find(std::uint16_t key) const noexcept
{
    const auto found =
        std::find_if(entries.begin(), entries.end(), [key](const auto& entry) { return entry.first == key; });
    return fault.empty() && found != entries.end() ? found->second.get() : nullptr;
}

OemContent ReadOemPart(const OemDevmode& part)
{
    OemContent content;
    ByteReader header(std::span(part.bytes).subspan(Format::kVersionOffset));
    content.version = header.U32();
    content.crc = OemDevmodeContent::GetStoredCrc(part);
    content.crcValid = OemDevmodeContent::HasRightCrc(part);
    content.usedBytes = OemDevmodeContent::MeasureEntries(part);
    content.entries = OemDevmodeContent::ReadEntries(part).value_or(OemDevmodeContent::Entries());
    content.fault = ExplainContent(part, content);
    std::set<std::uint16_t> known;
    for (const auto& [key, value] : content.entries)
        if (!known.insert(key).second)
            content.repeatedKeys.insert(key);
    return content;
}

StoredSettings ReadStoredSettings(const OemContent& content)
{
    StoredSettings stored;
    const ByteBuffer* const state = content.Find(Format::kPersistentAttributesKey);
    if (state == nullptr)
        return stored;
    stored.isPresent = true;
    stored.size = state->size();
    if (state->empty()) // nothing stored yet
        return stored;
    const PersistentAttributes settings(*state);
    if (!settings.IsReadable())
    {
        PersistentAttributes rewritten(*state);
        const bool isOurs = rewritten.SetAttributeBytesNameSpaces(AttributeBytesNameSpaces());
        stored.fault = isOurs ? "the settings contradict themselves" : "the settings are of a later format";
        return stored;
    }
    stored.driverVersion = settings.GetDriverVersion();
    ReadPapers(settings, stored);
    if (!stored.features.ImportFromRawList(
            settings.GetAttributeBytesListForNameSpace(PersistentAttributes::GetDataModelDocPropNameSpaceId())))
        stored.fault = "a feature runs past the end of the settings";
    return stored;
}
