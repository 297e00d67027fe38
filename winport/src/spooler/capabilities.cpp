// What is asked of the driver's configuration module.
#include <winspool.h>

#include <optional>

#include "spooler/drivermodule.h"
#include "spooler/names.h"
#include "spooler/printerhandle.h"
#include "spooler/printerrow.h"
#include "spooler/win32error.h"

namespace winport::spooler
{

namespace
{

PrinterHandle HandleByName(LPCWSTR name)
{
    const std::filesystem::path folder = StoreFolder();
    Store store(folder);
    const std::optional<std::int64_t> printer = FindPrinter(store, ViewOf(name));
    Require(printer.has_value(), ERROR_INVALID_PRINTER_NAME);
    return {folder, *printer, PRINTER_ACCESS_USE};
}

std::u16string NameOf(const PrinterHandle& handle)
{
    Store store(handle.folder);
    return ReadPrinter(store, handle.printer).name;
}

std::shared_ptr<const DriverModule> RequireModule(const PrinterHandle& handle)
{
    auto module = DriverModule::Of(handle);
    Require(module != nullptr, GetLastError());
    return module;
}

// The module's answer passes through, its -1 and its last error too.
template <typename Ask>
LONG AnswerOfModule(Ask&& ask) noexcept
{
    LONG answer = -1;
    if (!Succeeds([&] { answer = ask(); }))
        return -1;
    return answer;
}

} // namespace

} // namespace winport::spooler

using namespace winport::spooler;

int WINAPI DeviceCapabilitiesW(LPCWSTR device, LPCWSTR, WORD capability, LPWSTR output, const DEVMODEW* devMode)
{
    return AnswerOfModule(
        [&]
        {
            const PrinterHandle handle = HandleByName(device);
            const auto module = RequireModule(handle);
            const ScopedPrinterHandle lent(handle);
            std::u16string name = NameOf(handle);
            return module->DeviceCapabilities(lent.Get(), name, capability, output, devMode);
        });
}

LONG WINAPI DocumentPropertiesW(HWND, HANDLE printer, LPWSTR deviceName, PDEVMODEW devModeOutput,
                                PDEVMODEW devModeInput, DWORD mode)
{
    return AnswerOfModule(
        [&]
        {
            const PrinterHandle handle = printer == nullptr ? HandleByName(deviceName) : *FindPrinterHandle(printer);
            const auto module = RequireModule(handle);
            // The caller's own handle, with its access, where there is one.
            std::optional<ScopedPrinterHandle> lent;
            if (printer == nullptr)
                lent.emplace(handle);
            std::u16string name = NameOf(handle);
            return module->DocumentProperties(lent ? lent->Get() : printer, name, devModeOutput, devModeInput, mode);
        });
}
