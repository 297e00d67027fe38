// Adding and deleting drivers.
#include <winspool.h>

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstring>

#include "core/utf.h"
#include "spooler/driverfiles.h"
#include "spooler/driverrow.h"
#include "spooler/names.h"
#include "spooler/win32error.h"

namespace winport::spooler
{

namespace
{

namespace fs = std::filesystem;

constexpr DWORD kHowToCopy = APD_STRICT_UPGRADE | APD_STRICT_DOWNGRADE | APD_COPY_ALL_FILES | APD_COPY_NEW_FILES;

// Each level begins with the fields of those below it, so one of them can be read as the largest with the rest empty.
DRIVER_INFO_6W AsLevel6(DWORD level, const BYTE* info)
{
    DRIVER_INFO_6W driver = {};
    switch (level)
    {
    case 2:
        std::memcpy(&driver, info, sizeof(DRIVER_INFO_2W));
        break;
    case 3:
        std::memcpy(&driver, info, sizeof(DRIVER_INFO_3W));
        break;
    case 4:
        std::memcpy(&driver, info, sizeof(DRIVER_INFO_4W));
        break;
    case 6:
        std::memcpy(&driver, info, sizeof(DRIVER_INFO_6W));
        break;
    default:
        throw Win32Error(ERROR_INVALID_LEVEL);
    }
    return driver;
}

static_assert(offsetof(DRIVER_INFO_6W, pHelpFile) == sizeof(DRIVER_INFO_2W));
static_assert(offsetof(DRIVER_INFO_6W, pszzPreviousNames) == sizeof(DRIVER_INFO_3W));
static_assert(offsetof(DRIVER_INFO_6W, ftDriverDate) == sizeof(DRIVER_INFO_4W));

// Where the caller's files are, and how they get into the driver directory.
class Package
{
public:
    Package(const fs::path& storeFolder, DWORD flags)
        : m_storeFolder(storeFolder),
          m_fromCallersFolders((flags & APD_COPY_FROM_DIRECTORY) != 0),
          m_onlyNewer((flags & APD_COPY_NEW_FILES) != 0),
          m_copy(DriverVersionDirectory(storeFolder))
    {
    }

    // The name under which the file is recorded: the caller's, without its folder.
    std::u16string Take(std::u16string_view named)
    {
        std::string text;
        Require(ToUtf8Strict(named, text), ERROR_INVALID_PARAMETER);
        const fs::path file(text);
        Require(file.has_filename() && file.filename() != "." && file.filename() != "..", ERROR_INVALID_PARAMETER);
        m_copy.Stage(file, Source(file), m_onlyNewer);
        return ToUtf16(file.filename().native());
    }

    DriverFileCopy& Files()
    {
        return m_copy;
    }

private:
    // Without APD_COPY_FROM_DIRECTORY an installer has put the files into the driver directory, whatever folder their
    // names have.
    fs::path Source(const fs::path& file) const
    {
        if (m_fromCallersFolders && file.has_parent_path())
            return ExistingFile(file);
        try
        {
            return ExistingFile(DriverDirectory(m_storeFolder) / file.filename());
        }
        catch (const Win32Error&)
        {
            return ExistingFile(DriverVersionDirectory(m_storeFolder) / file.filename());
        }
    }

    fs::path m_storeFolder;
    bool m_fromCallersFolders;
    bool m_onlyNewer;
    DriverFileCopy m_copy;
};

void RequireAddable(const DRIVER_INFO_6W& driver, DWORD flags)
{
    RequireOwnEnvironment(driver.pEnvironment);
    for (const LPWSTR text : {driver.pName, driver.pDriverPath, driver.pDataFile, driver.pConfigFile})
        Require(!ViewOf(text).empty(), ERROR_INVALID_PARAMETER);
    Require(driver.cVersion == kDriverVersion, ERROR_INVALID_PARAMETER);
    Require(std::has_single_bit(flags & kHowToCopy), ERROR_INVALID_PARAMETER);
    Require((flags & (APD_STRICT_UPGRADE | APD_STRICT_DOWNGRADE)) == 0, ERROR_NOT_SUPPORTED);
}

DriverRow TakePackage(const DRIVER_INFO_6W& info, Package& package)
{
    DriverRow driver;
    driver.name = ViewOf(info.pName);
    driver.version = info.cVersion;
    driver.driverFile = package.Take(ViewOf(info.pDriverPath));
    driver.dataFile = package.Take(ViewOf(info.pDataFile));
    driver.configFile = package.Take(ViewOf(info.pConfigFile));
    if (!ViewOf(info.pHelpFile).empty())
        driver.helpFile = package.Take(ViewOf(info.pHelpFile));
    for (const std::u16string& file : ListOf(info.pDependentFiles))
        driver.dependentFiles.push_back(package.Take(file));
    driver.monitor = ViewOf(info.pMonitorName);
    driver.datatype = ViewOf(info.pDefaultDataType);
    driver.previousNames = ListOf(info.pszzPreviousNames);
    driver.date = std::uint64_t{info.ftDriverDate.dwHighDateTime} << 32 | info.ftDriverDate.dwLowDateTime;
    driver.driverVersion = info.dwlDriverVersion;
    driver.manufacturer = ViewOf(info.pszMfgName);
    driver.url = ViewOf(info.pszOEMUrl);
    driver.hardwareId = ViewOf(info.pszHardwareID);
    driver.provider = ViewOf(info.pszProvider);
    return driver;
}

bool IsInUse(Store& store, std::int64_t driver)
{
    return store.Prepare("SELECT 1 FROM printers WHERE driver = ?").Bind(driver).Step();
}

// Those of the files that no driver names.
std::vector<std::u16string> UnusedFiles(Store& store, std::vector<std::u16string> files)
{
    for (const DriverRow& driver : ReadDrivers(store))
    {
        for (const std::u16string& used : driver.Files())
            std::erase_if(files, [&used](const std::u16string& file) { return EqualIgnoringCase(file, used); });
    }
    return files;
}

// The driver's files that are to be removed, if nobody else names them, now that its row is gone.
std::vector<std::u16string> DeleteRow(Store& store, std::u16string_view name, DWORD flags)
{
    Transaction transaction(store, Transaction::Kind::Write);
    const std::optional<std::int64_t> found = FindDriver(store, name);
    Require(found.has_value(), ERROR_UNKNOWN_PRINTER_DRIVER);
    Require(!IsInUse(store, *found), ERROR_PRINTER_DRIVER_IN_USE);

    const DriverRow driver = ReadDriver(store, *found);
    store.Prepare("DELETE FROM drivers WHERE id = ?").Bind(*found).Execute();
    if ((flags & DPD_DELETE_ALL_FILES) != 0)
        Require(UnusedFiles(store, driver.Files()).size() == driver.Files().size(), ERROR_PRINTER_DRIVER_IN_USE);
    transaction.Commit();
    return (flags & (DPD_DELETE_UNUSED_FILES | DPD_DELETE_ALL_FILES)) != 0 ? driver.Files()
                                                                           : std::vector<std::u16string>();
}

// Under the write lock, as the copying is: no other process can add a driver that wants one of the files meanwhile. A
// transaction of its own, since a file cannot come back when the deletion of the row fails.
void RemoveUnusedFiles(Store& store, const fs::path& folder, const std::vector<std::u16string>& files) noexcept
{
    try
    {
        if (files.empty())
            return;
        const Transaction transaction(store, Transaction::Kind::Write);
        for (const std::u16string& file : UnusedFiles(store, files))
        {
            std::error_code ignored;
            fs::remove(ExistingFile(folder / ToUtf8(file)), ignored);
        }
    }
    catch (...)
    {
        // The driver is gone; a file that stays does no harm.
    }
}

} // namespace

} // namespace winport::spooler

using namespace winport::spooler;

BOOL WINAPI AddPrinterDriverExW(LPWSTR server, DWORD level, LPBYTE info, DWORD fileCopyFlags)
{
    return Succeeds(
        [&]
        {
            RequireLocalServer(server);
            Require(info != nullptr, ERROR_INVALID_PARAMETER);
            const DRIVER_INFO_6W given = AsLevel6(level, info);
            RequireAddable(given, fileCopyFlags);

            const fs::path folder = StoreFolder();
            Store store(folder);
            Package package(folder, fileCopyFlags);
            const DriverRow driver = TakePackage(given, package);
            Transaction transaction(store, Transaction::Kind::Write);
            WriteDriver(store, driver);
            package.Files().PutInPlace();
            transaction.Commit();
            package.Files().Keep();
        });
}

BOOL WINAPI DeletePrinterDriverExW(LPWSTR server, LPWSTR environment, LPWSTR driverName, DWORD deleteFlag,
                                   DWORD versionFlag)
{
    return Succeeds(
        [&]
        {
            constexpr DWORD known = DPD_DELETE_UNUSED_FILES | DPD_DELETE_SPECIFIC_VERSION | DPD_DELETE_ALL_FILES;
            RequireLocalServer(server);
            RequireOwnEnvironment(environment);
            Require(!ViewOf(driverName).empty() && (deleteFlag & ~known) == 0, ERROR_INVALID_PARAMETER);
            Require((deleteFlag & DPD_DELETE_SPECIFIC_VERSION) == 0 || versionFlag == kDriverVersion,
                    ERROR_UNKNOWN_PRINTER_DRIVER);

            const fs::path folder = StoreFolder();
            Store store(folder);
            const std::vector<std::u16string> files = DeleteRow(store, ViewOf(driverName), deleteFlag);
            RemoveUnusedFiles(store, DriverVersionDirectory(folder), files);
        });
}
