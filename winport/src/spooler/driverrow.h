// DriverRow: a driver as the store keeps it. Its files are named without folder; they lie in the driver directory.
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "spooler/store.h"

namespace winport::spooler
{

inline constexpr DWORD kDriverVersion = 3; // user-mode drivers, the one version there is

struct DriverRow
{
    std::int64_t id = 0;
    std::u16string name;
    DWORD version = kDriverVersion;
    std::u16string driverFile;
    std::u16string dataFile;
    std::u16string configFile;
    std::u16string helpFile; // may be empty, the three above may not
    std::u16string monitor;
    std::u16string datatype;
    std::uint64_t date = 0; // FILETIME
    std::uint64_t driverVersion = 0;
    std::u16string manufacturer;
    std::u16string url;
    std::u16string hardwareId;
    std::u16string provider;
    std::vector<std::u16string> dependentFiles;
    std::vector<std::u16string> previousNames;

    // Each once, in the order above.
    [[nodiscard]] std::vector<std::u16string> Files() const;
};

std::optional<std::int64_t> FindDriver(Store& store, std::u16string_view name);
// Throws ERROR_UNKNOWN_PRINTER_DRIVER when there is no such row.
DriverRow ReadDriver(Store& store, std::int64_t id);
std::vector<DriverRow> ReadDrivers(Store& store); // by name
// A driver of that name is replaced, its printers keep it.
void WriteDriver(Store& store, const DriverRow& driver);

// The folder above the versions' own, and the one in which the files of our version lie.
std::filesystem::path DriverDirectory(const std::filesystem::path& storeFolder);
std::filesystem::path DriverVersionDirectory(const std::filesystem::path& storeFolder);

} // namespace winport::spooler
