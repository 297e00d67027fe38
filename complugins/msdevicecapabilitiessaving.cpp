// Filling and saving the caches.
#include "complugins/msdevicecapabilities.h"

#include <utility>

#include <tvutil/exceptions.h>
#include <tvutil/printer.h>
#include <tvutil/tavlenutilities.h>

#include "complugins/papercache.h"

using DeviceCapabilityTable::RowOf;

void MSDeviceCapabilities::SetCache(Cache cache, ByteBuffer content)
{
    m_answers[static_cast<std::size_t>(cache)] = CapabilityCaches::AnswerOf(cache, content.bytes());
    m_contents[static_cast<std::size_t>(cache)] = std::move(content);
    m_dirty |= RowOf(cache).dirtyBits;
}

// The flags tell what was saved together: whoever finds others beside them has found a save that was cut off.
void MSDeviceCapabilities::WriteDirtyCaches()
{
    const CXString port = TavlenUtilities::ConvertPortNameToRegistryKey(m_portName.View());
    const DataCache store({m_printerName, port}, m_hive, kStamp, false);
    for (const Cache cache : DeviceCapabilityTable::kSavingOrder)
        if ((m_dirty & RowOf(cache).dirtyBits) != 0)
            store.Write(RowOf(cache).name, m_contents[static_cast<std::size_t>(cache)].bytes());
    // The papers' that are stored now, whether saved before or just now.
    const auto papers = PaperCache::ReadHeader(store.Read(RowOf(Cache::Papers).name).value_or(ByteBuffer()).bytes());
    store.Write(RowOf(Cache::Flags).name,
                CapabilityCaches::WriteFlags({m_dirty, m_printerCacheCrc, papers.customFormsCrc}).bytes());
}

HRESULT MSDeviceCapabilities::Save(const DataCache::Lock&)
{
    if (!BuildState(m_options.forceMachineHive))
        return E_NOTIMPL;
    if (m_options.noSave || m_dirty == 0)
        return S_FALSE;
    try
    {
        WriteDirtyCaches();
        m_dirty = 0;
        Printer(m_printer).ClearDevmode1stLevelCache();
        return S_OK;
    }
    catch (const ExceptionDataCacheFailure&)
    {
        return E_FAIL;
    }
    catch (const ExceptionPrinterFailure&)
    {
        return E_FAIL;
    }
}
