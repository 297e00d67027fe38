// Printers: adding, opening, asking, changing, deleting.
#include <algorithm>
#include <cstring>

#include "tests/platform/spoolerfixture.h"
#include "tests/platform/wine.h"

using SpoolerPrinters = SpoolerTest;

TEST_F(SpoolerPrinters, AnswerWhatTheyWereAddedWith)
{
    const PrinterOwner printer = InstallPrinter();
    const auto info = PrinterAnswer<PRINTER_INFO_2W>(printer.get(), 2);
    ASSERT_NE(info.begin(), info.end());
    for (const LPWSTR PRINTER_INFO_2W::*const text :
         {&PRINTER_INFO_2W::pPrinterName, &PRINTER_INFO_2W::pDriverName, &PRINTER_INFO_2W::pPortName,
          &PRINTER_INFO_2W::pPrintProcessor, &PRINTER_INFO_2W::pDatatype, &PRINTER_INFO_2W::pComment,
          &PRINTER_INFO_2W::pLocation})
        EXPECT_EQ(WideString((*info.begin()).*text), PrinterInfo().*text);
    EXPECT_EQ(WideString(PrinterAnswer<PRINTER_INFO_5W>(printer.get(), 5)->pPortName), W("FILE:"));
    DWORD needed = 0;
    EXPECT_EQ(ErrorOf(GetPrinterW(printer.get(), 2, nullptr, 0, &needed)), ERROR_INSUFFICIENT_BUFFER);

    const auto names = PrinterNames();
    EXPECT_EQ(std::count(names.begin(), names.end(), kPrinter), 1);
    EXPECT_NE(Open(W("tavlen PLATFORM printer")), nullptr);
    HANDLE none = printer.get();
    EXPECT_EQ(ErrorOf(OpenPrinterW(Mutable(W("Tavlen Platform")), &none, nullptr)), ERROR_INVALID_PRINTER_NAME);
    EXPECT_EQ(none, nullptr);
}

TEST_F(SpoolerPrinters, AreRefusedWithTheReason)
{
    const PrinterOwner printer = InstallPrinter();
    const auto before = PrinterNames();
    const auto errorWith = [](LPWSTR PRINTER_INFO_2W::*field, const WCHAR* value)
    {
        PRINTER_INFO_2W info = PrinterInfo(W("Tavlen Platform Other"));
        info.*field = Mutable(value);
        return ErrorOf(Add(info) != nullptr);
    };
    EXPECT_EQ(errorWith(&PRINTER_INFO_2W::pDriverName, W("No driver")), ERROR_UNKNOWN_PRINTER_DRIVER);
    EXPECT_EQ(errorWith(&PRINTER_INFO_2W::pPrintProcessor, W("noprint")), ERROR_UNKNOWN_PRINTPROCESSOR);
    EXPECT_EQ(errorWith(&PRINTER_INFO_2W::pPrinterName, nullptr), ERROR_INVALID_PRINTER_NAME);
    if (!IsWine()) // which accepts the rest
    {
        EXPECT_EQ(errorWith(&PRINTER_INFO_2W::pPrinterName, W("a\\b")), ERROR_INVALID_PRINTER_NAME);
        EXPECT_EQ(errorWith(&PRINTER_INFO_2W::pPrinterName, W("TAVLEN platform PRINTER")),
                  ERROR_PRINTER_ALREADY_EXISTS);
        EXPECT_EQ(errorWith(&PRINTER_INFO_2W::pPortName, W("NOPORT:")), ERROR_UNKNOWN_PORT);
        EXPECT_EQ(errorWith(&PRINTER_INFO_2W::pDatatype, W("BOGUS")), ERROR_INVALID_DATATYPE);
    }
    EXPECT_EQ(PrinterNames(), before);
}

// Every function finds out what is no handle (null, noise, and one that is closed) and what is no level.
TEST_F(SpoolerPrinters, AreNotReachedThroughWhatIsNoHandleOrNoLevel)
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

TEST_F(SpoolerPrinters, KeepWhatIsSet)
{
    const PrinterOwner printer = InstallPrinter();
    DEVMODEW devMode[2] = {}; // the second one is the private part
    devMode[0].dmSize = devMode[0].dmDriverExtra = sizeof(DEVMODEW);
    devMode[0].dmCopies = 5;
    devMode[1].dmCopies = 6;
    PRINTER_INFO_2W info = PrinterInfo();
    info.pComment = Mutable(W("another comment"));
    info.pPortName = Mutable(W("LPT1:"));
    info.pDevMode = devMode;
    ASSERT_TRUE(SetInfo(printer.get(), info)) << GetLastError();

    const auto set = PrinterAnswer<PRINTER_INFO_2W>(Open(kPrinter).get(), 2);
    ASSERT_NE(set.begin(), set.end());
    EXPECT_EQ(WideString(set->pPortName), info.pPortName);
    EXPECT_EQ(set->pDevMode->dmCopies, 5);
    ASSERT_EQ(set->pDevMode->dmDriverExtra, sizeof(DEVMODEW));
    // Wine writes the printer's name into the public part.
    EXPECT_EQ(std::memcmp(set->pDevMode + 1, devMode + 1, sizeof(DEVMODEW)), 0);
    if (IsWine()) // which does not check access
        return;
    const PrinterOwner reader = Open(kPrinter, PRINTER_ACCESS_USE);
    EXPECT_EQ(ErrorOf(SetInfo(reader.get(), info)), ERROR_ACCESS_DENIED);
    EXPECT_EQ(ErrorOf(DeletePrinter(reader.get())), ERROR_ACCESS_DENIED);
}
