// PrinterRow: a printer as the store keeps it, and the statements that read and write it.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "spooler/store.h"

namespace winport::spooler
{

struct PrinterRow
{
    std::int64_t id = 0;
    std::u16string name;
    std::int64_t driver = 0;
    std::u16string driverName; // read only
    std::u16string port;
    std::u16string share;
    std::u16string comment;
    std::u16string location;
    std::u16string separatorFile;
    std::u16string printProcessor;
    std::u16string datatype;
    std::u16string parameters;
    DWORD attributes = 0;
    DWORD priority = 0;
    DWORD defaultPriority = 0;
    DWORD startTime = 0;
    DWORD untilTime = 0;
    Blob devMode; // empty, or a whole DEVMODEW with its private part
};

std::optional<std::int64_t> FindPrinter(Store& store, std::u16string_view name);
// Throws ERROR_PRINTER_DELETED when there is no such row any more.
PrinterRow ReadPrinter(Store& store, std::int64_t printer);
std::vector<PrinterRow> ReadPrinters(Store& store); // by name

// Gives the row its id.
void InsertPrinter(Store& store, PrinterRow& printer);
// Everything but the name.
void UpdatePrinter(Store& store, const PrinterRow& printer);

} // namespace winport::spooler
