// DevmodeFirstLevelCache: the default devmodes of the printers that this process has asked for, so that the driver is
// not asked again for each conversion.
//
// One for the process, safe on every thread. Bounded: the printer that was put in first goes first.
#pragma once

#include <cstdint>
#include <deque>
#include <optional>
#include <utility>

#include <tvutil/bytebuffer.h>
#include <tvutil/cxstring.h>

#include "utilitiesstaticlib/slimlock.h"

class DevmodeFirstLevelCache
{
public:
    static constexpr std::size_t kCapacity = 32;

    static DevmodeFirstLevelCache& Instance() noexcept;

    [[nodiscard]] std::optional<ByteBuffer> Find(const CXString& printerName) const;

    // What was asked of a driver before a Remove must not be put in after it: whoever fills the cache notes the stage
    // before the question, and Add does nothing when it is over.
    [[nodiscard]] std::uint64_t Stage() const;
    void Add(const CXString& printerName, const ByteBuffer& devmode, std::uint64_t stage);
    void Remove(const CXString& printerName);

private:
    mutable SlimLock m_lock;
    std::deque<std::pair<CXString, ByteBuffer>> m_entries;
    std::uint64_t m_stage = 0;
};
