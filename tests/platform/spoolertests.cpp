// Printers, their data and their drivers, as far as neither the host's tests nor ours of printers and forms tell.
#include "tests/platform/spoolerfixture.h"
#include "tests/platform/wine.h"

namespace
{

namespace fs = std::filesystem;

using Spooler = SpoolerTest;

const WCHAR* const kSecond = W("Tavlen Platform Second");

DWORD DeleteDriver(const WCHAR* name, DWORD flags = 0)
{
    return ErrorOf(DeletePrinterDriverExW(nullptr, Mutable(kEnvironment), Mutable(name), flags, 0));
}

} // namespace

// Every function finds out what is no handle (null, noise, and one that is closed) and what is no level.
TEST_F(Spooler, PrintersAreNotReachedThroughWhatIsNoHandleOrNoLevel)
{
    BYTE room[4096] = {};
    DWORD needed = 0;
    using Errors = std::vector<DWORD>;
    const auto leveled = [&](HANDLE handle, DWORD level)
    {
        return Errors{ErrorOf(GetPrinterW(handle, level, room, sizeof(room), &needed)),
                      ErrorOf(GetPrinterDriverW(handle, nullptr, level, room, sizeof(room), &needed)),
                      ErrorOf(GetFormW(handle, Mutable(W("A4")), level, room, sizeof(room), &needed))};
    };
    PrinterOwner printer = InstallPrinter();
    EXPECT_EQ(leveled(printer.get(), 77), Errors(3, ERROR_INVALID_LEVEL));
    const HANDLE closed = printer.release();
    ASSERT_TRUE(ClosePrinter(closed));
    for (const HANDLE handle : {HANDLE{nullptr}, closed, reinterpret_cast<HANDLE>(0x7654321)})
    {
        EXPECT_EQ(leveled(handle, 1), Errors(3, ERROR_INVALID_HANDLE));
        EXPECT_EQ(SetPrinterDataExW(handle, W("K"), W("v"), REG_BINARY, room, 4), ERROR_INVALID_HANDLE);
        EXPECT_EQ(ErrorOf(DeletePrinter(handle)), ERROR_INVALID_HANDLE);
        EXPECT_EQ(ErrorOf(ClosePrinter(handle)), ERROR_INVALID_HANDLE);
    }
}

TEST_F(Spooler, DataIsOfItsKeyAndGoesWithItsPrinter)
{
    PrinterOwner printer = InstallPrinter();
    const auto number = [](HANDLE handle, const WCHAR* key)
    {
        DWORD value = 0;
        DWORD needed = 0;
        const DWORD error =
            GetPrinterDataExW(handle, key, W("vALUE"), nullptr, reinterpret_cast<BYTE*>(&value), sizeof value, &needed);
        return error == ERROR_SUCCESS ? value : error;
    };
    const WCHAR* const driverKey = W("printerDRIVERdata");
    BYTE bytes[] = {1, 2, 3, 4};
    // Without a key it is the driver's.
    ASSERT_EQ(SetPrinterDataW(printer.get(), Mutable(W("Value")), REG_DWORD, bytes, 4), ERROR_SUCCESS);
    EXPECT_EQ(number(Open(kPrinter).get(), driverKey), 0x04030201u);
    ASSERT_EQ(SetPrinterDataExW(printer.get(), W("Other"), W("Value"), REG_BINARY, bytes, 1), ERROR_SUCCESS);
    EXPECT_EQ(number(printer.get(), W("Other")), 1u);
    if (!IsWine()) // which does not delete printer data
    {
        for (const DWORD error : {DWORD{ERROR_SUCCESS}, DWORD{ERROR_FILE_NOT_FOUND}})
            EXPECT_EQ(DeletePrinterDataExW(printer.get(), W("OTHER"), W("VALUE")), error);
    }
    EXPECT_EQ(number(printer.get(), driverKey), 0x04030201u);
    // The next one of the name is another.
    ASSERT_TRUE(DeletePrinter(printer.get()));
    printer.reset();
    EXPECT_EQ(Open(kPrinter), nullptr);
    EXPECT_EQ(number(InstallPrinter().get(), driverKey), DWORD{ERROR_FILE_NOT_FOUND});
}

TEST_F(Spooler, DriversAreFilesWhateverTheCaseOfTheirNames)
{
    const PrinterOwner printer = InstallPrinter();
    SourceFile("tvCased.json", "a model");
    ASSERT_TRUE(InstallDriver(kDriver, (Scratch() / "TVcased.json").string<WCHAR>().c_str())) << GetLastError();
    const fs::path installed = DriverAnswer<DRIVER_INFO_3W>(printer.get(), 3)->pDataFile;
    EXPECT_EQ(installed.filename(), "TVcased.json"); // as the installer named it
    EXPECT_EQ(Content(installed), "a model");

    // A second driver's file of that name is the same file.
    ASSERT_TRUE(InstallDriver(kSecond, SourceFile("second/TvCased.json", "a newer model").c_str())) << GetLastError();
    EXPECT_EQ(DeleteDriver(kSecond, IsWine() ? 0 : DPD_DELETE_UNUSED_FILES), ERROR_SUCCESS);
    EXPECT_EQ(Content(installed), "a newer model");
    EXPECT_TRUE(InstallDriver()) << GetLastError();
}

TEST_F(Spooler, DriversStayWhileAPrinterUsesThem)
{
    if (IsWine())
        GTEST_SKIP() << "Wine deletes drivers in use, and never their files";
    const PrinterOwner printer = InstallPrinter();
    EXPECT_EQ(DeleteDriver(kDriver), ERROR_PRINTER_DRIVER_IN_USE);
    const fs::path folder = fs::path(DriverAnswer<DRIVER_INFO_3W>(printer.get(), 3)->pDataFile).parent_path();
    ASSERT_TRUE(DeletePrinter(printer.get()));
    ASSERT_TRUE(InstallDriver(kSecond, SourceFile("tvother.json", "other").c_str()));
    EXPECT_EQ(DeleteDriver(kSecond, DPD_DELETE_ALL_FILES), ERROR_PRINTER_DRIVER_IN_USE);
    EXPECT_EQ(DeleteDriver(kSecond, DPD_DELETE_UNUSED_FILES), ERROR_SUCCESS);
    EXPECT_FALSE(fs::exists(folder / "tvother.json"));
    EXPECT_TRUE(fs::exists(folder / "tvplatform.drv")); // the first driver's too
    EXPECT_EQ(DeleteDriver(kDriver), ERROR_SUCCESS);
    EXPECT_TRUE(fs::exists(folder / "tvplatform.drv")); // not asked for
    EXPECT_EQ(DeleteDriver(kDriver), ERROR_UNKNOWN_PRINTER_DRIVER);
}
