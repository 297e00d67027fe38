#include "spooler/drivermodule.h"

#include <sys/stat.h>
#include <winbase.h>
#include <winddiui.h>

#include <bit>
#include <filesystem>
#include <mutex>

#include "core/existingfile.h"
#include "core/utf.h"
#include "spooler/driverrow.h"
#include "spooler/printerrow.h"

namespace winport::spooler
{

namespace
{

// What DrvDocumentPropertySheets gets; the layout is the platform's.
struct DocumentPropertyHeader
{
    WORD cbSize;
    WORD Reserved;
    HANDLE hPrinter;
    LPWSTR pszPrinterName;
    DEVMODEW* pdmIn;
    DEVMODEW* pdmOut;
    DWORD cbOut;
    DWORD fMode;
};

static_assert(sizeof(DocumentPropertyHeader) == 48);

using DeviceCapabilitiesExport = DWORD(WINAPI*)(HANDLE, LPWSTR, WORD, LPVOID, DEVMODEW*);
using DocumentPropertySheetsExport = LONG(WINAPI*)(LPVOID, LPARAM);

template <typename Export>
Export FindExport(HMODULE module, const char* name)
{
    return std::bit_cast<Export>(GetProcAddress(module, name));
}

std::filesystem::path ConfigurationFile(const PrinterHandle& handle)
{
    Store store(handle.folder);
    const Transaction transaction(store, Transaction::Kind::Read);
    const DriverRow driver = ReadDriver(store, ReadPrinter(store, handle.printer).driver);
    return DriverVersionDirectory(handle.folder) / ToUtf8(driver.configFile);
}

// What changes when a file is replaced. Of the file that is recorded, or of the sibling that the loader takes for it.
struct FileIdentity
{
    dev_t device = 0;
    ino_t inode = 0;

    bool operator==(const FileIdentity&) const = default;
};

FileIdentity IdentityOf(const std::filesystem::path& recorded)
{
    const std::filesystem::path file =
        FindExistingFile({recorded, std::filesystem::path(recorded).replace_extension(".so")});
    struct stat status = {};
    return stat(file.c_str(), &status) == 0 ? FileIdentity{status.st_dev, status.st_ino} : FileIdentity();
}

struct LastModule
{
    std::mutex mutex;
    std::filesystem::path file;
    FileIdentity identity;
    std::shared_ptr<const DriverModule> module;
};

// Never destroyed: unloading modules at the end of a process would run their code when its libraries are half gone.
LastModule& Last()
{
    static auto& last = *std::make_unique<LastModule>().release();
    return last;
}

} // namespace

std::shared_ptr<const DriverModule> DriverModule::Of(const PrinterHandle& handle)
{
    const std::filesystem::path file = ConfigurationFile(handle);
    const FileIdentity identity = IdentityOf(file);

    std::shared_ptr<const DriverModule> previous; // unloaded outside the lock
    LastModule& last = Last();
    const std::lock_guard lock(last.mutex);
    if (last.module != nullptr && last.file == file && last.identity == identity)
        return last.module;
    const HMODULE module = LoadLibraryExW(ToUtf16(file.native()).c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH);
    if (module == nullptr)
        return nullptr;
    previous = std::move(last.module);
    last.module = std::make_shared<const DriverModule>(module);
    last.file = file;
    last.identity = identity;
    return last.module;
}

DriverModule::~DriverModule()
{
    FreeLibrary(m_module);
}

int DriverModule::DeviceCapabilities(HANDLE printer, std::u16string& name, WORD capability, void* output,
                                     const DEVMODEW* devMode) const
{
    // The module's parameter is not const, though it only reads.
    const auto ask = FindExport<DeviceCapabilitiesExport>(m_module, "DrvDeviceCapabilities");
    return ask == nullptr
               ? -1
               : static_cast<int>(ask(printer, name.data(), capability, output, const_cast<DEVMODEW*>(devMode)));
}

LONG DriverModule::DocumentProperties(HANDLE printer, std::u16string& name, DEVMODEW* output, DEVMODEW* input,
                                      DWORD mode) const
{
    const auto ask = FindExport<DocumentPropertySheetsExport>(m_module, "DrvDocumentPropertySheets");
    if (ask == nullptr)
        return -1;
    DocumentPropertyHeader header{.cbSize = sizeof(DocumentPropertyHeader),
                                  .Reserved = 0,
                                  .hPrinter = printer,
                                  .pszPrinterName = name.data(),
                                  .pdmIn = nullptr,
                                  .pdmOut = nullptr,
                                  .cbOut = 0,
                                  .fMode = 0};
    // The size comes first in every case: the output buffer must have it, and is said to.
    const LONG size = ask(nullptr, reinterpret_cast<LPARAM>(&header));
    if (mode == 0 || size < 0)
        return size;
    header.pdmIn = (mode & DM_IN_BUFFER) != 0 ? input : nullptr;
    header.pdmOut = (mode & DM_OUT_BUFFER) != 0 ? output : nullptr;
    header.cbOut = header.pdmOut == nullptr ? 0 : static_cast<DWORD>(size);
    header.fMode = mode;
    return ask(nullptr, reinterpret_cast<LPARAM>(&header));
}

} // namespace winport::spooler
