#include "spooler/printerrow.h"

#include "spooler/names.h"
#include "spooler/win32error.h"

namespace winport::spooler
{

namespace
{

// With the WHERE or ORDER clause that follows.
std::string SelectPrinters(const char* clause)
{
    return std::string("SELECT printers.id, printers.name, printers.driver, drivers.name, port, share, comment,"
                       " location, separator_file, print_processor, printers.datatype, parameters, attributes,"
                       " priority, default_priority, start_time, until_time, devmode"
                       " FROM printers JOIN drivers ON drivers.id = printers.driver ") +
           clause;
}

PrinterRow ReadRow(Statement& row)
{
    PrinterRow printer;
    printer.id = row.Integer();
    printer.name = row.Text();
    printer.driver = row.Integer();
    printer.driverName = row.Text();
    printer.port = row.Text();
    printer.share = row.Text();
    printer.comment = row.Text();
    printer.location = row.Text();
    printer.separatorFile = row.Text();
    printer.printProcessor = row.Text();
    printer.datatype = row.Text();
    printer.parameters = row.Text();
    printer.attributes = row.Number();
    printer.priority = row.Number();
    printer.defaultPriority = row.Number();
    printer.startTime = row.Number();
    printer.untilTime = row.Number();
    printer.devMode = row.Bytes();
    return printer;
}

// In the order in which both writing statements name the columns.
void BindRow(Statement& statement, const PrinterRow& printer)
{
    statement.Bind(printer.driver)
        .Bind(printer.port)
        .Bind(printer.share)
        .Bind(printer.comment)
        .Bind(printer.location)
        .Bind(printer.separatorFile)
        .Bind(printer.printProcessor)
        .Bind(printer.datatype)
        .Bind(printer.parameters)
        .Bind(printer.attributes)
        .Bind(printer.priority)
        .Bind(printer.defaultPriority)
        .Bind(printer.startTime)
        .Bind(printer.untilTime)
        .Bind(std::span<const BYTE>(printer.devMode));
}

} // namespace

std::optional<std::int64_t> FindPrinter(Store& store, std::u16string_view name)
{
    Statement row = store.Prepare("SELECT id FROM printers WHERE folded = ?");
    row.Bind(FoldCase(name));
    if (!row.Step())
        return std::nullopt;
    return row.Integer();
}

PrinterRow ReadPrinter(Store& store, std::int64_t printer)
{
    Statement row = store.Prepare(SelectPrinters("WHERE printers.id = ?").c_str());
    Require(row.Bind(printer).Step(), ERROR_PRINTER_DELETED);
    return ReadRow(row);
}

std::vector<PrinterRow> ReadPrinters(Store& store)
{
    std::vector<PrinterRow> printers;
    Statement row = store.Prepare(SelectPrinters("ORDER BY printers.folded").c_str());
    while (row.Step())
        printers.push_back(ReadRow(row));
    return printers;
}

void InsertPrinter(Store& store, PrinterRow& printer)
{
    Statement insert = store.Prepare(
        "INSERT INTO printers(driver, port, share, comment, location, separator_file, print_processor, datatype,"
        " parameters, attributes, priority, default_priority, start_time, until_time, devmode, name, folded)"
        " VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?)");
    BindRow(insert, printer);
    insert.Bind(printer.name).Bind(FoldCase(printer.name)).Execute();
    printer.id = store.LastRow();
}

void UpdatePrinter(Store& store, const PrinterRow& printer)
{
    Statement update = store.Prepare(
        "UPDATE printers SET driver = ?, port = ?, share = ?, comment = ?, location = ?, separator_file = ?,"
        " print_processor = ?, datatype = ?, parameters = ?, attributes = ?, priority = ?, default_priority = ?,"
        " start_time = ?, until_time = ?, devmode = ? WHERE id = ?");
    BindRow(update, printer);
    update.Bind(printer.id).Execute();
}

} // namespace winport::spooler
