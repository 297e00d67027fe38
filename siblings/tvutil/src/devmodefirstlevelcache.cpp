#include <windows.h>

#include "devmodefirstlevelcache.h"

#include <algorithm>

namespace
{

// The spooler's names of printers do not differ by case.
auto IsOf(const CXString& printerName)
{
    return [&printerName](const std::pair<CXString, ByteBuffer>& entry)
    {
        return entry.first.CompareNoCase(printerName) == 0;
    };
}

// Ready when the library is loaded: a static of a function would be made when memory may be short.
DevmodeFirstLevelCache g_instance;

} // namespace

DevmodeFirstLevelCache& DevmodeFirstLevelCache::Instance() noexcept
{
    return g_instance;
}

std::optional<ByteBuffer> DevmodeFirstLevelCache::Find(const CXString& printerName) const
{
    const SlimLock::Guard guard(m_lock);
    const auto found = std::find_if(m_entries.begin(), m_entries.end(), IsOf(printerName));
    return found != m_entries.end() ? std::optional(found->second) : std::nullopt;
}

std::uint64_t DevmodeFirstLevelCache::Stage() const
{
    const SlimLock::Guard guard(m_lock);
    return m_stage;
}

void DevmodeFirstLevelCache::Add(const CXString& printerName, const ByteBuffer& devmode, std::uint64_t stage)
{
    const SlimLock::Guard guard(m_lock);
    if (stage != m_stage)
        return;
    std::erase_if(m_entries, IsOf(printerName));
    m_entries.emplace_back(printerName, devmode);
    if (m_entries.size() > kCapacity)
        m_entries.pop_front();
}

void DevmodeFirstLevelCache::Remove(const CXString& printerName)
{
    const SlimLock::Guard guard(m_lock);
    ++m_stage;
    std::erase_if(m_entries, IsOf(printerName));
}
