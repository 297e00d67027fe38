// Printers and ports: adding, opening, asking, changing, deleting.
#include <algorithm>
#include <array>
#include <functional>

#include "tests/platform/spoolerfixture.h"
#include "tests/platform/wine.h"

using namespace spoolertests;

class SpoolerPrinters : public SpoolerTest
{
};

TEST_F(SpoolerPrinters, AnswerWhatTheyWereAddedWith)
{
    const PrinterOwner printer = InstallPrinter();
    const auto info = PrinterAnswer<PRINTER_INFO_2W>(printer.Get(), 2);
    ASSERT_TRUE(info.IsGood());
    EXPECT_EQ(WideString(info->pPrinterName), kPrinter);
    EXPECT_EQ(WideString(info->pDriverName), kDriver);
    EXPECT_EQ(WideString(info->pPortName), W("FILE:"));
    EXPECT_EQ(WideString(info->pPrintProcessor), W("winprint"));
    EXPECT_EQ(WideString(info->pDatatype), W("RAW"));
    EXPECT_EQ(WideString(info->pComment), W("a comment"));
    EXPECT_EQ(WideString(info->pLocation), W("room 1"));
    EXPECT_NE(info->Attributes & PRINTER_ATTRIBUTE_LOCAL, 0u);
    EXPECT_EQ(info->cJobs, 0u);
    for (const LPWSTR text : {info->pPrinterName, info->pDriverName, info->pPortName, info->pComment})
        EXPECT_TRUE(info.Holds(text));

    const auto short1 = PrinterAnswer<PRINTER_INFO_1W>(printer.Get(), 1);
    ASSERT_TRUE(short1.IsGood());
    EXPECT_EQ(WideString(short1->pName), kPrinter);
    EXPECT_EQ(WideString(short1->pComment), W("a comment"));
    const auto short4 = PrinterAnswer<PRINTER_INFO_4W>(printer.Get(), 4);
    ASSERT_TRUE(short4.IsGood());
    EXPECT_EQ(WideString(short4->pPrinterName), kPrinter);
    const auto short5 = PrinterAnswer<PRINTER_INFO_5W>(printer.Get(), 5);
    ASSERT_TRUE(short5.IsGood());
    EXPECT_EQ(WideString(short5->pPortName), W("FILE:"));
}

TEST_F(SpoolerPrinters, NeedAsLargeABufferAsTheySay)
{
    const PrinterOwner printer = InstallPrinter();
    for (const DWORD level : {1u, 2u, 4u, 5u})
    {
        SCOPED_TRACE(level);
        DWORD needed = 0;
        EXPECT_FALSE(GetPrinterW(printer.Get(), level, nullptr, 0, &needed));
        EXPECT_EQ(GetLastError(), ERROR_INSUFFICIENT_BUFFER);
        std::vector<BYTE> bytes(needed, 0xEE);
        DWORD again = 0;
        EXPECT_FALSE(GetPrinterW(printer.Get(), level, bytes.data(), needed - 1, &again));
        EXPECT_EQ(GetLastError(), ERROR_INSUFFICIENT_BUFFER);
        EXPECT_EQ(again, needed);
        EXPECT_EQ(bytes.back(), 0xEE);
        EXPECT_TRUE(GetPrinterW(printer.Get(), level, bytes.data(), needed, &again));
    }
}

TEST_F(SpoolerPrinters, AreListedOnceAndFoundIgnoringCase)
{
    const PrinterOwner printer = InstallPrinter();
    const auto names = PrinterNames();
    EXPECT_EQ(std::count(names.begin(), names.end(), kPrinter), 1);
    const auto all = PrintersAnswer<PRINTER_INFO_2W>(2);
    ASSERT_TRUE(all.IsGood());
    EXPECT_EQ(all.Count(), names.size());
    EXPECT_NE(PrinterOwner::Open(W("tavlen PLATFORM printer")).Get(), nullptr);

    HANDLE none = printer.Get();
    EXPECT_FALSE(OpenPrinterW(Mutable(W("Tavlen Platform")), &none, nullptr));
    EXPECT_EQ(GetLastError(), ERROR_INVALID_PRINTER_NAME);
    EXPECT_EQ(none, nullptr);
}

TEST_F(SpoolerPrinters, AreRefusedWithTheReason)
{
    struct Refusal
    {
        const char* what;
        std::function<void(PRINTER_INFO_2W&)> spoil;
        DWORD error;
        bool wineAccepts;
    };
    const Refusal refusals[] = {
        {"unknown driver", [](auto& p) { p.pDriverName = Mutable(W("No driver")); }, 1797, false},
        {"unknown processor", [](auto& p) { p.pPrintProcessor = Mutable(W("noprint")); }, 1798, false},
        {"empty name", [](auto& p) { p.pPrinterName = Mutable(W("")); }, 1801, false},
        {"no name", [](auto& p) { p.pPrinterName = nullptr; }, 1801, false},
        {"backslash", [](auto& p) { p.pPrinterName = Mutable(W("a\\b")); }, 1801, true},
        {"comma", [](auto& p) { p.pPrinterName = Mutable(W("a,b")); }, 1801, true},
        {"unknown port", [](auto& p) { p.pPortName = Mutable(W("NOPORT:")); }, 1796, true},
        {"no port", [](auto& p) { p.pPortName = nullptr; }, 1796, true},
        {"no driver", [](auto& p) { p.pDriverName = nullptr; }, 1797, true},
        {"unknown data type", [](auto& p) { p.pDatatype = Mutable(W("BOGUS")); }, 1804, true},
        {"same name", [](auto& p) { p.pPrinterName = Mutable(W("TAVLEN platform PRINTER")); }, 1802, true},
    };
    const PrinterOwner printer = InstallPrinter();
    const auto before = PrinterNames();
    for (const Refusal& refusal : refusals)
    {
        if (refusal.wineAccepts && IsWine())
            continue; // Wine takes it, or crashes
        SCOPED_TRACE(refusal.what);
        PRINTER_INFO_2W info = PrinterInfo(W("Tavlen Platform Other"));
        refusal.spoil(info);
        EXPECT_EQ(AddPrinterW(nullptr, 2, reinterpret_cast<BYTE*>(&info)), nullptr);
        EXPECT_EQ(GetLastError(), refusal.error);
    }
    EXPECT_EQ(PrinterNames(), before);
    PRINTER_INFO_2W info = PrinterInfo();
    EXPECT_EQ(AddPrinterW(nullptr, 9, reinterpret_cast<BYTE*>(&info)), nullptr);
    EXPECT_EQ(GetLastError(), ERROR_INVALID_LEVEL);
    EXPECT_EQ(AddPrinterW(nullptr, 2, nullptr), nullptr);
    EXPECT_EQ(GetLastError(), ERROR_INVALID_PARAMETER);
}

// Every function that takes a handle finds out what is none: null, noise, and one that is closed.
TEST_F(SpoolerPrinters, AreNotReachedThroughWhatIsNoHandle)
{
    struct Call
    {
        const char* what;
        std::function<DWORD(HANDLE)> error;
    };
    static std::array<BYTE, 4096> buffer;
    static DWORD needed;
    const auto errorOf = [](BOOL done)
    {
        return done ? ERROR_SUCCESS : GetLastError();
    };
    const Call calls[] = {
        {"GetPrinterW",
         [&](HANDLE h)
         {
             return errorOf(GetPrinterW(h, 2, buffer.data(), 4096, &needed));
         }},
        {"GetPrinterDriverW",
         [&](HANDLE h)
         {
             return errorOf(GetPrinterDriverW(h, nullptr, 3, buffer.data(), 4096, &needed));
         }},
        {"GetFormW",
         [&](HANDLE h)
         {
             return errorOf(GetFormW(h, Mutable(W("A4")), 1, buffer.data(), 4096, &needed));
         }},
        {"EnumFormsW",
         [&](HANDLE h)
         {
             DWORD count = 0;
             return errorOf(EnumFormsW(h, 1, buffer.data(), 4096, &needed, &count));
         }},
        {"GetPrinterDataExW",
         [&](HANDLE h)
         {
             return GetPrinterDataExW(h, W("K"), W("v"), nullptr, buffer.data(), 4096, &needed);
         }},
        {"SetPrinterDataExW",
         [&](HANDLE h)
         {
             return SetPrinterDataExW(h, W("K"), W("v"), 3, buffer.data(), 4);
         }},
        {"DeletePrinter",
         [&](HANDLE h)
         {
             return errorOf(DeletePrinter(h));
         }},
        {"ClosePrinter",
         [&](HANDLE h)
         {
             return errorOf(ClosePrinter(h));
         }},
    };
    PrinterOwner printer = InstallPrinter();
    const HANDLE closed = printer.Get();
    printer.Close();
    for (const HANDLE handle : {HANDLE{nullptr}, closed, reinterpret_cast<HANDLE>(0x7654321)})
    {
        for (const Call& call : calls)
        {
            SCOPED_TRACE(call.what);
            EXPECT_EQ(call.error(handle), ERROR_INVALID_HANDLE);
        }
    }
}

TEST_F(SpoolerPrinters, RefuseUnknownLevels)
{
    const PrinterOwner printer = InstallPrinter();
    std::array<BYTE, 64> buffer = {};
    DWORD needed = 0;
    DWORD count = 0;
    const auto refused = [](BOOL done)
    {
        return !done && GetLastError() == ERROR_INVALID_LEVEL;
    };
    EXPECT_TRUE(refused(GetPrinterW(printer.Get(), 77, buffer.data(), 64, &needed)));
    EXPECT_TRUE(refused(EnumPrintersW(PRINTER_ENUM_LOCAL, nullptr, 77, buffer.data(), 64, &needed, &count)));
    EXPECT_TRUE(refused(GetPrinterDriverW(printer.Get(), nullptr, 77, buffer.data(), 64, &needed)));
    EXPECT_TRUE(refused(GetFormW(printer.Get(), Mutable(W("A4")), 77, buffer.data(), 64, &needed)));
    EXPECT_TRUE(refused(EnumFormsW(printer.Get(), 77, buffer.data(), 64, &needed, &count)));
    EXPECT_TRUE(refused(EnumPortsW(nullptr, 77, buffer.data(), 64, &needed, &count)));
    EXPECT_TRUE(refused(GetPrinterDriverDirectoryW(nullptr, nullptr, 77, buffer.data(), 64, &needed)));
}

TEST_F(SpoolerPrinters, KeepWhatIsSet)
{
    const PrinterOwner printer = InstallPrinter();
    struct
    {
        DEVMODEW publicPart = {};
        std::array<BYTE, 10> privatePart = {};
    } devMode;
    devMode.publicPart.dmSize = sizeof(DEVMODEW);
    devMode.publicPart.dmDriverExtra = 10;
    devMode.publicPart.dmCopies = 5;
    devMode.privatePart.fill(0xA7);
    PRINTER_INFO_2W info = PrinterInfo();
    info.pComment = Mutable(W("another comment"));
    info.pPortName = Mutable(W("LPT1:"));
    info.pDevMode = &devMode.publicPart;
    ASSERT_TRUE(SetPrinterW(printer.Get(), 2, reinterpret_cast<BYTE*>(&info), 0)) << GetLastError();

    const auto set = PrinterAnswer<PRINTER_INFO_2W>(PrinterOwner::Open(kPrinter).Get(), 2);
    ASSERT_TRUE(set.IsGood());
    EXPECT_EQ(WideString(set->pComment), W("another comment"));
    EXPECT_EQ(WideString(set->pPortName), W("LPT1:"));
    ASSERT_NE(set->pDevMode, nullptr);
    EXPECT_EQ(set->pDevMode->dmCopies, 5);
    ASSERT_EQ(set->pDevMode->dmDriverExtra, 10);
    const BYTE* const privatePart = reinterpret_cast<const BYTE*>(set->pDevMode) + set->pDevMode->dmSize;
    EXPECT_TRUE(std::equal(devMode.privatePart.begin(), devMode.privatePart.end(), privatePart));
}

// Whether a printer is still found while it is deleted but open differs between the platforms.
TEST_F(SpoolerPrinters, AreGoneWithTheirDataWhenDeletedAndClosed)
{
    BYTE value = 1;
    PrinterOwner printer = InstallPrinter();
    ASSERT_EQ(SetPrinterDataExW(printer.Get(), W("K"), W("v"), REG_BINARY, &value, 1), ERROR_SUCCESS);
    ASSERT_TRUE(DeletePrinter(printer.Get()));
    printer.Close();
    EXPECT_EQ(PrinterOwner::Open(kPrinter).Get(), nullptr);

    // A printer of the same name is another one.
    const PrinterOwner second = InstallPrinter();
    DWORD needed = 0;
    EXPECT_EQ(GetPrinterDataExW(second.Get(), W("K"), W("v"), nullptr, &value, 1, &needed), ERROR_FILE_NOT_FOUND);
}

TEST_F(SpoolerPrinters, StayWhenTheHandleMayNotChangeThem)
{
    if (IsWine())
        GTEST_SKIP() << "Wine does not check access";
    const PrinterOwner printer = InstallPrinter();
    const PrinterOwner reader = PrinterOwner::Open(kPrinter, PRINTER_ACCESS_USE);
    PRINTER_INFO_2W info = PrinterInfo();
    BYTE value = 1;
    EXPECT_FALSE(DeletePrinter(reader.Get()));
    EXPECT_EQ(GetLastError(), ERROR_ACCESS_DENIED);
    EXPECT_FALSE(SetPrinterW(reader.Get(), 2, reinterpret_cast<BYTE*>(&info), 0));
    EXPECT_EQ(GetLastError(), ERROR_ACCESS_DENIED);
    EXPECT_EQ(SetPrinterDataExW(reader.Get(), W("K"), W("v"), REG_BINARY, &value, 1), ERROR_ACCESS_DENIED);
}

TEST(SpoolerPorts, HaveTheFilePort)
{
    const Answer<PORT_INFO_2W> ports([](LPBYTE bytes, DWORD size, LPDWORD needed, LPDWORD count)
                                     { return EnumPortsW(nullptr, 2, bytes, size, needed, count); });
    ASSERT_TRUE(ports.IsGood());
    std::vector<WideString> names;
    for (DWORD index = 0; index < ports.Count(); ++index)
        names.emplace_back(ports[index].pPortName);
    EXPECT_NE(std::find(names.begin(), names.end(), W("FILE:")), names.end());
    EXPECT_NE(std::find(names.begin(), names.end(), W("LPT1:")), names.end());
}
