#include "tests/common/testprinter.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdio>
#include <filesystem>
#include <fstream>

#include "utilitiesstaticlib/wideliteral.h"

namespace
{

WCHAR g_environment[] = W("Windows x64");
WCHAR g_driverName[] = W("Tavlen test driver");
WCHAR g_printerName[] = W("Tavlen test printer");
WCHAR g_port[] = W("FILE:");
WCHAR g_processor[] = W("winprint");
WCHAR g_dataType[] = W("RAW");
WCHAR g_dataKey[] = W("PrinterDriverData");

std::filesystem::path ScratchFolder()
{
    const std::filesystem::path folder = std::filesystem::temp_directory_path() / "tavlen-test-printer";
    std::filesystem::create_directories(folder);
    return folder;
}

WideString DriverFile(const char* name)
{
    const std::filesystem::path path = ScratchFolder() / name;
    std::ofstream(path) << "a driver file of the tests\n";
    return WideString(CXString::FromUtf8(path.string()).View());
}

void InstallDriver()
{
    WideString driverFile = DriverFile("tvtestdriver.dll");
    WideString dataFile = DriverFile("tvtestdata.json");
    WideString configFile = DriverFile("tvtestconfig.dll");
    DRIVER_INFO_3W driver = {};
    driver.cVersion = 3;
    driver.pName = g_driverName;
    driver.pEnvironment = g_environment;
    driver.pDriverPath = driverFile.data();
    driver.pDataFile = dataFile.data();
    driver.pConfigFile = configFile.data();
    driver.pDefaultDataType = g_dataType;
    EXPECT_TRUE(
        AddPrinterDriverExW(nullptr, 3, reinterpret_cast<BYTE*>(&driver), APD_COPY_ALL_FILES | APD_COPY_FROM_DIRECTORY))
        << GetLastError();
}

std::array<BYTE, 8> LittleEndian(ULONGLONG value)
{
    std::array<BYTE, 8> bytes = {};
    for (std::size_t at = 0; at < bytes.size(); ++at)
        bytes[at] = static_cast<BYTE>(value >> (8 * at));
    return bytes;
}

} // namespace

TestPrinter::TestPrinter(std::optional<ULONGLONG> capabilityWord)
{
    SetEnvironmentVariableW(W("TVPT_STORE"), CXString::FromUtf8((ScratchFolder() / "store").string()).c_str());
    InstallDriver();
    PRINTER_INFO_2W printer = {};
    printer.pPrinterName = g_printerName;
    printer.pPortName = g_port;
    printer.pDriverName = g_driverName;
    printer.pPrintProcessor = g_processor;
    printer.pDatatype = g_dataType;
    m_printer = AddPrinterW(nullptr, 2, reinterpret_cast<BYTE*>(&printer));
    EXPECT_NE(nullptr, m_printer) << GetLastError();
    if (!capabilityWord)
        return;
    std::array<BYTE, 8> bytes = LittleEndian(*capabilityWord);
    WCHAR valueName[] = W("XDriverCapability");
    EXPECT_EQ(ERROR_SUCCESS, SetPrinterDataExW(m_printer, g_dataKey, valueName, REG_BINARY, bytes.data(),
                                               static_cast<DWORD>(bytes.size())));
}

TestPrinter::~TestPrinter()
{
    EXPECT_TRUE(DeletePrinter(m_printer)) << GetLastError();
    ClosePrinter(m_printer);
    EXPECT_TRUE(DeletePrinterDriverExW(nullptr, g_environment, g_driverName, 0, 0)) << GetLastError();
}

HANDLE TestPrinter::Handle() const noexcept
{
    return m_printer;
}
