#include "spooler/driverrow.h"

#include <algorithm>

#include "spooler/names.h"
#include "spooler/win32error.h"

namespace winport::spooler
{

namespace
{

enum ListKind : int
{
    DependentFiles = 1,
    PreviousNames = 2,
};

std::vector<std::u16string> ReadList(Store& store, std::int64_t driver, ListKind kind)
{
    std::vector<std::u16string> list;
    Statement row = store.Prepare("SELECT text FROM driver_lists WHERE driver = ? AND kind = ? ORDER BY position");
    row.Bind(driver).Bind(static_cast<int>(kind));
    while (row.Step())
        list.push_back(row.Text());
    return list;
}

void WriteList(Store& store, std::int64_t driver, ListKind kind, const std::vector<std::u16string>& list)
{
    for (std::size_t position = 0; position < list.size(); ++position)
    {
        store.Prepare("INSERT INTO driver_lists(driver, kind, position, text) VALUES (?, ?, ?, ?)")
            .Bind(driver)
            .Bind(static_cast<int>(kind))
            .Bind(position)
            .Bind(list[position])
            .Execute();
    }
}

} // namespace

std::vector<std::u16string> DriverRow::Files() const
{
    std::vector<std::u16string> files;
    const auto add = [&](const std::u16string& file)
    {
        if (!file.empty() && std::find(files.begin(), files.end(), file) == files.end())
            files.push_back(file);
    };
    for (const std::u16string* file : {&driverFile, &dataFile, &configFile, &helpFile})
        add(*file);
    std::for_each(dependentFiles.begin(), dependentFiles.end(), add);
    return files;
}

std::optional<std::int64_t> FindDriver(Store& store, std::u16string_view name)
{
    Statement row = store.Prepare("SELECT id FROM drivers WHERE folded = ?");
    row.Bind(FoldCase(name));
    if (!row.Step())
        return std::nullopt;
    return row.Integer();
}

DriverRow ReadDriver(Store& store, std::int64_t id)
{
    Statement row =
        store.Prepare("SELECT name, version, driver_file, data_file, config_file, help_file, monitor, datatype, date,"
                      " driver_version, manufacturer, url, hardware_id, provider FROM drivers WHERE id = ?");
    Require(row.Bind(id).Step(), ERROR_UNKNOWN_PRINTER_DRIVER);
    DriverRow driver;
    driver.id = id;
    driver.name = row.Text();
    driver.version = row.Number();
    driver.driverFile = row.Text();
    driver.dataFile = row.Text();
    driver.configFile = row.Text();
    driver.helpFile = row.Text();
    driver.monitor = row.Text();
    driver.datatype = row.Text();
    driver.date = static_cast<std::uint64_t>(row.Integer());
    driver.driverVersion = static_cast<std::uint64_t>(row.Integer());
    driver.manufacturer = row.Text();
    driver.url = row.Text();
    driver.hardwareId = row.Text();
    driver.provider = row.Text();
    driver.dependentFiles = ReadList(store, id, DependentFiles);
    driver.previousNames = ReadList(store, id, PreviousNames);
    return driver;
}

std::vector<DriverRow> ReadDrivers(Store& store)
{
    std::vector<DriverRow> drivers;
    Statement row = store.Prepare("SELECT id FROM drivers ORDER BY folded");
    while (row.Step())
        drivers.push_back(ReadDriver(store, row.Integer()));
    return drivers;
}

void WriteDriver(Store& store, const DriverRow& driver)
{
    store
        .Prepare("INSERT INTO drivers(name, folded, version, driver_file, data_file, config_file, help_file, monitor,"
                 " datatype, date, driver_version, manufacturer, url, hardware_id, provider)"
                 " VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?)"
                 " ON CONFLICT(folded) DO UPDATE SET name = excluded.name, version = excluded.version,"
                 " driver_file = excluded.driver_file, data_file = excluded.data_file,"
                 " config_file = excluded.config_file, help_file = excluded.help_file, monitor = excluded.monitor,"
                 " datatype = excluded.datatype, date = excluded.date, driver_version = excluded.driver_version,"
                 " manufacturer = excluded.manufacturer, url = excluded.url, hardware_id = excluded.hardware_id,"
                 " provider = excluded.provider")
        .Bind(driver.name)
        .Bind(FoldCase(driver.name))
        .Bind(driver.version)
        .Bind(driver.driverFile)
        .Bind(driver.dataFile)
        .Bind(driver.configFile)
        .Bind(driver.helpFile)
        .Bind(driver.monitor)
        .Bind(driver.datatype)
        .Bind(driver.date)
        .Bind(driver.driverVersion)
        .Bind(driver.manufacturer)
        .Bind(driver.url)
        .Bind(driver.hardwareId)
        .Bind(driver.provider)
        .Execute();
    const std::int64_t id = FindDriver(store, driver.name).value();
    store.Prepare("DELETE FROM driver_lists WHERE driver = ?").Bind(id).Execute();
    WriteList(store, id, DependentFiles, driver.dependentFiles);
    WriteList(store, id, PreviousNames, driver.previousNames);
}

std::filesystem::path DriverDirectory(const std::filesystem::path& storeFolder)
{
    return storeFolder / "drivers" / "x64";
}

std::filesystem::path DriverVersionDirectory(const std::filesystem::path& storeFolder)
{
    return DriverDirectory(storeFolder) / std::to_string(kDriverVersion);
}

} // namespace winport::spooler
