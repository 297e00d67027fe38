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

} // namespace

DevmodeFirstLevelCache& DevmodeFirstLevelCache::Instance()
{
    static DevmodeFirstLevelCache instance;
    return instance;
}

std::optional<ByteBuffer> DevmodeFirstLevelCache::Find(const CXString& printerName) const
{
    const std::lock_guard lock(m_mutex);
    const auto found = std::find_if(m_entries.begin(), m_entries.end(), IsOf(printerName));
    return found != m_entries.end() ? std::optional(found->second) : std::nullopt;
}

std::uint64_t DevmodeFirstLevelCache::Stage() const
{
    const std::lock_guard lock(m_mutex);
    return m_stage;
}

void DevmodeFirstLevelCache::Add(const CXString& printerName, const ByteBuffer& devmode, std::uint64_t stage)
{
    const std::lock_guard lock(m_mutex);
    if (stage != m_stage)
        return;
    std::erase_if(m_entries, IsOf(printerName));
    m_entries.emplace_back(printerName, devmode);
    if (m_entries.size() > kCapacity)
        m_entries.pop_front();
}

void DevmodeFirstLevelCache::Remove(const CXString& printerName)
{
    const std::lock_guard lock(m_mutex);
    ++m_stage;
    std::erase_if(m_entries, IsOf(printerName));
}
