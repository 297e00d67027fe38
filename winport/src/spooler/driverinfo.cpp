// What drivers answer about themselves.
#include <winspool.h>

#include "core/utf.h"
#include "spooler/bufferwriter.h"
#include "spooler/driverrow.h"
#include "spooler/fileerror.h"
#include "spooler/names.h"
#include "spooler/printerhandle.h"
#include "spooler/printerrow.h"
#include "spooler/win32error.h"

namespace winport::spooler
{

namespace
{

// Makes the records of one driver directory: each larger level fills the smaller one's fields first.
class DriverRecords
{
public:
    explicit DriverRecords(const std::filesystem::path& storeFolder)
        : m_folder(ToUtf16(DriverVersionDirectory(storeFolder).native()) + u'/')
    {
    }

    void Fill(DRIVER_INFO_1W& info, const DriverRow& driver, BufferWriter& writer) const
    {
        info.pName = writer.Text(driver.name);
    }

    template <typename Record>
    void FillLevel2(Record& info, const DriverRow& driver, BufferWriter& writer) const
    {
        info.cVersion = driver.version;
        info.pName = writer.Text(driver.name);
        info.pEnvironment = writer.Text(kEnvironment);
        info.pDriverPath = writer.Text(m_folder + driver.driverFile);
        info.pDataFile = writer.Text(m_folder + driver.dataFile);
        info.pConfigFile = writer.Text(m_folder + driver.configFile);
    }

    template <typename Record>
    void FillLevel3(Record& info, const DriverRow& driver, BufferWriter& writer) const
    {
        FillLevel2(info, driver, writer);
        info.pHelpFile = driver.helpFile.empty() ? nullptr : writer.Text(m_folder + driver.helpFile);
        info.pDependentFiles = DependentFiles(driver, writer);
        info.pMonitorName = writer.Text(driver.monitor);
        info.pDefaultDataType = writer.Text(driver.datatype);
    }

    template <typename Record>
    void FillLevel4(Record& info, const DriverRow& driver, BufferWriter& writer) const
    {
        FillLevel3(info, driver, writer);
        info.pszzPreviousNames = driver.previousNames.empty() ? nullptr : PutList(driver.previousNames, writer);
    }

    void Fill(DRIVER_INFO_2W& info, const DriverRow& driver, BufferWriter& writer) const
    {
        FillLevel2(info, driver, writer);
    }

    void Fill(DRIVER_INFO_3W& info, const DriverRow& driver, BufferWriter& writer) const
    {
        FillLevel3(info, driver, writer);
    }

    void Fill(DRIVER_INFO_4W& info, const DriverRow& driver, BufferWriter& writer) const
    {
        FillLevel4(info, driver, writer);
    }

    void Fill(DRIVER_INFO_6W& info, const DriverRow& driver, BufferWriter& writer) const
    {
        FillLevel4(info, driver, writer);
        info.ftDriverDate = {static_cast<DWORD>(driver.date), static_cast<DWORD>(driver.date >> 32)};
        info.dwlDriverVersion = driver.driverVersion;
        info.pszMfgName = writer.Text(driver.manufacturer);
        info.pszOEMUrl = writer.Text(driver.url);
        info.pszHardwareID = writer.Text(driver.hardwareId);
        info.pszProvider = writer.Text(driver.provider);
    }

private:
    LPWSTR DependentFiles(const DriverRow& driver, BufferWriter& writer) const
    {
        if (driver.dependentFiles.empty())
            return nullptr;
        std::vector<std::u16string> paths;
        for (const std::u16string& file : driver.dependentFiles)
            paths.push_back(m_folder + file);
        return PutList(paths, writer);
    }

    static LPWSTR PutList(const std::vector<std::u16string>& list, BufferWriter& writer)
    {
        std::u16string text = MultiStringOf(list);
        text.pop_back(); // the writer puts the last terminator
        return writer.Text(text);
    }

    std::u16string m_folder;
};

template <typename Record>
void AnswerLevel(const CallerBuffer& buffer, LPDWORD returned, const DriverRecords& records,
                 const std::vector<DriverRow>& drivers)
{
    AnswerRecords<Record>(buffer, returned, ERROR_INSUFFICIENT_BUFFER, drivers,
                          [&](const DriverRow& driver, BufferWriter& writer)
                          {
                              Record info = {};
                              records.Fill(info, driver, writer);
                              return info;
                          });
}

bool IsKnownLevel(DWORD level) noexcept
{
    return (level >= 1 && level <= 4) || level == 6;
}

void AnswerDrivers(const CallerBuffer& buffer, LPDWORD returned, DWORD level, const std::filesystem::path& storeFolder,
                   const std::vector<DriverRow>& drivers)
{
    const DriverRecords records(storeFolder);
    switch (level)
    {
    case 1:
        return AnswerLevel<DRIVER_INFO_1W>(buffer, returned, records, drivers);
    case 2:
        return AnswerLevel<DRIVER_INFO_2W>(buffer, returned, records, drivers);
    case 3:
        return AnswerLevel<DRIVER_INFO_3W>(buffer, returned, records, drivers);
    case 4:
        return AnswerLevel<DRIVER_INFO_4W>(buffer, returned, records, drivers);
    default:
        return AnswerLevel<DRIVER_INFO_6W>(buffer, returned, records, drivers);
    }
}

DriverRow DriverOf(const PrinterHandle& handle)
{
    Store store(handle.folder);
    const Transaction transaction(store, Transaction::Kind::Read);
    return ReadDriver(store, ReadPrinter(store, handle.printer).driver);
}

} // namespace

} // namespace winport::spooler

using namespace winport::spooler;

BOOL WINAPI GetPrinterDriverW(HANDLE printer, LPWSTR environment, DWORD level, LPBYTE info, DWORD size, LPDWORD needed)
{
    return Succeeds(
        [&]
        {
            const auto handle = FindPrinterHandle(printer);
            const CallerBuffer buffer{info, size, needed};
            RequireUsable(buffer);
            Require(IsKnownLevel(level), ERROR_INVALID_LEVEL);
            RequireOwnEnvironment(environment);
            AnswerDrivers(buffer, nullptr, level, handle->folder, {DriverOf(*handle)});
        });
}

BOOL WINAPI EnumPrinterDriversW(LPWSTR server, LPWSTR environment, DWORD level, LPBYTE info, DWORD size, LPDWORD needed,
                                LPDWORD returned)
{
    return Succeeds(
        [&]
        {
            const CallerBuffer buffer{info, size, needed};
            RequireUsable(buffer, returned);
            RequireLocalServer(server);
            Require(IsKnownLevel(level), ERROR_INVALID_LEVEL);
            RequireOwnEnvironment(environment);
            const std::filesystem::path folder = StoreFolder();
            Store store(folder);
            const Transaction transaction(store, Transaction::Kind::Read);
            AnswerDrivers(buffer, returned, level, folder, ReadDrivers(store));
        });
}

BOOL WINAPI GetPrinterDriverDirectoryW(LPWSTR server, LPWSTR environment, DWORD level, LPBYTE directory, DWORD size,
                                       LPDWORD needed)
{
    return Succeeds(
        [&]
        {
            const CallerBuffer buffer{directory, size, needed};
            RequireUsable(buffer);
            RequireLocalServer(server);
            Require(level == 1, ERROR_INVALID_LEVEL);
            RequireOwnEnvironment(environment);
            const std::filesystem::path folder = DriverDirectory(StoreFolder());
            std::error_code error;
            std::filesystem::create_directories(folder, error); // callers copy into it
            Require(!error, Win32ErrorOfFolder(error.value()));
            const std::u16string text = winport::ToUtf16(folder.native());
            Answer(buffer, 0, ERROR_INSUFFICIENT_BUFFER, [&](BufferWriter& writer) { writer.Text(text); });
        });
}
