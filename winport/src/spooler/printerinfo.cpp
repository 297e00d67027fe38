// Opening printers, and what they answer about themselves.
#include <winspool.h>

#include "spooler/bufferwriter.h"
#include "spooler/devmodebytes.h"
#include "spooler/names.h"
#include "spooler/printerhandle.h"
#include "spooler/printerrow.h"
#include "spooler/win32error.h"

namespace winport::spooler
{

namespace
{

PRINTER_INFO_1W Info1(const PrinterRow& printer, BufferWriter& writer)
{
    return {
        .Flags = PRINTER_ENUM_ICON8,
        .pDescription = writer.Text(printer.name + u',' + printer.driverName + u',' + printer.location),
        .pName = writer.Text(printer.name),
        .pComment = writer.Text(printer.comment),
    };
}

PRINTER_INFO_2W Info2(const PrinterRow& printer, BufferWriter& writer)
{
    return {
        .pServerName = nullptr,
        .pPrinterName = writer.Text(printer.name),
        .pShareName = writer.Text(printer.share),
        .pPortName = writer.Text(printer.port),
        .pDriverName = writer.Text(printer.driverName),
        .pComment = writer.Text(printer.comment),
        .pLocation = writer.Text(printer.location),
        .pDevMode =
            reinterpret_cast<LPDEVMODEW>(IsWholeDevMode(printer.devMode) ? writer.Bytes(printer.devMode) : nullptr),
        .pSepFile = writer.Text(printer.separatorFile),
        .pPrintProcessor = writer.Text(printer.printProcessor),
        .pDatatype = writer.Text(printer.datatype),
        .pParameters = writer.Text(printer.parameters),
        .pSecurityDescriptor = nullptr,
        .Attributes = printer.attributes,
        .Priority = printer.priority,
        .DefaultPriority = printer.defaultPriority,
        .StartTime = printer.startTime,
        .UntilTime = printer.untilTime,
        .Status = 0,
        .cJobs = 0,
        .AveragePPM = 0,
    };
}

PRINTER_INFO_4W Info4(const PrinterRow& printer, BufferWriter& writer)
{
    return {
        .pPrinterName = writer.Text(printer.name),
        .pServerName = nullptr,
        .Attributes = printer.attributes,
    };
}

PRINTER_INFO_5W Info5(const PrinterRow& printer, BufferWriter& writer)
{
    return {
        .pPrinterName = writer.Text(printer.name),
        .pPortName = writer.Text(printer.port),
        .Attributes = printer.attributes,
        .DeviceNotSelectedTimeout = 15'000, // Windows' defaults, milliseconds
        .TransmissionRetryTimeout = 45'000,
    };
}

bool IsKnownLevel(DWORD level) noexcept
{
    return level == 1 || level == 2 || level == 4 || level == 5;
}

void AnswerPrinters(const CallerBuffer& buffer, LPDWORD returned, DWORD level, const std::vector<PrinterRow>& printers)
{
    constexpr DWORD tooSmall = ERROR_INSUFFICIENT_BUFFER;
    switch (level)
    {
    case 1:
        return AnswerRecords<PRINTER_INFO_1W>(buffer, returned, tooSmall, printers, Info1);
    case 2:
        return AnswerRecords<PRINTER_INFO_2W>(buffer, returned, tooSmall, printers, Info2);
    case 4:
        return AnswerRecords<PRINTER_INFO_4W>(buffer, returned, tooSmall, printers, Info4);
    default:
        return AnswerRecords<PRINTER_INFO_5W>(buffer, returned, tooSmall, printers, Info5);
    }
}

PrinterHandle OpenByName(std::u16string_view name, ACCESS_MASK desired)
{
    const std::filesystem::path folder = StoreFolder();
    Store store(folder);
    const std::optional<std::int64_t> printer = FindPrinter(store, name);
    Require(printer.has_value(), ERROR_INVALID_PRINTER_NAME);
    return {folder, *printer, desired == 0 ? PRINTER_ACCESS_USE : desired};
}

// The server has no row and needs no store until it is asked something.
PrinterHandle OpenServer(ACCESS_MASK desired)
{
    return {StoreFolder(), 0, desired == 0 ? SERVER_ACCESS_ENUMERATE : desired};
}

} // namespace

} // namespace winport::spooler

using namespace winport::spooler;

BOOL WINAPI OpenPrinterW(LPWSTR name, LPHANDLE printer, LPPRINTER_DEFAULTSW defaults)
{
    return Succeeds(
        [&]
        {
            Require(printer != nullptr, ERROR_INVALID_PARAMETER);
            *printer = nullptr;
            Require(name == nullptr || *name != 0, ERROR_INVALID_PARAMETER);
            const ACCESS_MASK desired = defaults == nullptr ? 0 : defaults->DesiredAccess;
            *printer = MakeHandle(name == nullptr ? OpenServer(desired) : OpenByName(ViewOf(name), desired));
        });
}

BOOL WINAPI ClosePrinter(HANDLE printer)
{
    return Succeeds([&] { CloseSpoolerHandle(printer); });
}

BOOL WINAPI GetPrinterW(HANDLE printer, DWORD level, LPBYTE info, DWORD size, LPDWORD needed)
{
    return Succeeds(
        [&]
        {
            const auto handle = FindPrinterHandle(printer);
            const CallerBuffer buffer{info, size, needed};
            RequireUsable(buffer);
            Require(IsKnownLevel(level), ERROR_INVALID_LEVEL);
            Store store(handle->folder);
            AnswerPrinters(buffer, nullptr, level, {ReadPrinter(store, handle->printer)});
        });
}

BOOL WINAPI EnumPrintersW(DWORD flags, LPWSTR name, DWORD level, LPBYTE info, DWORD size, LPDWORD needed,
                          LPDWORD returned)
{
    return Succeeds(
        [&]
        {
            const CallerBuffer buffer{info, size, needed};
            RequireUsable(buffer, returned);
            Require(flags != 0, ERROR_INVALID_FLAGS);
            Require(IsKnownLevel(level), ERROR_INVALID_LEVEL);
            if ((flags & PRINTER_ENUM_NAME) != 0)
                RequireLocalServer(name);
            std::vector<PrinterRow> printers;
            if ((flags & (PRINTER_ENUM_LOCAL | PRINTER_ENUM_NAME)) != 0)
            {
                Store store(StoreFolder());
                printers = ReadPrinters(store);
            }
            AnswerPrinters(buffer, returned, level, printers);
        });
}
