// XDevmode: one driver devmode as the spooler hands it over: the public DEVMODEW, the core driver's private part, and
// the maker's own private part with its property bag (complugins/oemdevmode.h, docs/devmode-format.md).
//
// Wraps a devmode that its caller owns and keeps alive, for one conversion: construct, read lists and entries, set
// entries, CommitToDevmode. The first reader of the bag reads it from the part, or takes it from the cache that the
// process shares. dmSize and dmDriverExtra are believed: whoever takes a devmode from outside has compared them with
// the memory before (tvutil/devmodebounds.h). Nothing outside of them is read, nothing outside the maker's part is
// written, the terminators of the two names aside.
//
// One thread at a time; the caches behind it guard themselves.
#pragma once

#include <windows.h>

#include <cstdint>
#include <memory>
#include <optional>
#include <span>

#include <tvutil/attributebytesreader.h>
#include <tvutil/bytebuffer.h>
#include <tvutil/cxstring.h>

#include "complugins/oemdevmodecontent.h"

class XDevmode : public AttributeBytesReader
{
public:
    XDevmode() noexcept;
    // Attaches; a devmode without settings is none the worse. Null throws ExceptionInvalidArgumentNullPointer.
    explicit XDevmode(DEVMODEW* devmode);
    ~XDevmode() override;
    XDevmode(const XDevmode&) = delete;
    XDevmode& operator=(const XDevmode&) = delete;

    // Attaches another devmode: its settings, once asked for, replace the present ones. False when it is null, has no
    // valid maker's part, or one that holds no data. A null one, or one without a valid part, changes nothing.
    bool SetDevmode(DEVMODEW* devmode);

    // The maker's part inside the devmode, or null when there is none or its size or signature are not right. The
    // PostScript layout is asked first, the Unidrv layout is the fallback. Null throws
    // ExceptionInvalidArgumentNullPointer.
    [[nodiscard]] static OemDevmode* GetOemDevmodeFromDevmode(DEVMODEW* devmode);

    // Whether the devmode is attached to a maker's part that a commit can write.
    [[nodiscard]] bool HasOemDevmode() const noexcept;
    // Null without such a part.
    [[nodiscard]] DEVMODEW* GetDevmode() const noexcept;

    // The buffer under a key, or null; valid until the entry is set or another devmode attached. Shared by the whole
    // process, hence constant: it is replaced, never edited.
    [[nodiscard]] const ByteBuffer* GetPropertyBagEntry(unsigned short key);
    // The same as a string. False, with the string unchanged, when the key is absent.
    bool GetPropertyBagString(unsigned short key, CXString& value);
    // Stores a copy, replacing any earlier value. Always true. Nothing reaches the devmode before the commit.
    bool SetPropertyBagEntry(unsigned short key, const ByteBuffer& value);

    // Bytes that the part's used region occupies, header to last entry. Differs before and after a failed parse, on
    // purpose: before it, the entries are believed as they stand.
    [[nodiscard]] int GetOemDevmodeDataSize() const;

    // Those bytes themselves, within the part; empty without one.
    [[nodiscard]] std::span<const std::byte> GetOemDevmodeData() const;

    // The whole part becomes these bytes, zeros behind them, and is read again; what was set and not committed is lost.
    // False, with nothing changed, without a part, and for bytes that are not the beginning of one: the entries' begin
    // is where they end at the earliest, its end at the latest, and its size and signature are in them.
    bool RestoreOemDevmode(std::span<const std::byte> data);

    // Writes a changed bag back into the part. True when there was nothing to write. False without a part, and, with
    // the devmode untouched, when the entries do not fit it: memory beyond the caller's part is never written.
    bool CommitToDevmode();

    // --- AttributeBytesReader: settings by namespace
    AttributeBytesIndexedList* GetDefaultAttributeBytesIndexedList() override;
    AttributeBytesIndexedList* GetDataModelDocPropAttributeBytesIndexedList() override;
    void OnAttributeBytesStored() override; // does nothing here
    AttributeBytesIndexedList* GetAttributeBytesIndexedListOf(AttributeBytesNameSpacesId id) override;
    // Empty without a part or without entry 1. Empty, on purpose, while the bag is changed and not yet committed; such
    // an empty list is kept and survives the commit. The list cache trusts the CRC that the part states.
    AttributeBytesIndexedList* GetAttributeBytesIndexedList(const AttributeBytesNameSpacesId& id) override;

private:
    friend struct XDevmodeTestAccess;

    bool ParseIfUnparsed();
    [[nodiscard]] std::optional<OemDevmodeContent::Entries> ReadEntries(DWORD crc) const;
    bool FillList(const AttributeBytesNameSpacesId& id, AttributeBytesIndexedList& list);
    void DropList() noexcept;

    OemDevmodeContent::PropertyBag m_propertyBag;      // buffers shared with the process-wide cache
    OemDevmode* m_oemDevmode = nullptr;                // inside the devmode; null when it has none
    DEVMODEW* m_devmode = nullptr;                     // not owned
    std::unique_ptr<AttributeBytesIndexedList> m_list; // the one last built
    std::int32_t m_listNameSpace = -1;                 // its namespace; -1: none is cached
    std::optional<DWORD> m_bagCrc;                     // of the part's content that the bag is; none before it was read
    bool m_isDirty = false;                            // the bag was changed since it was read or committed
    bool m_isAttached = false;                         // a devmode was attached and its data may be read
    bool m_isUnparsed = false;                         // the part holds data that is not in the bag yet
};
