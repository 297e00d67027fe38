#include "spooler/devmodebytes.h"

#include <cstddef>
#include <cstring>

#include "spooler/win32error.h"

namespace winport::spooler
{

namespace
{

constexpr std::size_t kSmallest = offsetof(DEVMODEW, dmFields) + sizeof(DWORD);

WORD WordAt(const BYTE* bytes, std::size_t offset) noexcept
{
    WORD word = 0;
    std::memcpy(&word, bytes + offset, sizeof(word));
    return word;
}

} // namespace

bool IsWholeDevMode(std::span<const BYTE> bytes) noexcept
{
    if (bytes.size() < kSmallest)
        return false;
    const std::size_t size = WordAt(bytes.data(), offsetof(DEVMODEW, dmSize));
    const std::size_t extra = WordAt(bytes.data(), offsetof(DEVMODEW, dmDriverExtra));
    return size >= kSmallest && size + extra == bytes.size();
}

Blob DevModeBytes(const DEVMODEW* devMode)
{
    if (devMode == nullptr)
        return {};
    Require(devMode->dmSize >= kSmallest, ERROR_INVALID_PARAMETER);
    const auto* bytes = reinterpret_cast<const BYTE*>(devMode);
    return Blob(bytes, bytes + devMode->dmSize + devMode->dmDriverExtra);
}

} // namespace winport::spooler
