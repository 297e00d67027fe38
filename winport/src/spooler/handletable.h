// HandleTable: from handles to what they stand for. A value that is no handle of the table, whatever it is, is found
// out (ERROR_INVALID_HANDLE), never followed; a closed handle's value is not used again.
#pragma once

#include <cstdint>
#include <memory>
#include <mutex>
#include <unordered_map>

#include <windef.h>

#include "spooler/win32error.h"

namespace winport::spooler
{

// The kinds of handles, told apart by their lowest bits.
enum class HandleKind : std::uintptr_t
{
    Printer = 1,
    RegistryKey = 2,
    Mutex = 3,
};

template <typename Object, HandleKind kind>
class HandleTable
{
public:
    std::uintptr_t Add(std::shared_ptr<const Object> object)
    {
        const std::lock_guard lock(m_mutex);
        const std::uintptr_t handle = (++m_last << 3) | static_cast<std::uintptr_t>(kind);
        m_objects.emplace(handle, std::move(object));
        return handle;
    }

    // The object lives on with the caller when another thread closes the handle.
    [[nodiscard]] std::shared_ptr<const Object> Find(std::uintptr_t handle) const
    {
        const std::lock_guard lock(m_mutex);
        const auto found = m_objects.find(handle);
        Require(found != m_objects.end(), ERROR_INVALID_HANDLE);
        return found->second;
    }

    void Remove(std::uintptr_t handle)
    {
        const std::lock_guard lock(m_mutex);
        Require(m_objects.erase(handle) == 1, ERROR_INVALID_HANDLE);
    }

private:
    mutable std::mutex m_mutex;
    std::unordered_map<std::uintptr_t, std::shared_ptr<const Object>> m_objects;
    std::uintptr_t m_last = 0;
};

} // namespace winport::spooler
