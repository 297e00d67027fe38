// Printers: adding, opening, asking, changing, deleting.
#include <algorithm>
#include <array>
#include <cstring>

#include "tests/platform/spoolerfixture.h"
#include "tests/platform/wine.h"

using namespace spoolertests;

class SpoolerPrinters : public SpoolerTest
{
};

TEST_F(SpoolerPrinters, AnswerWhatTheyWereAddedWith)
{
    const PrinterOwner printer = InstallPrinter();
    const auto info = PrinterAnswer<PRINTER_INFO_2W>(printer.get(), 2);
    ASSERT_EQ(info.Count(), 1u);
    for (const LPWSTR PRINTER_INFO_2W::*const text :
         {&PRINTER_INFO_2W::pPrinterName, &PRINTER_INFO_2W::pDriverName, &PRINTER_INFO_2W::pPortName,
          &PRINTER_INFO_2W::pPrintProcessor, &PRINTER_INFO_2W::pDatatype, &PRINTER_INFO_2W::pComment,
          &PRINTER_INFO_2W::pLocation})
        EXPECT_EQ(WideString(info[0].*text), PrinterInfo().*text);
    EXPECT_NE(info->Attributes & PRINTER_ATTRIBUTE_LOCAL, 0u);
    EXPECT_EQ(WideString(PrinterAnswer<PRINTER_INFO_4W>(printer.get(), 4)->pPrinterName), kPrinter);
    EXPECT_EQ(WideString(PrinterAnswer<PRINTER_INFO_5W>(printer.get(), 5)->pPortName), W("FILE:"));
    DWORD needed = 0;
    EXPECT_EQ(ErrorOf(GetPrinterW(printer.get(), 2, nullptr, 0, &needed)), ERROR_INSUFFICIENT_BUFFER);
    std::vector<BYTE> bytes(needed, 0xEE);
    EXPECT_EQ(ErrorOf(GetPrinterW(printer.get(), 2, bytes.data(), needed - 1, &needed)), ERROR_INSUFFICIENT_BUFFER);
    EXPECT_TRUE(needed == bytes.size() && bytes.back() == 0xEE);

    const auto names = PrinterNames();
    EXPECT_EQ(std::count(names.begin(), names.end(), kPrinter), 1);
    EXPECT_NE(Open(W("tavlen PLATFORM printer")), nullptr);
    HANDLE none = printer.get();
    EXPECT_EQ(ErrorOf(OpenPrinterW(Mutable(W("Tavlen Platform")), &none, nullptr)), ERROR_INVALID_PRINTER_NAME);
    EXPECT_EQ(none, nullptr);
}

TEST_F(SpoolerPrinters, AreRefusedWithTheReason)
{
    struct Refusal
    {
        LPWSTR PRINTER_INFO_2W::*field;
        const WCHAR* value;
        DWORD error;
        bool wineAccepts; // or crashes
    };
    constexpr Refusal kRefusals[] = {
        {&PRINTER_INFO_2W::pDriverName, W("No driver"), ERROR_UNKNOWN_PRINTER_DRIVER, false},
        {&PRINTER_INFO_2W::pPrintProcessor, W("noprint"), ERROR_UNKNOWN_PRINTPROCESSOR, false},
        {&PRINTER_INFO_2W::pPrinterName, nullptr, ERROR_INVALID_PRINTER_NAME, false},
        {&PRINTER_INFO_2W::pPrinterName, W("a\\b"), ERROR_INVALID_PRINTER_NAME, true},
        {&PRINTER_INFO_2W::pPrinterName, W("a,b"), ERROR_INVALID_PRINTER_NAME, true},
        {&PRINTER_INFO_2W::pPrinterName, W("TAVLEN platform PRINTER"), ERROR_PRINTER_ALREADY_EXISTS, true},
        {&PRINTER_INFO_2W::pPortName, W("NOPORT:"), ERROR_UNKNOWN_PORT, true},
        {&PRINTER_INFO_2W::pDatatype, W("BOGUS"), ERROR_INVALID_DATATYPE, true},
    };
    const PrinterOwner printer = InstallPrinter();
    const auto before = PrinterNames();
    for (const Refusal& refusal : kRefusals)
    {
        if (refusal.wineAccepts && IsWine())
            continue;
        SCOPED_TRACE(&refusal - kRefusals);
        PRINTER_INFO_2W info = PrinterInfo(W("Tavlen Platform Other"));
        info.*refusal.field = Mutable(refusal.value);
        EXPECT_EQ(ErrorOf(Add(info) != nullptr), refusal.error);
    }
    EXPECT_EQ(PrinterNames(), before);
}

// Every function finds out what is no handle (null, noise, and one that is closed) and what is no level.
TEST_F(SpoolerPrinters, AreNotReachedThroughWhatIsNoHandleOrNoLevel)
{
    std::array<BYTE, 4096> buffer = {};
    BYTE* const room = buffer.data();
    constexpr DWORD kSize = buffer.size();
    DWORD needed = 0;
    DWORD count = 0;
    using Errors = std::vector<DWORD>;
    const auto leveled = [&](HANDLE h, DWORD level)
    {
        return Errors{ErrorOf(GetPrinterW(h, level, room, kSize, &needed)),
                      ErrorOf(GetPrinterDriverW(h, nullptr, level, room, kSize, &needed)),
                      ErrorOf(GetFormW(h, Mutable(W("A4")), level, room, kSize, &needed)),
                      ErrorOf(EnumFormsW(h, level, room, kSize, &needed, &count))};
    };
    PrinterOwner printer = InstallPrinter();
    EXPECT_EQ(leveled(printer.get(), 77), Errors(4, ERROR_INVALID_LEVEL));
    const HANDLE closed = printer.release();
    ASSERT_TRUE(ClosePrinter(closed));
    for (const HANDLE handle : {HANDLE{nullptr}, closed, reinterpret_cast<HANDLE>(0x7654321)})
    {
        EXPECT_EQ(leveled(handle, 1), Errors(4, ERROR_INVALID_HANDLE));
        const Errors unleveled{
            GetPrinterDataExW(handle, W("K"), W("v"), nullptr, room, kSize, &needed),
            SetPrinterDataExW(handle, W("K"), W("v"), REG_BINARY, room, 4),
            ErrorOf(DeletePrinter(handle)),
            ErrorOf(ClosePrinter(handle)),
        };
        EXPECT_EQ(unleveled, Errors(4, ERROR_INVALID_HANDLE));
    }
}

TEST_F(SpoolerPrinters, KeepWhatIsSet)
{
    const PrinterOwner printer = InstallPrinter();
    std::vector<BYTE> bytes(sizeof(DEVMODEW) + 10, 0xA7);
    DEVMODEW fields = {};
    fields.dmSize = sizeof(DEVMODEW);
    fields.dmDriverExtra = 10;
    fields.dmCopies = 5;
    std::memcpy(bytes.data(), &fields, sizeof(fields));
    PRINTER_INFO_2W info = PrinterInfo();
    info.pComment = Mutable(W("another comment"));
    info.pPortName = Mutable(W("LPT1:"));
    info.pDevMode = reinterpret_cast<DEVMODEW*>(bytes.data());
    ASSERT_TRUE(SetInfo(printer.get(), info)) << GetLastError();

    const auto set = PrinterAnswer<PRINTER_INFO_2W>(Open(kPrinter).get(), 2);
    ASSERT_EQ(set.Count(), 1u);
    EXPECT_EQ(WideString(set->pComment) + set->pPortName, W("another commentLPT1:"));
    EXPECT_EQ(set->pDevMode->dmCopies, 5);
    ASSERT_EQ(set->pDevMode->dmDriverExtra, 10);
    // Wine writes the printer's name into the public part.
    EXPECT_EQ(std::memcmp(set->pDevMode + 1, bytes.data() + sizeof(DEVMODEW), 10), 0);
    if (IsWine()) // which does not check access
        return;
    const PrinterOwner reader = Open(kPrinter, PRINTER_ACCESS_USE);
    EXPECT_EQ(ErrorOf(SetInfo(reader.get(), info)), ERROR_ACCESS_DENIED);
    EXPECT_EQ(ErrorOf(DeletePrinter(reader.get())), ERROR_ACCESS_DENIED);
    EXPECT_EQ(SetPrinterDataExW(reader.get(), W("K"), W("v"), REG_BINARY, bytes.data(), 1), ERROR_ACCESS_DENIED);
}

// Whether a printer is still found while it is deleted but open differs between the platforms.
TEST_F(SpoolerPrinters, AreGoneWithTheirDataWhenDeletedAndClosed)
{
    BYTE value = 1;
    PrinterOwner printer = InstallPrinter();
    ASSERT_EQ(SetPrinterDataExW(printer.get(), W("K"), W("v"), REG_BINARY, &value, 1), ERROR_SUCCESS);
    ASSERT_TRUE(DeletePrinter(printer.get()));
    printer.reset();
    EXPECT_EQ(Open(kPrinter), nullptr);
    // A printer of the same name is another one.
    const PrinterOwner second = InstallPrinter();
    DWORD needed = 0;
    EXPECT_EQ(GetPrinterDataExW(second.get(), W("K"), W("v"), nullptr, &value, 1, &needed), ERROR_FILE_NOT_FOUND);
}
