#include "tests/platform/spoolerfixture.h"

#include <algorithm>
#include <fstream>
#include <iterator>

PrinterOwner Open(const WCHAR* name, ACCESS_MASK access)
{
    PRINTER_DEFAULTSW defaults = {nullptr, nullptr, access};
    HANDLE printer = nullptr;
    return PrinterOwner(OpenPrinterW(Mutable(name), &printer, &defaults) ? printer : nullptr);
}

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

PrinterOwner Add(PRINTER_INFO_2W info)
{
    return PrinterOwner(AddPrinterW(nullptr, 2, reinterpret_cast<BYTE*>(&info)));
}

bool SetInfo(HANDLE printer, PRINTER_INFO_2W info)
{
    return SetPrinterW(printer, 2, reinterpret_cast<BYTE*>(&info), 0) != FALSE;
}

std::vector<WideString> PrinterNames()
{
    std::vector<WideString> names;
    for (const PRINTER_INFO_4W& printer :
         Answer<PRINTER_INFO_4W>([](LPBYTE bytes, DWORD size, LPDWORD needed, LPDWORD count)
                                 { return EnumPrintersW(PRINTER_ENUM_LOCAL, nullptr, 4, bytes, size, needed, count); }))
        names.emplace_back(printer.pPrinterName);
    std::sort(names.begin(), names.end());
    return names;
}

std::string Content(const std::filesystem::path& file)
{
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

void SpoolerTest::SetUp()
{
    std::filesystem::remove_all(Scratch());
    UseStore(Store());
    ASSERT_TRUE(InstallDriver()) << GetLastError();
}

void SpoolerTest::TearDown()
{
    UseStore(Store());
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
    std::filesystem::remove_all(Scratch(), ignored);
}

std::filesystem::path SpoolerTest::Scratch()
{
    return std::filesystem::temp_directory_path() / ("tavlen-spooler-" + std::to_string(GetCurrentProcessId()));
}

std::filesystem::path SpoolerTest::Store()
{
    return Scratch() / "store";
}

void SpoolerTest::UseStore(const std::filesystem::path& folder)
{
    SetEnvironmentVariableW(W("TVPT_STORE"), folder.string<WCHAR>().c_str());
}

WideString SpoolerTest::SourceFile(const char* name, const char* content)
{
    std::filesystem::path path = Scratch() / name;
    std::filesystem::create_directories(path.parent_path());
    std::ofstream(path) << content;
    return path.make_preferred().string<WCHAR>();
}

BOOL SpoolerTest::InstallDriver(const WCHAR* name, const WCHAR* dataFile)
{
    WCHAR program[4096] = {};
    GetModuleFileNameW(nullptr, program, 4096);
    const auto folder = std::filesystem::path(program).parent_path(); // replacing the name does not survive faults
    const WideString configFile = (folder / "spooler_sample.dll").string<WCHAR>();
    const WideString driverFile = SourceFile("tvplatform.drv", "the driver");
    const WideString model = SourceFile("tvplatform.json", "the model");
    const WideString dependent = SourceFile("tvone.txt", "one") + WCHAR() + SourceFile("tvtwo.txt", "two") + WCHAR();
    DRIVER_INFO_3W info = {};
    info.cVersion = 3;
    info.pName = Mutable(name);
    info.pEnvironment = Mutable(kEnvironment);
    info.pDriverPath = Mutable(driverFile.c_str());
    info.pDataFile = Mutable(dataFile != nullptr ? dataFile : model.c_str());
    info.pConfigFile = Mutable(configFile.c_str());
    info.pDependentFiles = Mutable(dependent.c_str());
    info.pDefaultDataType = Mutable(W("RAW"));
    return AddPrinterDriverExW(nullptr, 3, reinterpret_cast<BYTE*>(&info),
                               APD_COPY_ALL_FILES | APD_COPY_FROM_DIRECTORY);
}

PrinterOwner SpoolerTest::InstallPrinter(const WCHAR* name)
{
    PrinterOwner printer = Add(PrinterInfo(name));
    EXPECT_NE(printer, nullptr) << GetLastError();
    m_printers.emplace_back(name);
    return printer;
}
