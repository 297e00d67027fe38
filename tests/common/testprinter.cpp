#include "tests/common/testprinter.h"
#include "tests/common/testfolders.h"

#include <gtest/gtest.h>

#include <array>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>
#include <system_error>

#include "utilitiesstaticlib/wideliteral.h"

namespace
{

WCHAR g_environment[] = W("Windows x64");
WCHAR g_port[] = W("FILE:");
WCHAR g_processor[] = W("winprint");
WCHAR g_dataType[] = W("RAW");
WCHAR g_dataKey[] = W("PrinterDriverData");
WCHAR g_capability[] = W("XDriverCapability");
constexpr const WCHAR* kStoreVariable = W("TVPT_STORE");

std::string OwnName(const char* name)
{
    return name + std::to_string(GetCurrentProcessId());
}

// A terminated copy: the spooler's structures take pointers to non-const text.
WideString Wide(const std::string& text)
{
    return WideString(CXString::FromUtf8(text).View());
}

WideString DummyFile(const std::filesystem::path& folder, const std::string& name,
                     const std::string& content = "a driver file of the tests\n")
{
    const std::filesystem::path path = folder / name;
    std::ofstream(path, std::ios::binary) << content;
    return Wide(path.string());
}

void Require(bool done, const char* what)
{
    const DWORD error = GetLastError();
    if (!done)
        throw std::runtime_error(std::string(what) + ": " + std::to_string(error));
}

WideString DriverFile(const std::filesystem::path& folder, const char* name)
{
    return DummyFile(folder, OwnName(name) + ".dll");
}

// The drivers of a machine share one folder: each process brings the model under a name of its own.
WideString DataFile(const std::filesystem::path& folder, const TestPrinter::SetUp& setUp)
{
    if (setUp.model.empty() && setUp.dataText.empty())
        return DriverFile(folder, "tvtestdata");
    std::ifstream model(ModelsFolder() / setUp.model, std::ios::binary);
    const std::string text =
        setUp.dataText.empty() ? std::string(std::istreambuf_iterator<char>(model), {}) : setUp.dataText;
    return DummyFile(folder, OwnName("tvtestmodel") + ".json", text);
}

WideString ConfigurationFile(const std::filesystem::path& folder, const std::string& module)
{
    if (module.empty())
        return DriverFile(folder, "tvtestconfig");
    return Wide(std::filesystem::absolute(BinaryFolder() / module).string());
}

WideString DependentFiles(const std::filesystem::path& folder, const std::vector<std::string>& names)
{
    WideString files;
    for (const std::string& name : names)
        files += DummyFile(folder, name) + WCHAR();
    return files + WCHAR();
}

void InstallDriver(const std::filesystem::path& folder, const TestPrinter::SetUp& setUp)
{
    WideString name(TestPrinter::DriverName().View());
    WideString driverFile = DriverFile(folder, "tvtestdriver");
    WideString dataFile = DataFile(folder, setUp);
    WideString configFile = ConfigurationFile(folder, setUp.configurationModule);
    WideString helpFile = DriverFile(folder, "tvtesthelp");
    DRIVER_INFO_3W driver = {};
    driver.cVersion = 3;
    driver.pName = name.data();
    driver.pEnvironment = g_environment;
    driver.pDriverPath = driverFile.data();
    driver.pDataFile = dataFile.data();
    driver.pConfigFile = configFile.data();
    driver.pHelpFile = helpFile.data();
    WideString dependentFiles = DependentFiles(folder, setUp.dependentFiles);
    driver.pDependentFiles = setUp.dependentFiles.empty() ? nullptr : dependentFiles.data();
    driver.pDefaultDataType = g_dataType;
    Require(AddPrinterDriverExW(nullptr, 3, reinterpret_cast<BYTE*>(&driver),
                                APD_COPY_ALL_FILES | APD_COPY_FROM_DIRECTORY) != FALSE,
            "AddPrinterDriverExW");
}

HANDLE AddTestPrinter()
{
    WideString name(TestPrinter::Name().View());
    WideString driver(TestPrinter::DriverName().View());
    PRINTER_INFO_2W printer = {};
    printer.pPrinterName = name.data();
    printer.pPortName = g_port;
    printer.pDriverName = driver.data();
    printer.pPrintProcessor = g_processor;
    printer.pDatatype = g_dataType;
    HANDLE const added = AddPrinterW(nullptr, 2, reinterpret_cast<BYTE*>(&printer));
    Require(added != nullptr, "AddPrinterW");
    return added;
}

CXString StoreVariable()
{
    std::array<WCHAR, 1024> value = {};
    const DWORD length = GetEnvironmentVariableW(kStoreVariable, value.data(), static_cast<DWORD>(value.size()));
    return WStringView(value.data(), length < value.size() ? length : 0);
}

} // namespace

TestPrinter::TestPrinter(std::optional<ULONGLONG> capabilityWord) : TestPrinter(SetUp{capabilityWord, {}, {}, {}})
{
}

TestPrinter::TestPrinter(const SetUp& setUp)
    : m_folder(std::filesystem::temp_directory_path() / OwnName("tavlen-test-printer-")),
      m_previousStore(StoreVariable())
{
    std::filesystem::create_directories(m_folder);
    SetEnvironmentVariableW(kStoreVariable, CXString::FromUtf8((m_folder / "store").string()).c_str());
    InstallDriver(m_folder, setUp);
    m_printer = AddTestPrinter();
    if (!setUp.capabilityWord)
        return;
    ULONGLONG word = *setUp.capabilityWord; // little-endian, as this machine is
    EXPECT_EQ(ERROR_SUCCESS, SetPrinterDataExW(m_printer, g_dataKey, g_capability, REG_BINARY,
                                               reinterpret_cast<BYTE*>(&word), sizeof(word)));
}

TestPrinter::~TestPrinter()
{
    WideString driver(TestPrinter::DriverName().View());
    EXPECT_TRUE(DeletePrinter(m_printer)) << GetLastError();
    ClosePrinter(m_printer);
    EXPECT_TRUE(DeletePrinterDriverExW(nullptr, g_environment, driver.data(), 0, 0)) << GetLastError();
    SetEnvironmentVariableW(kStoreVariable, m_previousStore.IsEmpty() ? nullptr : m_previousStore.c_str());
    std::error_code ignored; // a module of the folder may still be open
    std::filesystem::remove_all(m_folder, ignored);
}

HANDLE TestPrinter::Handle() const noexcept
{
    return m_printer;
}

CXString TestPrinter::Name()
{
    return CXString::FromUtf8(OwnName("Tavlen t\xC3\xA9st printer "));
}

CXString TestPrinter::DriverName()
{
    return CXString::FromUtf8(OwnName("Tavlen test driver "));
}
