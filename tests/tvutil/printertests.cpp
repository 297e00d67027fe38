// Linux only: a printer is installed into a scratch store. On Windows that would change the machine.
#include <windows.h>

#include <winspool.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <optional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <tvutil/exceptions.h>
#include <tvutil/printdriver.h>
#include <tvutil/printer.h>

#include "winport/faultinjection.h"

namespace
{

constexpr const WCHAR* kPrinterName = W("Sch\u00f6ner Drucker");
constexpr const WCHAR* kDriverName = W("Tavlen Test Driver");

LPWSTR Mutable(const WCHAR* text)
{
    return const_cast<LPWSTR>(text);
}

// A printer of a driver that has files but no code, in a store of its own.
class InstalledPrinter : public testing::Test
{
protected:
    void SetUp() override
    {
        std::string folder = (std::filesystem::temp_directory_path() / "tvutil_tests.XXXXXX").string();
        ASSERT_NE(mkdtemp(folder.data()), nullptr) << folder;
        m_folder = folder;
        setenv("TVPT_STORE", folder.c_str(), 1);
        InstallDriver();

        PRINTER_INFO_2W info{};
        info.pPrinterName = Mutable(kPrinterName);
        info.pPortName = Mutable(W("LPT1:"));
        info.pDriverName = Mutable(kDriverName);
        info.pPrintProcessor = Mutable(W("winprint"));
        info.pDatatype = Mutable(W("RAW"));
        m_handle = AddPrinterW(nullptr, 2, reinterpret_cast<LPBYTE>(&info));
        ASSERT_NE(m_handle, nullptr) << GetLastError();
    }

    void TearDown() override
    {
        if (m_handle != nullptr)
            ClosePrinter(m_handle);
        unsetenv("TVPT_STORE");
        std::error_code ignored;
        std::filesystem::remove_all(m_folder, ignored);
    }

    HANDLE m_handle = nullptr; // may change the printer

private:
    void InstallDriver()
    {
        const std::filesystem::path source = m_folder / "package";
        std::filesystem::create_directories(source);
        const auto file = [&source](const char* name)
        {
            std::ofstream(source / name) << name;
            return CXString::FromUtf8((source / name).string());
        };
        const CXString driver = file("unidrv.dll");
        const CXString data = file("tavlen.gpd");
        const CXString configuration = file("tvui_B.dll");
        const CXString help = file("tavlen.chm");
        ByteBuffer dependent;
        for (const char* const name : {"tvptpc_B.dll", "tvwftu_B.dll"})
            dependent.appendString(file(name));
        dependent.appendString(W(""));

        DRIVER_INFO_3W info{};
        info.cVersion = 3;
        info.pName = Mutable(kDriverName);
        info.pDriverPath = Mutable(driver.c_str());
        info.pDataFile = Mutable(data.c_str());
        info.pConfigFile = Mutable(configuration.c_str());
        info.pHelpFile = Mutable(help.c_str());
        info.pDependentFiles = reinterpret_cast<LPWSTR>(dependent.data());
        EXPECT_TRUE(AddPrinterDriverExW(nullptr, 3, reinterpret_cast<LPBYTE>(&info),
                                        APD_COPY_ALL_FILES | APD_COPY_FROM_DIRECTORY))
            << GetLastError();
    }

    std::filesystem::path m_folder;
};

// The message of the failure that a call throws; empty when it throws none.
template <class Failure, class Call>
std::string FailureOf(Call call)
{
    try
    {
        call();
    }
    catch (const Failure& failure)
    {
        return failure.what();
    }
    return {};
}

bool Mentions(const std::string& message, std::initializer_list<const char*> parts)
{
    for (const char* const part : parts)
        if (message.find(part) == std::string::npos)
            return false;
    return true;
}

TEST_F(InstalledPrinter, TellsItsNamesByHandleAndByName)
{
    const Printer byHandle(m_handle);
    const Printer byName{CXString(kPrinterName)};
    for (const Printer* const printer : {&byHandle, &byName})
    {
        EXPECT_EQ(printer->GetPrinterName(), kPrinterName);
        EXPECT_EQ(printer->GetPortName(), W("LPT1:"));
        EXPECT_EQ(printer->GetDriverName(), kDriverName);
    }
}

TEST_F(InstalledPrinter, FailuresNameTheOperationThePrinterAndTheError)
{
    const std::string unknown =
        FailureOf<ExceptionPrinterFailure>([]() { const Printer printer{CXString(W("none"))}; });
    EXPECT_TRUE(Mentions(unknown, {"OpenPrinterW", "\"none\"", "1801"})) << unknown;

    const Printer reader{CXString(kPrinterName)}; // its handle may not change the printer
    const std::string refused = FailureOf<ExceptionPrinterFailure>(
        [&reader]() { reader.SetPrinterDataW(W("XWorkflowDLL"), REG_DWORD, "1234", 4); });
    EXPECT_TRUE(Mentions(refused, {"writing the printer data \"XWorkflowDLL\"", "Sch\xC3\xB6ner Drucker", "error 5"}))
        << refused;

    for (HANDLE const handle : {HANDLE{nullptr}, INVALID_HANDLE_VALUE})
        EXPECT_EQ(FailureOf<ExceptionPrinterFailure>([handle]() { static_cast<void>(Printer(handle).GetPortName()); }),
                  "no printer is bound");
}

TEST_F(InstalledPrinter, KeepsPrinterDataOfEverySize)
{
    const Printer printer(m_handle);
    DWORD type = 77;
    ByteBuffer data("before", 6);
    EXPECT_FALSE(printer.GetPrinterDataW(W("Absent"), type, data));
    EXPECT_EQ(type, 77u);
    EXPECT_EQ(data, ByteBuffer("before", 6)) << "an absent value changes nothing";

    for (const std::size_t size : {0u, 1u, 8u, 5000u})
    {
        ByteBuffer written(size);
        for (std::size_t index = 0; index < size; ++index)
            written.data()[index] = static_cast<BYTE>(index);
        printer.SetPrinterDataW(W("Value"), REG_BINARY, written.data(), static_cast<DWORD>(size));
        ASSERT_TRUE(printer.GetPrinterDataW(W("Value"), type, data)) << size;
        EXPECT_EQ(type, REG_BINARY);
        EXPECT_EQ(data, written);
    }
}

TEST_F(InstalledPrinter, OwnedHandlesAreClosedOnceAndOthersNever)
{
    const auto isOpen = [](HANDLE handle)
    {
        DWORD needed = 0;
        return GetPrinterW(handle, 4, nullptr, 0, &needed) || GetLastError() == ERROR_INSUFFICIENT_BUFFER;
    };
    HANDLE owned = nullptr;
    ASSERT_TRUE(OpenPrinterW(Mutable(kPrinterName), &owned, nullptr));
    {
        Printer printer;
        printer.SetPrinterHandle(owned, true);
        printer.SetPrinterHandle(owned, true); // the same again
        EXPECT_TRUE(isOpen(owned));
        printer.SetPrinterHandle(m_handle, false);
        EXPECT_FALSE(isOpen(owned));
    }
    EXPECT_TRUE(isOpen(m_handle));
}

TEST_F(InstalledPrinter, AnswersTheCapabilityWordMasked)
{
    const PrintDriver driver;
    const auto capability = [&]()
    {
        return driver.GetDriverCapability(m_handle, ~0ull);
    };
    EXPECT_TRUE(Mentions(FailureOf<ExceptionPrintDriverFailure>(capability), {"set-up has not run"}));

    const Printer printer(m_handle);
    constexpr BYTE kWord[] = {0x02, 0x0E, 0, 0, 0, 0, 0, 0x80, 0xFF};
    printer.SetPrinterDataW(PrintDriver::kDriverCapabilityValueName, REG_BINARY, kWord, 8);
    struct Case
    {
        ULONGLONG mask;
        ULONGLONG bits;
    };
    constexpr Case kCases[] = {
        {1984, 0x600}, {15, 2}, {0x1800, 0x800}, {~0ull, 0x8000000000000E02}, {0, 0},
    };
    for (const Case& test : kCases)
        EXPECT_EQ(driver.GetDriverCapability(m_handle, test.mask), test.bits) << test.mask;

    struct Wrong
    {
        DWORD type;
        DWORD size;
    };
    constexpr Wrong kWrong[] = {{REG_BINARY, 7}, {REG_BINARY, 9}, {REG_DWORD, 4}, {REG_QWORD, 8}};
    for (const Wrong& test : kWrong)
    {
        printer.SetPrinterDataW(PrintDriver::kDriverCapabilityValueName, test.type, kWord, test.size);
        EXPECT_TRUE(Mentions(FailureOf<ExceptionPrintDriverFailure>(capability), {"of another kind"}))
            << test.type << ", " << test.size << " bytes";
    }
    EXPECT_THROW(static_cast<void>(driver.GetDriverCapability(nullptr, 1)), ExceptionPrintDriverFailure);
}

TEST_F(InstalledPrinter, ListsEveryFileOfItsDriver)
{
    const PrintDriver driver;
    const char* const names[] = {"unidrv.dll", "tavlen.gpd",   "tvui_B.dll",
                                 "tavlen.chm", "tvptpc_B.dll", "tvwftu_B.dll"};
    for (const DWORD level : {3u, 6u, 9u})
    {
        const std::vector<CXString> files = driver.GetDriverFiles(m_handle, level, CXString());
        ASSERT_EQ(files.size(), std::size(names)) << "level " << level;
        for (std::size_t index = 0; index < files.size(); ++index)
            EXPECT_TRUE(Mentions(files[index].ToUtf8(), {names[index]})) << files[index].ToUtf8();
    }
    EXPECT_EQ(driver.GetDriverFiles(m_handle, 9, W("Windows x64")).size(), std::size(names));
    EXPECT_THROW(static_cast<void>(driver.GetDriverFiles(m_handle, 2, CXString())), ExceptionPrintDriverFailure);
    EXPECT_THROW(static_cast<void>(driver.GetDriverFiles(nullptr, 9, CXString())), ExceptionPrintDriverFailure);
    EXPECT_THROW(static_cast<void>(driver.GetDriverFiles(m_handle, 9, W("Windows 4.0"))), ExceptionPrintDriverFailure);
}

// Whichever spooler call fails, the answer is a failure of the family, and the next question is answered. Closing is a
// call too: its failure has nobody to tell.
TEST_F(InstalledPrinter, EveryFailingSpoolerCallIsAFailureAndNothingMore)
{
    const Printer printer(m_handle);
    printer.SetPrinterDataW(W("Value"), REG_DWORD, "1234", 4);
    unsigned failures = 0;
    for (unsigned nth = 1;; ++nth)
    {
        winport::ArmFault(winport::FaultKind::PlatformCall, nth);
        const std::string failure = FailureOf<ExceptionPrinterFailure>(
            [&printer]()
            {
                EXPECT_EQ(Printer(CXString(kPrinterName)).GetDriverName(), kDriverName);
                DWORD type = 0;
                ByteBuffer data;
                EXPECT_TRUE(printer.GetPrinterDataW(W("Value"), type, data));
            });
        const bool fired = winport::DisarmFault(winport::FaultKind::PlatformCall);
        EXPECT_TRUE(failure.empty() || (fired && Mentions(failure, {"Win32 error"}))) << nth << ": " << failure;
        if (!fired)
            break;
        failures += failure.empty() ? 0u : 1u;
    }
    EXPECT_EQ(failures, 5u) << "open, the driver's name twice, the value twice";
}

} // namespace
