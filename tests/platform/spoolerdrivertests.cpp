// Driver packages. What their configuration modules answer is tested with ours.
#include <algorithm>

#include "tests/platform/spoolerfixture.h"
#include "tests/platform/wine.h"

namespace
{

namespace fs = std::filesystem;

using SpoolerDrivers = SpoolerTest;

const WCHAR* const kSecond = W("Tavlen Platform Second");

fs::path DriverFolder()
{
    WCHAR directory[1024] = {};
    DWORD needed = 0;
    EXPECT_TRUE(GetPrinterDriverDirectoryW(nullptr, Mutable(kEnvironment), 1, reinterpret_cast<BYTE*>(directory),
                                           sizeof(directory), &needed));
    EXPECT_EQ(needed, (WideString(directory).size() + 1) * sizeof(WCHAR));
    return fs::path(directory) / "3";
}

bool IsKnownDriver(WStringView name)
{
    const Answer<DRIVER_INFO_2W> drivers(
        [](LPBYTE bytes, DWORD size, LPDWORD needed, LPDWORD count)
        { return EnumPrinterDriversW(nullptr, Mutable(kEnvironment), 2, bytes, size, needed, count); });
    return std::any_of(drivers.begin(), drivers.end(),
                       [name](const DRIVER_INFO_2W& driver) { return driver.pName == name; });
}

DWORD DeleteDriver(const WCHAR* name, DWORD flags = 0)
{
    return ErrorOf(DeletePrinterDriverExW(nullptr, Mutable(kEnvironment), Mutable(name), flags, 0));
}

} // namespace

TEST_F(SpoolerDrivers, LieInTheDriverDirectoryAndAreUpdatedByAddingThemAgain)
{
    const PrinterOwner printer = InstallPrinter();
    const auto driver = DriverAnswer<DRIVER_INFO_3W>(printer.get(), 3);
    ASSERT_NE(driver.begin(), driver.end());
    const fs::path folder = DriverFolder();
    EXPECT_EQ(WideString(driver->pName) + driver->pEnvironment, WideString(kDriver) + kEnvironment);
    EXPECT_EQ(Content(driver->pDriverPath), "the driver");
    EXPECT_EQ(fs::path(driver->pConfigFile), folder / "spooler_sample.dll"); // whatever the module's file is called
    const WCHAR* file = driver->pDependentFiles;
    for (const char* const name : {"tvone.txt", "tvtwo.txt"})
    {
        EXPECT_EQ(fs::path(file), folder / name);
        file += WideString(file).size() + 1;
    }
    EXPECT_EQ(*file, 0);
    EXPECT_TRUE(IsKnownDriver(kDriver));

    ASSERT_TRUE(InstallDriver(W("TAVLEN platform driver"), SourceFile("tvnewer.json", "a newer model").c_str()));
    EXPECT_EQ(Content(DriverAnswer<DRIVER_INFO_6W>(printer.get(), 6)->pDataFile), "a newer model");
    ASSERT_TRUE(InstallDriver());
}

TEST_F(SpoolerDrivers, AreFilesWhateverTheCaseOfTheirNames)
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

TEST_F(SpoolerDrivers, AreRefusedWithTheReason)
{
    const WideString file = SourceFile("tvother.json", "x");
    const auto errorWith = [&file](DWORD level, const WCHAR* environment, const WCHAR* configFile)
    {
        DRIVER_INFO_3W info = {};
        info.cVersion = 3;
        info.pName = Mutable(kSecond);
        info.pEnvironment = Mutable(environment);
        info.pDriverPath = info.pDataFile = Mutable(file.c_str());
        info.pConfigFile = Mutable(configFile);
        return ErrorOf(AddPrinterDriverExW(nullptr, level, reinterpret_cast<BYTE*>(&info),
                                           APD_COPY_ALL_FILES | APD_COPY_FROM_DIRECTORY));
    };
    EXPECT_EQ(errorWith(3, W("Windows PDP-11"), file.c_str()), ERROR_INVALID_ENVIRONMENT);
    EXPECT_EQ(errorWith(1, kEnvironment, file.c_str()), ERROR_INVALID_LEVEL);
    if (!IsWine()) // which looks at no files
    {
        EXPECT_EQ(errorWith(3, kEnvironment, W("/no/such/folder/config.dll")), ERROR_FILE_NOT_FOUND);
        EXPECT_EQ(errorWith(3, kEnvironment, nullptr), ERROR_INVALID_PARAMETER);
    }
    EXPECT_FALSE(fs::exists(DriverFolder() / "tvother.json"));
    EXPECT_FALSE(IsKnownDriver(kSecond));
}

TEST_F(SpoolerDrivers, StayWhileAPrinterUsesThem)
{
    if (IsWine())
        GTEST_SKIP() << "Wine deletes drivers in use, and never their files";
    const PrinterOwner printer = InstallPrinter();
    EXPECT_EQ(DeleteDriver(kDriver), ERROR_PRINTER_DRIVER_IN_USE);
    EXPECT_TRUE(IsKnownDriver(kDriver));
    ASSERT_TRUE(DeletePrinter(printer.get()));
    ASSERT_TRUE(InstallDriver(kSecond, SourceFile("tvother.json", "other").c_str()));
    const fs::path folder = DriverFolder();
    EXPECT_EQ(DeleteDriver(kSecond, DPD_DELETE_ALL_FILES), ERROR_PRINTER_DRIVER_IN_USE);
    EXPECT_EQ(DeleteDriver(kSecond, DPD_DELETE_UNUSED_FILES), ERROR_SUCCESS);
    EXPECT_FALSE(fs::exists(folder / "tvother.json"));
    EXPECT_TRUE(fs::exists(folder / "tvplatform.drv")); // the first driver's too
    EXPECT_EQ(DeleteDriver(kDriver), ERROR_SUCCESS);
    EXPECT_TRUE(fs::exists(folder / "tvplatform.drv")); // not asked for
    EXPECT_EQ(DeleteDriver(kDriver), ERROR_UNKNOWN_PRINTER_DRIVER);
}
