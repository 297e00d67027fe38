#include "tests/platform/spoolerfixture.h"

#include <algorithm>
#include <fstream>
#include <string>

namespace spoolertests
{

namespace
{

WideString FileName(const std::filesystem::path& path)
{
    return path.string<WCHAR>();
}

std::filesystem::path ProgramFolder()
{
    WCHAR path[4096] = {};
    return std::filesystem::path(WideString(path, GetModuleFileNameW(nullptr, path, 4096))).parent_path();
}

} // namespace

PRINTER_INFO_2W PrinterInfo(const WCHAR* name)
{
    PRINTER_INFO_2W info = {};
    info.pPrinterName = Mutable(name);
    info.pPortName = Mutable(W("FILE:"));
    info.pDriverName = Mutable(kDriver);
    info.pPrintProcessor = Mutable(W("winprint"));
    info.pDatatype = Mutable(W("RAW"));
    info.pComment = Mutable(W("a comment"));
    info.pLocation = Mutable(W("room 1"));
    info.Attributes = PRINTER_ATTRIBUTE_LOCAL;
    return info;
}

PrinterOwner Open(const WCHAR* name, ACCESS_MASK access)
{
    PRINTER_DEFAULTSW defaults = {nullptr, nullptr, access};
    HANDLE printer = nullptr;
    return PrinterOwner(OpenPrinterW(Mutable(name), &printer, &defaults) ? printer : nullptr);
}

std::vector<WideString> PrinterNames()
{
    const Answer<PRINTER_INFO_4W> printers(
        [](LPBYTE bytes, DWORD size, LPDWORD needed, LPDWORD count)
        { return EnumPrintersW(PRINTER_ENUM_LOCAL, nullptr, 4, bytes, size, needed, count); });
    std::vector<WideString> names;
    for (DWORD index = 0; printers.IsGood() && index < printers.Count(); ++index)
        names.emplace_back(printers[index].pPrinterName);
    std::sort(names.begin(), names.end());
    return names;
}

void SpoolerTest::SetUp()
{
    m_scratch = std::filesystem::temp_directory_path() / ("tavlen-spooler-" + std::to_string(GetCurrentProcessId()));
    std::filesystem::remove_all(m_scratch);
    std::filesystem::create_directories(m_scratch);
    SetEnvironmentVariableW(W("TVPT_STORE"), FileName(Store()).c_str());
    ASSERT_TRUE(InstallDriver()) << GetLastError();
}

void SpoolerTest::TearDown()
{
    for (const WideString& name : m_printers)
    {
        const PrinterOwner printer = Open(name.c_str(), PRINTER_ALL_ACCESS);
        EXPECT_TRUE(printer == nullptr || DeletePrinter(printer.get())) << GetLastError();
    }
    // Wine knows no flags. Some tests have deleted the driver themselves.
    if (!DeletePrinterDriverExW(nullptr, Mutable(kEnvironment), Mutable(kDriver), DPD_DELETE_UNUSED_FILES, 0))
        DeletePrinterDriverExW(nullptr, Mutable(kEnvironment), Mutable(kDriver), 0, 0);
    SetEnvironmentVariableW(W("TVPT_STORE"), nullptr);
    std::error_code ignored;
    std::filesystem::remove_all(m_scratch, ignored);
}

WideString SpoolerTest::SourceFile(const char* name, const char* content) const
{
    const std::filesystem::path path = m_scratch / name;
    std::ofstream(path) << content;
    return FileName(path);
}

BOOL SpoolerTest::InstallDriver(const WCHAR* name, const WCHAR* dataFile, DWORD flags) const
{
    const WideString driverFile = SourceFile("tvplatform.drv", "the driver");
    const WideString model = SourceFile("tvplatform.json", "the model");
    const WideString configFile = FileName(ProgramFolder() / "spooler_sample.dll");
    WideString dependent = SourceFile("tvone.txt", "one");
    dependent.push_back(0);
    dependent.append(SourceFile("tvtwo.txt", "two")).push_back(0);
    DRIVER_INFO_3W info = {};
    info.cVersion = 3;
    info.pName = Mutable(name);
    info.pEnvironment = Mutable(kEnvironment);
    info.pDriverPath = Mutable(driverFile.c_str());
    info.pDataFile = Mutable(dataFile != nullptr ? dataFile : model.c_str());
    info.pConfigFile = Mutable(configFile.c_str());
    info.pDependentFiles = dependent.data();
    info.pDefaultDataType = Mutable(W("RAW"));
    return AddPrinterDriverExW(nullptr, 3, reinterpret_cast<BYTE*>(&info), flags);
}

PrinterOwner SpoolerTest::InstallPrinter(const WCHAR* name)
{
    PRINTER_INFO_2W info = PrinterInfo(name);
    PrinterOwner printer(AddPrinterW(nullptr, 2, reinterpret_cast<BYTE*>(&info)));
    EXPECT_NE(printer, nullptr) << GetLastError();
    m_printers.emplace_back(name);
    return printer;
}

} // namespace spoolertests
