#include "tests/tvcore/installedmodel.h"

#include <windows.h>

#include <winspool.h>

#include <gtest/gtest.h>

#include <fstream>
#include <system_error>

#include <tvutil/cxstring.h>

#include "utilitiesstaticlib/wideliteral.h"

namespace
{

WCHAR g_environment[] = W("Windows x64");
WCHAR g_driverName[] = W("Tavlen core test driver");
WCHAR g_printerName[] = W("Tavlen core test printer");
WCHAR g_port[] = W("FILE:");
WCHAR g_processor[] = W("winprint");
WCHAR g_dataType[] = W("RAW");

WideString WriteFile(const std::filesystem::path& path, const std::string& text)
{
    std::ofstream(path, std::ios::binary) << text;
    return WideString(CXString::FromUtf8(path.string()).View());
}

} // namespace

InstalledModel::InstalledModel(const std::string& modelText)
    : m_folder(std::filesystem::temp_directory_path() / ("tvcore-tests-" + std::to_string(GetCurrentProcessId()))),
      m_fileName("tvcoretests.json")
{
    std::filesystem::create_directories(m_folder);
    SetEnvironmentVariableW(W("TVPT_STORE"), CXString::FromUtf8((m_folder / "store").string()).c_str());
    WriteFile(m_folder / m_fileName, modelText);
    InstallDriver();
    AddThePrinter();
}

void InstalledModel::InstallDriver()
{
    WideString driverFile = WriteFile(m_folder / "tvcoretestdriver.dll", "no code");
    WideString configFile = WriteFile(m_folder / "tvcoretestconfig.dll", "no code");
    WideString dataFile = WideString(CXString::FromUtf8((m_folder / m_fileName).string()).View());
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

void InstalledModel::AddThePrinter()
{
    PRINTER_INFO_2W printer = {};
    printer.pPrinterName = g_printerName;
    printer.pPortName = g_port;
    printer.pDriverName = g_driverName;
    printer.pPrintProcessor = g_processor;
    printer.pDatatype = g_dataType;
    m_printer = AddPrinterW(nullptr, 2, reinterpret_cast<BYTE*>(&printer));
    EXPECT_NE(nullptr, m_printer) << GetLastError();
}

InstalledModel::~InstalledModel()
{
    EXPECT_TRUE(DeletePrinter(m_printer)) << GetLastError();
    ClosePrinter(m_printer);
    EXPECT_TRUE(DeletePrinterDriverExW(nullptr, g_environment, g_driverName, 0, 0)) << GetLastError();
    std::error_code ignored;
    std::filesystem::remove_all(m_folder, ignored);
}

HANDLE InstalledModel::Handle() const noexcept
{
    return m_printer;
}

const std::string& InstalledModel::FileName() const noexcept
{
    return m_fileName;
}
