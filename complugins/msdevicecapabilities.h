// MSDeviceCapabilities: what a printer can do, from caches that were filled before, so that no conversion runs the
// driver's own, slow capability code.
//
// The driver's configuration module fills the caches (SetCache, Save); a query takes the one that answers it
// (complugins/devicecapabilitytable.h) as it is at that moment. They are the user's, or, inside the spooler and the
// filter pipeline, the machine's; a user who has no paper cache is given the machine's form list. Queries answer
// HRESULTs and throw nothing but std::bad_alloc: E_FAIL for a cache that is missing, short or stale, E_NOTIMPL when the
// printer, its store or its driver does not answer.
//
// One object a printer and conversion; one thread at a time. The printer handle is borrowed.
#pragma once

#include <windows.h>

#include <array>
#include <cstdint>
#include <optional>
#include <vector>

#include <tvutil/bytebuffer.h>
#include <tvutil/cxstring.h>
#include <tvutil/datacache.h>

#include "complugins/capabilitycaches.h"
#include "complugins/devicecapabilitytable.h"
#include "complugins/formsinforecord.h"

struct MSDeviceCapabilitiesOptions
{
    bool forceMachineHive = false;
    bool noSave = false; // Save writes nothing
};

class MSDeviceCapabilities
{
public:
    using _tag_FormsInfoRec = FormsInfoRecord;
    using Cache = DeviceCapabilityTable::Cache;

    // Of the caches; also the custom-forms CRC where there are no custom sizes.
    static constexpr DWORD kStamp = 1397442489;

    // Where the process runs, or where a test says that it does.
    enum class Context
    {
        OfThisProcess,
        Spooler, // also the filter pipeline
        Application,
    };

    using Options = MSDeviceCapabilitiesOptions;

    // Whether the paper cache must have been filled with the custom sizes that the user has now.
    enum class Validation
    {
        None,
        CustomForms,
    };

    MSDeviceCapabilities();
    ~MSDeviceCapabilities();

    // A null handle or one of all ones throws ExceptionInvalidPrinterHandle. Another handle, context or choice of
    // hive than before begins anew: what is dirty was meant for the former.
    void Initialize(HANDLE printer, Context context = Context::OfThisProcess, Options options = {});

    [[nodiscard]] HANDLE GetPrinterHandle() const noexcept;
    [[nodiscard]] const Options& GetOptions() const noexcept;

    // ---- Queries

    // A capability by its index. `answer` becomes the first word of the cache, the number of papers from the papers'.
    // An index that no cache answers is S_OK and 0, and loads nothing.
    HRESULT DeviceCapabilities(WORD index, Validation validation, DWORD& answer);

    // Replaces `forms`, which is empty after a failure. Inside the spooler the records come from the devmode's own
    // persistent attributes: E_FAIL without a devmode or when it carries none. Outside of it they come from the paper
    // cache, with validation, and from the machine's where the user has none. Another valid handle than the one held is
    // taken over.
    HRESULT GetPaperDatabaseCachedDeviceCapabilitiesVector(HANDLE printer, DEVMODEW* devmode,
                                                           std::vector<_tag_FormsInfoRec>& forms);

    // The resolutions in the printer's order, and as values of the data model: those that have none are left out there.
    HRESULT GetResolutionsCachedDeviceCapabilitiesVector(std::vector<ResolutionInfoRecord>& resolutions);
    HRESULT GetResolutionEnumsCachedDeviceCapabilitiesVector(std::vector<std::int32_t>& values);
    [[nodiscard]] static std::vector<std::int32_t> ValuesOf(const std::vector<ResolutionInfoRecord>& resolutions);

    // kStamp inside the spooler, where the registry is no user's and is not asked.
    [[nodiscard]] DWORD GetCustomFormsCRC();

    // ---- What there is

    enum class CacheState
    {
        Valid,
        Stale,
        Short, // below its minimum, or without the records that it promises
        Missing,
    };

    struct CacheDescription
    {
        CacheState state = CacheState::Missing;
        std::size_t size = 0; // bytes
        ByteBuffer content;   // whatever its state
    };

    // As a query with validation would find it, the papers as the form list is found; nothing when a query would answer
    // E_NOTIMPL.
    [[nodiscard]] std::optional<CacheDescription> DescribeCache(Cache cache);

    // ---- Filling

    // The hive that is in use.
    [[nodiscard]] HKEY GetHive();

    // The cache has this content and is dirty.
    void SetCache(Cache cache, ByteBuffer content);

    // Writes every dirty cache, in their order, and the flags behind them; then this process asks the driver anew for
    // the printer's devmode. S_FALSE when nothing was to be written. The lock is the hive's, held over filling and
    // saving.
    HRESULT Save(const DataCache::Lock& lock);

private:
    enum State : DWORD
    {
        kNameRead = 0x1,
        kPortRead = 0x2,
        kPrinterCrcRead = 0x4,
        kPortCacheOpened = 0x8,
        kContextRead = 0x20,
        kInstallationComplete = 0x80,
        kComplete = 0x3FF, // some of these nothing sets: each step of building the state guards itself
    };

    [[nodiscard]] bool IsInSpooler();
    [[nodiscard]] HKEY ChooseHive(bool isForced);
    // False when the printer, its store or its driver does not answer.
    [[nodiscard]] bool BuildState(bool isForced);
    void ReadPrinter();
    void OpenPortCache();

    [[nodiscard]] std::optional<ByteBuffer> FindContent(Cache cache) const;
    // Those of the machine where the user has none.
    [[nodiscard]] std::optional<ByteBuffer> FindPapers();
    [[nodiscard]] CacheState StateOf(Cache cache, const std::optional<ByteBuffer>& content, Validation validation);
    // Into m_contents.
    HRESULT Load(Cache cache, Validation validation);
    HRESULT Take(Cache cache, std::optional<ByteBuffer> content, Validation validation);
    void WriteDirtyCaches();

    HRESULT GetFormsOfDevmode(DEVMODEW* devmode, std::vector<_tag_FormsInfoRec>& forms) const;
    HRESULT GetFormsOfCache(std::vector<_tag_FormsInfoRec>& forms);

    HANDLE m_printer = nullptr;
    Context m_context = Context::OfThisProcess;
    Options m_options;
    CXString m_printerName;
    CXString m_portName;
    HKEY m_hive = nullptr;
    DWORD m_state = 0;
    DWORD m_printerCacheCrc = 0;
    DWORD m_customFormsCrc = 0;
    bool m_isInSpooler = false;
    std::optional<DataCache> m_portCache;
    std::array<ByteBuffer, DeviceCapabilityTable::kCacheCount> m_contents;
    std::array<DWORD, DeviceCapabilityTable::kCacheCount> m_answers{};
    DWORD m_dirty = 0;
};
