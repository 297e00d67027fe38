// Adding, changing and deleting printers.
#include <winspool.h>

#include <algorithm>

#include "spooler/devmodebytes.h"
#include "spooler/driverrow.h"
#include "spooler/names.h"
#include "spooler/ports.h"
#include "spooler/printerhandle.h"
#include "spooler/printerrow.h"
#include "spooler/win32error.h"

namespace winport::spooler
{

namespace
{

constexpr std::size_t kLongestName = 220;

constexpr std::u16string_view kPrintProcessor = u"winprint";

// What winprint takes.
constexpr std::u16string_view kDatatypes[] = {
    u"RAW",          u"RAW [FF appended]", u"RAW [FF auto]", u"NT EMF 1.003", u"NT EMF 1.006",
    u"NT EMF 1.007", u"NT EMF 1.008",      u"TEXT",          u"XPS_PASS",
};

bool IsPrinterName(std::u16string_view name) noexcept
{
    const auto isForbidden = [](WCHAR character)
    {
        return character < u' ' || character == u'\\' || character == u',' || character == u'!';
    };
    return !name.empty() && name.size() <= kLongestName && name.front() != u' ' && name.back() != u' ' &&
           std::none_of(name.begin(), name.end(), isForbidden);
}

bool IsDatatype(std::u16string_view name)
{
    return std::any_of(std::begin(kDatatypes), std::end(kDatatypes),
                       [&](std::u16string_view known) { return EqualIgnoringCase(name, known); });
}

void TakePort(PrinterRow& printer, std::u16string_view port)
{
    Require(IsPort(port), ERROR_UNKNOWN_PORT);
    printer.port = port;
}

void TakePrintProcessor(PrinterRow& printer, std::u16string_view processor)
{
    Require(EqualIgnoringCase(processor, kPrintProcessor), ERROR_UNKNOWN_PRINTPROCESSOR);
    printer.printProcessor = processor;
}

void TakeDriver(Store& store, PrinterRow& printer, std::u16string_view name)
{
    const std::optional<std::int64_t> driver = FindDriver(store, name);
    Require(driver.has_value(), ERROR_UNKNOWN_PRINTER_DRIVER);
    printer.driver = *driver;
}

// What adding and setting have in common.
void TakeTextsAndNumbers(PrinterRow& printer, const PRINTER_INFO_2W& info)
{
    const std::u16string_view datatype = ViewOf(info.pDatatype);
    Require(datatype.empty() || IsDatatype(datatype), ERROR_INVALID_DATATYPE);
    printer.share = ViewOf(info.pShareName);
    printer.comment = ViewOf(info.pComment);
    printer.location = ViewOf(info.pLocation);
    printer.separatorFile = ViewOf(info.pSepFile);
    printer.datatype = datatype.empty() ? kDatatypes[0] : datatype;
    printer.parameters = ViewOf(info.pParameters);
    printer.attributes = info.Attributes | PRINTER_ATTRIBUTE_LOCAL;
    printer.priority = info.Priority == NO_PRIORITY ? DEF_PRIORITY : info.Priority;
    Require(printer.priority <= MAX_PRIORITY, ERROR_INVALID_PARAMETER);
    printer.defaultPriority = info.DefaultPriority;
    printer.startTime = info.StartTime;
    printer.untilTime = info.UntilTime;
}

// The printer's handle: nothing can fail any more once it is in the store.
ScopedPrinterHandle Add(const std::filesystem::path& folder, const PRINTER_INFO_2W& info)
{
    PrinterRow printer;
    printer.name = ViewOf(info.pPrinterName);
    Require(IsPrinterName(printer.name), ERROR_INVALID_PRINTER_NAME);

    Store store(folder);
    Transaction transaction(store, Transaction::Kind::Write);
    Require(!FindPrinter(store, printer.name), ERROR_PRINTER_ALREADY_EXISTS);
    TakeDriver(store, printer, ViewOf(info.pDriverName));
    TakePort(printer, ViewOf(info.pPortName));
    TakePrintProcessor(printer, ViewOf(info.pPrintProcessor));
    TakeTextsAndNumbers(printer, info);
    printer.devMode = DevModeBytes(info.pDevMode);
    InsertPrinter(store, printer);
    ScopedPrinterHandle handle({folder, printer.id, PRINTER_ALL_ACCESS});
    transaction.Commit();
    return handle;
}

// Null and empty texts that a printer cannot be without leave what was there.
void SetRow(const PrinterHandle& handle, const PRINTER_INFO_2W& info)
{
    Store store(handle.folder);
    Transaction transaction(store, Transaction::Kind::Write);
    PrinterRow printer = ReadPrinter(store, handle.printer);
    if (const auto driver = ViewOf(info.pDriverName); !driver.empty())
        TakeDriver(store, printer, driver);
    if (const auto port = ViewOf(info.pPortName); !port.empty())
        TakePort(printer, port);
    if (const auto processor = ViewOf(info.pPrintProcessor); !processor.empty())
        TakePrintProcessor(printer, processor);
    TakeTextsAndNumbers(printer, info);
    if (info.pDevMode != nullptr)
        printer.devMode = DevModeBytes(info.pDevMode);
    UpdatePrinter(store, printer);
    transaction.Commit();
}

// With its data, which the table's own rule deletes.
void DeleteRow(const PrinterHandle& handle)
{
    Store store(handle.folder);
    Transaction transaction(store, Transaction::Kind::Write);
    store.Prepare("DELETE FROM printers WHERE id = ?").Bind(handle.printer).Execute();
    Require(store.Changes() == 1, ERROR_PRINTER_DELETED);
    transaction.Commit();
}

} // namespace

} // namespace winport::spooler

using namespace winport::spooler;

HANDLE WINAPI AddPrinterW(LPWSTR server, DWORD level, LPBYTE info)
{
    HANDLE added = nullptr;
    Succeeds(
        [&]
        {
            RequireLocalServer(server);
            Require(level == 2, ERROR_INVALID_LEVEL);
            Require(info != nullptr, ERROR_INVALID_PARAMETER);
            added = Add(StoreFolder(), *reinterpret_cast<const PRINTER_INFO_2W*>(info)).Release();
        });
    return added;
}

BOOL WINAPI SetPrinterW(HANDLE printer, DWORD level, LPBYTE info, DWORD command)
{
    return Succeeds(
        [&]
        {
            const auto handle = FindAdministerHandle(printer);
            Require(level == 2, ERROR_INVALID_LEVEL);
            Require(command == 0, ERROR_INVALID_PRINTER_COMMAND);
            Require(info != nullptr, ERROR_INVALID_PARAMETER);
            SetRow(*handle, *reinterpret_cast<const PRINTER_INFO_2W*>(info));
        });
}

BOOL WINAPI DeletePrinter(HANDLE printer)
{
    return Succeeds([&] { DeleteRow(*FindAdministerHandle(printer)); });
}
