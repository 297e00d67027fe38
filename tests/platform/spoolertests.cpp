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
