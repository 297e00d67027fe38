// DriverModule: the configuration module of a printer's driver, loaded, and the calls that the spooler makes into it.
//
// The last module that was asked stays loaded until another one is: capabilities are asked for in rows. A driver whose
// file was replaced is loaded anew.
#pragma once

#include <memory>
#include <string>

#include <winspool.h>

#include "spooler/printerhandle.h"

namespace winport::spooler
{

class DriverModule
{
public:
    // Null, with the loader's last error, when the module cannot be loaded. Throws ERROR_PRINTER_DELETED.
    static std::shared_ptr<const DriverModule> Of(const PrinterHandle& handle);

    explicit DriverModule(HMODULE module) noexcept : m_module(module)
    {
    }
    ~DriverModule();
    DriverModule(const DriverModule&) = delete;
    DriverModule& operator=(const DriverModule&) = delete;

    // Both answer -1, with ERROR_PROC_NOT_FOUND, when the module does not export what is asked.
    int DeviceCapabilities(HANDLE printer, std::u16string& name, WORD capability, void* output,
                           const DEVMODEW* devMode) const;
    LONG DocumentProperties(HANDLE printer, std::u16string& name, DEVMODEW* output, DEVMODEW* input, DWORD mode) const;

private:
    HMODULE m_module;
};

} // namespace winport::spooler
