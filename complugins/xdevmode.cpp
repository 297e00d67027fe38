#include "complugins/xdevmode.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <optional>
#include <span>

#include <tvutil/exceptions.h>
#include <tvutil/globalcaches.h>
#include <tvutil/persistentattributes.h>
#include <tvutil/throwexception.h>

#include "complugins/devmodenames.h"
#include "complugins/oemdevmodelocation.h"

namespace
{

constexpr WCHAR kSourceFile[] = W("complugins\\xdevmode");

// The places that exceptions name, with the lines that the system reports for them.
constexpr ThrowSite kConstructor{W("XDevmode::XDevmode"), kSourceFile, 78};
constexpr ThrowSite kLocation{W("XDevmode::GetOemDevmodeFromDevmode"), kSourceFile, 444};

constexpr std::int32_t kNoNameSpace = -1;

DEVMODEW* NotNull(DEVMODEW* devmode, const ThrowSite& site)
{
    if (devmode == nullptr)
        ThrowException<ExceptionInvalidArgumentNullPointer>(site);
    return devmode;
}

CXString ListCacheName(const AttributeBytesNameSpacesId& id)
{
    return id == PersistentAttributes::GetMsDeviceCapabilitiesNameSpaceId() ? GlobalCaches::kDeviceCapsListCacheName
                                                                            : GlobalCaches::kDocPropListCacheName;
}

} // namespace

XDevmode::XDevmode() noexcept = default;

XDevmode::XDevmode(DEVMODEW* devmode)
{
    SetDevmode(NotNull(devmode, kConstructor));
}

XDevmode::~XDevmode() = default;

bool XDevmode::SetDevmode(DEVMODEW* devmode)
{
    if (devmode == nullptr)
        return false;
    TerminateDevmodeNames(*devmode); // even of a devmode that is not taken
    OemDevmode* const part = GetOemDevmodeFromDevmode(devmode);
    if (part == nullptr)
        return false;

    m_oemDevmode = part;
    m_devmode = devmode;
    m_propertyBag.clear();
    m_bagCrc.reset();
    m_isDirty = false;
    m_isAttached = true;
    DropList();
    m_isUnparsed = !OemDevmodeContent::IsEmpty(*part);
    return m_isUnparsed;
}

OemDevmode* XDevmode::GetOemDevmodeFromDevmode(DEVMODEW* devmode)
{
    auto* const driverExtra = reinterpret_cast<std::byte*>(NotNull(devmode, kLocation)) + devmode->dmSize;
    const auto location = LocateOemDevmode(std::span(driverExtra, devmode->dmDriverExtra));
    return location ? reinterpret_cast<OemDevmode*>(driverExtra + location->offset) : nullptr;
}

bool XDevmode::HasOemDevmode() const noexcept
{
    return m_oemDevmode != nullptr;
}

DEVMODEW* XDevmode::GetDevmode() const noexcept
{
    return m_devmode;
}

const ByteBuffer* XDevmode::GetPropertyBagEntry(unsigned short key)
{
    ParseIfUnparsed();
    const auto found = m_propertyBag.find(key);
    return found != m_propertyBag.end() ? found->second.get() : nullptr;
}

bool XDevmode::GetPropertyBagString(unsigned short key, CXString& value)
{
    const ByteBuffer* const entry = GetPropertyBagEntry(key);
    if (entry == nullptr)
        return false;
    entry->getAsStringValue(value);
    return true;
}

bool XDevmode::SetPropertyBagEntry(unsigned short key, const ByteBuffer& value)
{
    ParseIfUnparsed();
    m_propertyBag[key] = GlobalCaches::MakeBuffer(value.bytes());
    DropList();
    m_isDirty = true;
    return true;
}

int XDevmode::GetOemDevmodeDataSize() const
{
    if (!m_isUnparsed)
        return static_cast<int>(
            std::min<std::size_t>(OemDevmodeContent::MeasureEntries(m_propertyBag), std::numeric_limits<int>::max()));
    if (!m_isAttached || m_oemDevmode == nullptr)
        return 0;
    return static_cast<int>(OemDevmodeContent::MeasureEntries(*m_oemDevmode));
}

std::span<const std::byte> XDevmode::GetOemDevmodeData() const
{
    if (m_oemDevmode == nullptr)
        return {};
    const auto size = static_cast<std::size_t>(GetOemDevmodeDataSize());
    return std::span(m_oemDevmode->bytes).first(std::min(size, OemDevmodeFormat::kSize));
}

bool XDevmode::RestoreOemDevmode(std::span<const std::byte> data)
{
    if (m_oemDevmode == nullptr || data.size() < OemDevmodeFormat::kEntriesOffset ||
        data.size() > OemDevmodeFormat::kSize || !BeginsAsOemDevmode(data))
        return false;
    std::memset(m_oemDevmode->bytes, 0, OemDevmodeFormat::kSize);
    std::memcpy(m_oemDevmode->bytes, data.data(), data.size());
    SetDevmode(m_devmode);
    return true;
}

bool XDevmode::CommitToDevmode()
{
    bool isWritten = true;
    if (m_isDirty)
    {
        isWritten = m_oemDevmode != nullptr && OemDevmodeContent::WriteEntries(*m_oemDevmode, m_propertyBag);
        m_isDirty = !isWritten;
        if (isWritten)
            m_bagCrc = OemDevmodeContent::GetStoredCrc(*m_oemDevmode);
    }
    OnAttributeBytesStored(); // whatever came of it
    return isWritten;
}

AttributeBytesIndexedList* XDevmode::GetDefaultAttributeBytesIndexedList()
{
    return GetDataModelDocPropAttributeBytesIndexedList();
}

AttributeBytesIndexedList* XDevmode::GetDataModelDocPropAttributeBytesIndexedList()
{
    return GetAttributeBytesIndexedList(PersistentAttributes::GetDataModelDocPropNameSpaceId());
}

void XDevmode::OnAttributeBytesStored()
{
}

AttributeBytesIndexedList* XDevmode::GetAttributeBytesIndexedListOf(AttributeBytesNameSpacesId id)
{
    return GetAttributeBytesIndexedList(id);
}

AttributeBytesIndexedList* XDevmode::GetAttributeBytesIndexedList(const AttributeBytesNameSpacesId& id)
{
    if (m_list && m_listNameSpace == id.GetId())
        return m_list.get();
    auto list = std::make_unique<AttributeBytesIndexedList>();
    m_listNameSpace = FillList(id, *list) ? id.GetId() : kNoNameSpace;
    m_list = std::move(list);
    return m_list.get();
}

// Whether the list is to be kept as that of the namespace.
bool XDevmode::FillList(const AttributeBytesNameSpacesId& id, AttributeBytesIndexedList& list)
{
    if (m_oemDevmode == nullptr)
        return false;
    // On purpose: while the bag is changed and not committed there are no settings, and what was asked for then stays
    // empty.
    if (m_isDirty)
        return true;
    // On purpose the CRC that the part states: for a devmode that is known nothing else is read.
    const DWORD crc = OemDevmodeContent::GetStoredCrc(*m_oemDevmode);
    if (!OemDevmodeContent::IsUnchecked(*m_oemDevmode) &&
        GlobalCaches::CheckXDevmodeAttributeBytesIndexedListCache(id, crc, list))
        return true;
    const ByteBuffer* const state = GetPropertyBagEntry(OemDevmodeFormat::kPersistentAttributesKey);
    if (state == nullptr)
        return false;
    list.ImportFromRawList(PersistentAttributes(*state).GetAttributeBytesListForNameSpace(id));
    list.SetIndexed(true);
    // The part may have been committed through another wrapper since this one read it: its CRC is not that of this bag.
    if (m_bagCrc == crc)
        GlobalCaches::AddXDevmodeAttributeBytesIndexedListCacheEntry(ListCacheName(id), id, crc, list);
    return true;
}

// False when the part is corrupt: it counts as one without settings, and is not repaired. It is read only once; when
// there is no memory for it, again by the next reader.
bool XDevmode::ParseIfUnparsed()
{
    if (m_oemDevmode == nullptr || !m_isUnparsed)
        return true;
    const DWORD crc = OemDevmodeContent::GetStoredCrc(*m_oemDevmode);
    const std::optional<OemDevmodeContent::Entries> entries = ReadEntries(crc);
    OemDevmodeContent::PropertyBag bag;
    if (entries)
        bag.insert(entries->begin(), entries->end()); // of two entries with one key the first counts
    m_propertyBag = std::move(bag);
    m_bagCrc = entries ? std::optional(crc) : std::nullopt;
    m_isUnparsed = false;
    return entries.has_value();
}

std::optional<OemDevmodeContent::Entries> XDevmode::ReadEntries(DWORD crc) const
{
    // Nothing vouches for the CRC of such a part, which others may have in earnest; it has no entries anyway.
    if (OemDevmodeContent::IsUnchecked(*m_oemDevmode))
        return OemDevmodeContent::Entries();
    if (!OemDevmodeContent::HasRightCrc(*m_oemDevmode))
        return std::nullopt;
    OemDevmodeContent::Entries cached;
    if (GlobalCaches::CheckXDevmodePropertyBagCache(crc, cached))
        return cached;
    auto entries = OemDevmodeContent::ReadEntries(*m_oemDevmode);
    if (entries)
        GlobalCaches::AddXDevmodePropertyBagCacheEntry(crc, *entries);
    return entries;
}

void XDevmode::DropList() noexcept
{
    m_list.reset();
    m_listNameSpace = kNoNameSpace;
}
