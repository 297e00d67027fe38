// The state, and the queries that are answered from any cache.
#include "complugins/msdevicecapabilities.h"

#include <utility>

#include <tvutil/driverloadedcontext.h>
#include <tvutil/exceptions.h>
#include <tvutil/printdriver.h>
#include <tvutil/printer.h>
#include <tvutil/tavlenutilities.h>
#include <tvutil/throwexception.h>

#include "complugins/customforms.h"
#include "complugins/papercache.h"

namespace
{

constexpr WCHAR kSourceFile[] = W("complugins\\msdevicecapabilities");

using DeviceCapabilityTable::RowOf;

static_assert(MSDeviceCapabilities::kStamp == CustomForms::kCrcSeed);

bool IsUsable(HANDLE printer) noexcept
{
    return printer != nullptr && printer != INVALID_HANDLE_VALUE;
}

std::size_t IndexOf(MSDeviceCapabilities::Cache cache) noexcept
{
    return static_cast<std::size_t>(cache);
}

} // namespace

MSDeviceCapabilities::MSDeviceCapabilities() = default;

MSDeviceCapabilities::~MSDeviceCapabilities() = default;

void MSDeviceCapabilities::Initialize(HANDLE printer, Context context, Options options)
{
    if (!IsUsable(printer))
        ThrowException<ExceptionInvalidPrinterHandle>({W("MSDeviceCapabilities::Initialize"), kSourceFile});
    const bool isSameHive = options.forceMachineHive == m_options.forceMachineHive;
    m_options = options;
    if (printer == m_printer && context == m_context && isSameHive)
        return;
    m_printer = printer;
    m_context = context;
    m_printerName.Clear();
    m_portName.Clear();
    m_state = 0;
    m_contents = {};
    m_dirty = 0;                                             // another printer's, or for another hive
    static_cast<void>(BuildState(options.forceMachineHive)); // a query tries again, and tells
}

HANDLE MSDeviceCapabilities::GetPrinterHandle() const noexcept
{
    return m_printer;
}

const MSDeviceCapabilities::Options& MSDeviceCapabilities::GetOptions() const noexcept
{
    return m_options;
}

HKEY MSDeviceCapabilities::GetHive()
{
    return ChooseHive(m_options.forceMachineHive);
}

bool MSDeviceCapabilities::IsInSpooler()
{
    if ((m_state & kContextRead) == 0)
    {
        m_isInSpooler = m_context == Context::OfThisProcess ? DriverLoadedContext::IsSpoolerOrFilterPipelineExeContext()
                                                            : m_context == Context::Spooler;
        m_state |= kContextRead;
    }
    return m_isInSpooler;
}

HKEY MSDeviceCapabilities::ChooseHive(bool isForced)
{
    if (isForced)
        return HKEY_LOCAL_MACHINE;
    if (m_context == Context::OfThisProcess)
        return TavlenUtilities::GetRegistryHiveByContext();
    return IsInSpooler() ? HKEY_LOCAL_MACHINE : HKEY_CURRENT_USER;
}

void MSDeviceCapabilities::ReadPrinter()
{
    const Printer printer(m_printer);
    if ((m_state & kNameRead) == 0)
    {
        m_printerName = printer.GetPrinterName();
        m_state |= kNameRead;
    }
    if ((m_state & kPortRead) == 0)
    {
        m_portName = printer.GetPortName();
        m_state |= kPortRead;
    }
    if ((m_state & kPrinterCrcRead) == 0)
    {
        m_printerCacheCrc = DataCache({m_printerName}, m_hive, kStamp, true).GetCurrentCrc();
        m_state |= kPrinterCrcRead;
    }
}

void MSDeviceCapabilities::OpenPortCache()
{
    if ((m_state & kPortCacheOpened) != 0)
        return;
    const CXString key = TavlenUtilities::ConvertPortNameToRegistryKey(m_portName.View());
    m_portCache.emplace(DataCache::Place{m_printerName, key}, m_hive, kStamp, true);
    m_state |= kPortCacheOpened;
}

bool MSDeviceCapabilities::BuildState(bool isForced)
{
    if (const HKEY hive = ChooseHive(isForced); hive != m_hive)
    {
        m_hive = hive;
        m_state &= ~DWORD{kPortCacheOpened};
    }
    if ((m_state & kComplete) == kComplete)
        return true;
    if (!IsUsable(m_printer))
        return false;
    try
    {
        ReadPrinter();
        OpenPortCache();
        static_cast<void>(IsInSpooler());
        if ((m_state & kInstallationComplete) == 0 &&
            PrintDriver().GetInstallationStateFromHandle(m_printer) >= PrintDriver::kInstallationComplete)
            m_state |= kInstallationComplete;
        return true;
    }
    catch (const ExceptionPrinterFailure&)
    {
    }
    catch (const ExceptionDataCacheFailure&)
    {
    }
    catch (const ExceptionPrintDriverFailure&)
    {
    }
    return false;
}

std::optional<ByteBuffer> MSDeviceCapabilities::FindContent(Cache cache) const
{
    try
    {
        return m_portCache->Read(RowOf(cache).name);
    }
    catch (const ExceptionDataCacheFailure&)
    {
        return std::nullopt;
    }
}

std::optional<ByteBuffer> MSDeviceCapabilities::FindPapers()
{
    std::optional<ByteBuffer> content = FindContent(Cache::Papers);
    if (content || IsInSpooler() || m_hive == HKEY_LOCAL_MACHINE || !BuildState(true))
        return content;
    return FindContent(Cache::Papers);
}

MSDeviceCapabilities::CacheState MSDeviceCapabilities::StateOf(Cache cache, const std::optional<ByteBuffer>& content,
                                                               Validation validation)
{
    if (!content)
        return CacheState::Missing;
    if (!CapabilityCaches::IsWhole(cache, content->bytes()))
        return CacheState::Short;
    if (cache != Cache::Papers || validation == Validation::None)
        return CacheState::Valid;
    m_customFormsCrc = GetCustomFormsCRC();
    return PaperCache::ReadHeader(content->bytes()).customFormsCrc == m_customFormsCrc ? CacheState::Valid
                                                                                       : CacheState::Stale;
}

HRESULT MSDeviceCapabilities::Load(Cache cache, Validation validation)
{
    if (!BuildState(m_options.forceMachineHive))
        return E_NOTIMPL;
    return Take(cache, FindContent(cache), validation);
}

HRESULT MSDeviceCapabilities::Take(Cache cache, std::optional<ByteBuffer> content, Validation validation)
{
    if (StateOf(cache, content, validation) != CacheState::Valid)
        return E_FAIL;
    m_contents[IndexOf(cache)] = *std::move(content);
    m_answers[IndexOf(cache)] = CapabilityCaches::AnswerOf(cache, m_contents[IndexOf(cache)].bytes());
    return S_OK;
}

HRESULT MSDeviceCapabilities::DeviceCapabilities(WORD index, Validation validation, DWORD& answer)
{
    answer = 0;
    const DeviceCapabilityTable::Row* const row = DeviceCapabilityTable::FindRow(index);
    if (row == nullptr)
        return S_OK;
    const HRESULT loaded = Load(row->cache, validation);
    if (SUCCEEDED(loaded))
        answer = m_answers[IndexOf(row->cache)];
    return loaded;
}

HRESULT
MSDeviceCapabilities::GetResolutionsCachedDeviceCapabilitiesVector(std::vector<ResolutionInfoRecord>& resolutions)
{
    resolutions.clear();
    if (const HRESULT loaded = Load(Cache::Resolutions, Validation::None); FAILED(loaded))
        return loaded;
    auto read = CapabilityCaches::ReadResolutions(m_contents[IndexOf(Cache::Resolutions)].bytes());
    if (!read)
        return E_FAIL;
    resolutions = *std::move(read);
    return S_OK;
}

HRESULT MSDeviceCapabilities::GetResolutionEnumsCachedDeviceCapabilitiesVector(std::vector<std::int32_t>& values)
{
    std::vector<ResolutionInfoRecord> resolutions;
    const HRESULT loaded = GetResolutionsCachedDeviceCapabilitiesVector(resolutions);
    values = ValuesOf(resolutions);
    return loaded;
}

std::vector<std::int32_t> MSDeviceCapabilities::ValuesOf(const std::vector<ResolutionInfoRecord>& resolutions)
{
    std::vector<std::int32_t> values;
    for (const ResolutionInfoRecord& resolution : resolutions)
        if (resolution.valueId != 0)
            values.push_back(resolution.valueId);
    return values;
}

DWORD MSDeviceCapabilities::GetCustomFormsCRC()
{
    return IsInSpooler() ? kStamp : CustomForms::WalkSizes().crc;
}

std::optional<MSDeviceCapabilities::CacheDescription> MSDeviceCapabilities::DescribeCache(Cache cache)
{
    if (!BuildState(m_options.forceMachineHive))
        return std::nullopt;
    std::optional<ByteBuffer> content = cache == Cache::Papers ? FindPapers() : FindContent(cache);
    CacheDescription description;
    description.state = StateOf(cache, content, Validation::CustomForms);
    description.content = std::move(content).value_or(ByteBuffer());
    description.size = description.content.size();
    return description;
}
