// Printers: adding, opening, asking, changing, deleting.
#include <algorithm>
#include <array>
#include <cstring>
#include <utility>

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
    ASSERT_TRUE(info.IsGood());
    const std::pair<LPWSTR, const WCHAR*> texts[] = {
        {info->pPrinterName, kPrinter},         {info->pDriverName, kDriver}, {info->pPortName, W("FILE:")},
        {info->pPrintProcessor, W("winprint")}, {info->pDatatype, W("RAW")},  {info->pComment, W("a comment")},
        {info->pLocation, W("room 1")},
    };
    for (const auto& [text, expected] : texts)
    {
        ASSERT_TRUE(info.Holds(text));
        EXPECT_EQ(WideString(text), expected);
    }
    EXPECT_NE(info->Attributes & PRINTER_ATTRIBUTE_LOCAL, 0u);
    EXPECT_EQ(info->cJobs, 0u);
    EXPECT_EQ(WideString(PrinterAnswer<PRINTER_INFO_1W>(printer.get(), 1)->pName), kPrinter);
    EXPECT_EQ(WideString(PrinterAnswer<PRINTER_INFO_4W>(printer.get(), 4)->pPrinterName), kPrinter);
    EXPECT_EQ(WideString(PrinterAnswer<PRINTER_INFO_5W>(printer.get(), 5)->pPortName), W("FILE:"));

    for (const DWORD level : {1u, 2u, 4u, 5u})
    {
        SCOPED_TRACE(level);
        DWORD needed = 0;
        EXPECT_EQ(ErrorOf(GetPrinterW(printer.get(), level, nullptr, 0, &needed)), ERROR_INSUFFICIENT_BUFFER);
        std::vector<BYTE> bytes(needed, 0xEE);
        EXPECT_EQ(ErrorOf(GetPrinterW(printer.get(), level, bytes.data(), std::exchange(needed, 0) - 1, &needed)),
                  ERROR_INSUFFICIENT_BUFFER);
        EXPECT_EQ(needed, bytes.size());
        EXPECT_EQ(bytes.back(), 0xEE);
    }
}

TEST_F(SpoolerPrinters, AreListedOnceAndFoundIgnoringCase)
{
    const PrinterOwner printer = InstallPrinter();
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
        const char* what;
        LPWSTR PRINTER_INFO_2W::*field;
        const WCHAR* value;
        DWORD error;
        bool wineAccepts; // or crashes
    };
    const Refusal refusals[] = {
        {"unknown driver", &PRINTER_INFO_2W::pDriverName, W("No driver"), ERROR_UNKNOWN_PRINTER_DRIVER, false},
        {"unknown processor", &PRINTER_INFO_2W::pPrintProcessor, W("noprint"), ERROR_UNKNOWN_PRINTPROCESSOR, false},
        {"empty name", &PRINTER_INFO_2W::pPrinterName, W(""), ERROR_INVALID_PRINTER_NAME, false},
        {"no name", &PRINTER_INFO_2W::pPrinterName, nullptr, ERROR_INVALID_PRINTER_NAME, false},
        {"backslash", &PRINTER_INFO_2W::pPrinterName, W("a\\b"), ERROR_INVALID_PRINTER_NAME, true},
        {"comma", &PRINTER_INFO_2W::pPrinterName, W("a,b"), ERROR_INVALID_PRINTER_NAME, true},
        {"unknown port", &PRINTER_INFO_2W::pPortName, W("NOPORT:"), ERROR_UNKNOWN_PORT, true},
        {"no port", &PRINTER_INFO_2W::pPortName, nullptr, ERROR_UNKNOWN_PORT, true},
        {"no driver", &PRINTER_INFO_2W::pDriverName, nullptr, ERROR_UNKNOWN_PRINTER_DRIVER, true},
        {"unknown data type", &PRINTER_INFO_2W::pDatatype, W("BOGUS"), ERROR_INVALID_DATATYPE, true},
        {"same name", &PRINTER_INFO_2W::pPrinterName, W("TAVLEN platform PRINTER"), ERROR_PRINTER_ALREADY_EXISTS, true},
    };
    const PrinterOwner printer = InstallPrinter();
    const auto before = PrinterNames();
    for (const Refusal& refusal : refusals)
    {
        if (refusal.wineAccepts && IsWine())
            continue;
        SCOPED_TRACE(refusal.what);
        PRINTER_INFO_2W info = PrinterInfo(W("Tavlen Platform Other"));
        info.*refusal.field = Mutable(refusal.value);
        EXPECT_EQ(AddPrinterW(nullptr, 2, reinterpret_cast<BYTE*>(&info)), nullptr);
        EXPECT_EQ(GetLastError(), refusal.error);
    }
    EXPECT_EQ(PrinterNames(), before);
    EXPECT_EQ(AddPrinterW(nullptr, 2, nullptr), nullptr);
    EXPECT_EQ(GetLastError(), ERROR_INVALID_PARAMETER);
}

// Every function finds out what is no handle (null, noise, and one that is closed) and what is no level.
TEST_F(SpoolerPrinters, AreNotReachedThroughWhatIsNoHandleOrNoLevel)
{
    std::array<BYTE, 4096> buffer = {};
    constexpr DWORD kSize = buffer.size();
    DWORD needed = 0;
    DWORD count = 0;
    PRINTER_INFO_2W info = PrinterInfo(W("Tavlen Platform Other"));
    using Errors = std::vector<std::pair<const char*, DWORD>>;
    const auto leveled = [&](HANDLE h, bool isKnown)
    {
        const DWORD level = isKnown ? 1 : 77;
        return Errors{
            {"GetPrinterW", ErrorOf(GetPrinterW(h, level, buffer.data(), kSize, &needed))},
            {"GetPrinterDriverW", ErrorOf(GetPrinterDriverW(h, nullptr, level, buffer.data(), kSize, &needed))},
            {"GetFormW", ErrorOf(GetFormW(h, Mutable(W("A4")), level, buffer.data(), kSize, &needed))},
            {"EnumFormsW", ErrorOf(EnumFormsW(h, level, buffer.data(), kSize, &needed, &count))},
        };
    };
    PrinterOwner printer = InstallPrinter();
    Errors errors = leveled(printer.get(), false);
    BYTE* const room = buffer.data();
    errors.insert(
        errors.end(),
        {
            {"EnumPrintersW", ErrorOf(EnumPrintersW(PRINTER_ENUM_LOCAL, nullptr, 77, room, kSize, &needed, &count))},
            {"EnumPortsW", ErrorOf(EnumPortsW(nullptr, 77, room, kSize, &needed, &count))},
            {"GetPrinterDriverDirectoryW",
             ErrorOf(GetPrinterDriverDirectoryW(nullptr, nullptr, 77, room, kSize, &needed))},
            {"AddPrinterW", ErrorOf(AddPrinterW(nullptr, 9, reinterpret_cast<BYTE*>(&info)) != nullptr)},
        });
    for (const auto& [function, error] : errors)
        EXPECT_EQ(error, ERROR_INVALID_LEVEL) << function;

    const HANDLE closed = printer.release();
    ASSERT_TRUE(ClosePrinter(closed));
    for (const HANDLE handle : {HANDLE{nullptr}, closed, reinterpret_cast<HANDLE>(0x7654321)})
    {
        errors = leveled(handle, true);
        errors.insert(
            errors.end(),
            {
                {"GetPrinterDataExW", GetPrinterDataExW(handle, W("K"), W("v"), nullptr, room, kSize, &needed)},
                {"SetPrinterDataExW", SetPrinterDataExW(handle, W("K"), W("v"), REG_BINARY, room, 4)},
                {"DeletePrinter", ErrorOf(DeletePrinter(handle))},
                {"ClosePrinter", ErrorOf(ClosePrinter(handle))},
            });
        for (const auto& [function, error] : errors)
            EXPECT_EQ(error, ERROR_INVALID_HANDLE) << function;
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
    ASSERT_TRUE(SetPrinterW(printer.get(), 2, reinterpret_cast<BYTE*>(&info), 0)) << GetLastError();

    const auto set = PrinterAnswer<PRINTER_INFO_2W>(Open(kPrinter).get(), 2);
    ASSERT_TRUE(set.IsGood());
    EXPECT_EQ(WideString(set->pComment), W("another comment"));
    EXPECT_EQ(WideString(set->pPortName), W("LPT1:"));
    ASSERT_TRUE(set.Holds(set->pDevMode) && set.Holds(reinterpret_cast<BYTE*>(set->pDevMode) + bytes.size() - 1));
    EXPECT_EQ(set->pDevMode->dmCopies, 5);
    ASSERT_EQ(set->pDevMode->dmDriverExtra, 10);
    // Wine writes the printer's name into the public part.
    EXPECT_EQ(std::memcmp(set->pDevMode + 1, bytes.data() + sizeof(DEVMODEW), 10), 0);
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

TEST_F(SpoolerPrinters, StayWhenTheHandleMayNotChangeThem)
{
    if (IsWine())
        GTEST_SKIP() << "Wine does not check access";
    const PrinterOwner printer = InstallPrinter();
    const PrinterOwner reader = Open(kPrinter, PRINTER_ACCESS_USE);
    PRINTER_INFO_2W info = PrinterInfo();
    BYTE value = 1;
    EXPECT_EQ(ErrorOf(DeletePrinter(reader.get())), ERROR_ACCESS_DENIED);
    EXPECT_EQ(ErrorOf(SetPrinterW(reader.get(), 2, reinterpret_cast<BYTE*>(&info), 0)), ERROR_ACCESS_DENIED);
    EXPECT_EQ(SetPrinterDataExW(reader.get(), W("K"), W("v"), REG_BINARY, &value, 1), ERROR_ACCESS_DENIED);
}
