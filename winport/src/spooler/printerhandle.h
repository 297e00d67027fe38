// What an open printer handle stands for.
#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <utility>

#include <windef.h>

namespace winport::spooler
{

struct PrinterHandle
{
    std::filesystem::path folder; // of the store in which it was opened
    std::int64_t printer;         // the row; 0 is the server itself
    ACCESS_MASK access;
};

// Throw ERROR_INVALID_HANDLE for anything that is not an open printer handle.
std::shared_ptr<const PrinterHandle> FindHandle(HANDLE handle);
// ... or is the server's.
std::shared_ptr<const PrinterHandle> FindPrinterHandle(HANDLE handle);
// ... or, with ERROR_ACCESS_DENIED, was not opened for changing the printer.
std::shared_ptr<const PrinterHandle> FindAdministerHandle(HANDLE handle);

HANDLE MakeHandle(PrinterHandle handle);
void CloseSpoolerHandle(HANDLE handle);

// A handle of this layer's own, closed at the end of a scope.
class ScopedPrinterHandle
{
public:
    explicit ScopedPrinterHandle(PrinterHandle handle) : m_handle(MakeHandle(std::move(handle)))
    {
    }
    ~ScopedPrinterHandle();
    ScopedPrinterHandle(ScopedPrinterHandle&& other) noexcept : m_handle(other.Release())
    {
    }
    ScopedPrinterHandle& operator=(ScopedPrinterHandle&&) = delete;

    [[nodiscard]] HANDLE Get() const noexcept
    {
        return m_handle;
    }

    // From now on somebody else's to close.
    [[nodiscard]] HANDLE Release() noexcept
    {
        return std::exchange(m_handle, nullptr);
    }

private:
    HANDLE m_handle = nullptr;
};

} // namespace winport::spooler
