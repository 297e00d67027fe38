#include "configurationmodule.h"

#include <windows.h>
#include <winspool.h>

#include <winddiui.h>

#include <exception>
#include <memory>
#include <type_traits>

#include <tvutil/datacache.h>
#include <tvutil/tavlenutilities.h>

#include "failure.h"
#include "utilitiesstaticlib/findfunction.h"

namespace
{

constexpr char kFilling[] = "filling the caches of the device capabilities";

struct ModuleCloser
{
    void operator()(HMODULE module) const noexcept
    {
        FreeLibrary(module);
    }
};
using Module = std::unique_ptr<std::remove_pointer_t<HMODULE>, ModuleCloser>;

} // namespace

void FillCapabilityCaches(const PrinterHandle& printer, const std::string& name)
{
    const CXString file = DescribeDriver(printer, name).configFile;
    const Module module(LoadLibraryExW(file.c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH));
    if (module == nullptr)
        FailWithWin32Error("loading the configuration module", file.ToUtf8(), GetLastError());
    const auto tell = FindFunction<BOOL(WINAPI*)(LPWSTR, INT, DWORD, LPARAM)>(module.get(), "DrvPrinterEvent");
    if (tell == nullptr)
        FailWithWin32Error("finding the configuration module's entry point", file.ToUtf8(), GetLastError());
    std::vector<WCHAR> printerName = Terminated(DescribePrinter(printer, name).name);
    SetLastError(ERROR_SUCCESS);
    if (!tell(printerName.data(), PRINTER_EVENT_CACHE_REFRESH, PRINTER_EVENT_FLAG_NO_UI, 0))
        FailWithWin32Error(kFilling, name, GetLastError());
}

void ForgetCapabilityCaches(const std::string& name) noexcept
{
    try
    {
        const HKEY hive = TavlenUtilities::GetRegistryHiveByContext();
        const DataCache::Lock lock(hive);
        DataCache::RemovePrinter(CXString::FromUtf8(name), hive);
    }
    catch (const std::exception&)
    {
    }
}
