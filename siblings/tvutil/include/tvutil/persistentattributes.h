// PersistentAttributes: the stored form of settings, one raw list for each namespace. It is what property-bag entry 1
// of a devmode and a printer's device settings hold.
//
// The format is versioned, and told in docs/devmode-format.md. Lengths are checked before anything is believed: a state
// that contradicts itself reads as none. Namespaces, kinds and flags that this version does not know survive.
#pragma once

#include <windows.h>

#include <optional>

#include <tvutil/attributebytesids.h>
#include <tvutil/attributebytesnamespaces.h>
#include <tvutil/attributebytesrawlist.h>
#include <tvutil/bytebuffer.h>

class TVUTIL_API PersistentAttributes
{
public:
    // The settings of a document.
    [[nodiscard]] static constexpr AttributeBytesNameSpacesId GetDataModelDocPropNameSpaceId() noexcept
    {
        return AttributeBytesNameSpacesId(1);
    }
    // What the device can do, for use where no cache of it can be asked: inside the spooler.
    [[nodiscard]] static constexpr AttributeBytesNameSpacesId GetMsDeviceCapabilitiesNameSpaceId() noexcept
    {
        return AttributeBytesNameSpacesId(2);
    }
    // The settings of a printer, the same for every document.
    [[nodiscard]] static constexpr AttributeBytesNameSpacesId GetDeviceSettingsNameSpaceId() noexcept
    {
        return AttributeBytesNameSpacesId(3);
    }

    // Nothing stored yet.
    explicit PersistentAttributes(std::optional<DWORD> driverVersion = std::nullopt);
    // The state is copied. A driver version is what the state says once it is changed; without one it keeps its own.
    explicit PersistentAttributes(const ByteBuffer& state, std::optional<DWORD> driverVersion = std::nullopt);

    // Whether there is a state that this version can read. An empty one is none.
    [[nodiscard]] bool IsReadable() const noexcept;
    [[nodiscard]] DWORD GetDriverVersion() const noexcept; // of the state; 0 when it says none

    // Empty when there is no such namespace.
    [[nodiscard]] AttributeBytesRawList GetAttributeBytesListForNameSpace(AttributeBytesNameSpacesId id) const;

    // Replaces the namespaces that are given, in place, and keeps all others. A state that cannot be read becomes a new
    // one with the given ones only. False, with nothing changed, for a state of a later format: it is not ours to
    // rewrite.
    bool SetAttributeBytesNameSpaces(const AttributeBytesNameSpaces& nameSpaces);

    // The state; its first word (ByteBuffer::getDword) is its own size in bytes. Unchanged settings are the bytes that
    // were read.
    [[nodiscard]] const ByteBuffer& GetPersistentAttributesState() const noexcept;

private:
    ByteBuffer m_state;
    std::optional<DWORD> m_driverVersion;
};
