#include "spooler/printerhandle.h"

#include <winspool.h>

#include "spooler/handletable.h"

namespace winport::spooler
{

namespace
{

using PrinterHandles = HandleTable<PrinterHandle, HandleKind::Printer>;

PrinterHandles& Handles()
{
    static PrinterHandles handles;
    return handles;
}

std::uintptr_t ValueOf(HANDLE handle) noexcept
{
    return reinterpret_cast<std::uintptr_t>(handle);
}

} // namespace

std::shared_ptr<const PrinterHandle> FindHandle(HANDLE handle)
{
    return Handles().Find(ValueOf(handle));
}

std::shared_ptr<const PrinterHandle> FindPrinterHandle(HANDLE handle)
{
    auto found = FindHandle(handle);
    Require(found->printer != 0, ERROR_INVALID_HANDLE);
    return found;
}

std::shared_ptr<const PrinterHandle> FindAdministerHandle(HANDLE handle)
{
    auto found = FindPrinterHandle(handle);
    Require((found->access & PRINTER_ACCESS_ADMINISTER) != 0, ERROR_ACCESS_DENIED);
    return found;
}

HANDLE MakeHandle(PrinterHandle handle)
{
    return reinterpret_cast<HANDLE>(Handles().Add(std::make_shared<const PrinterHandle>(std::move(handle))));
}

void CloseSpoolerHandle(HANDLE handle)
{
    Handles().Remove(ValueOf(handle));
}

ScopedPrinterHandle::~ScopedPrinterHandle()
{
    if (m_handle == nullptr)
        return;
    try
    {
        CloseSpoolerHandle(m_handle);
    }
    catch (const Win32Error&)
    {
        // A driver's module has closed what it was lent.
    }
}

} // namespace winport::spooler
