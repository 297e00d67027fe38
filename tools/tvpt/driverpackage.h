// The driver package: the files that a printer's driver consists of, and the driver's life in the spooler.
#pragma once

#include <windows.h>

#include <filesystem>
#include <string_view>
#include <vector>

#include <tvcore/printermodel.h>
#include <tvutil/cxstring.h>

#include "printerhandle.h"

// The module that holds the provider; a driver's dependent files name it.
inline constexpr std::string_view kProviderModule = "tvptpc_B.dll";
inline constexpr std::string_view kUtilityModule = "tvutil_B.dll";
inline constexpr std::string_view kCoreModule = "tvcore_B.dll";
inline constexpr std::string_view kConfigurationModule = "tvui_B.dll";

class DriverPackage
{
public:
    // The modules come from the program's own folder; the model becomes the driver's data file. Throws Failure when a
    // file is missing, or when the spooler's one folder for drivers already holds another driver's data file of this
    // name, or this driver with another model: nobody's printers change behind their backs. A driver of ours that no
    // printer uses is in nobody's way: Install removes it first.
    DriverPackage(const PrinterModel& model, std::filesystem::path modelFile);

    // Copies the files and records the driver. Throws Failure.
    void Install();
    // Takes back what Install did, unless the driver was there before. Never throws.
    void RollBack() noexcept;

private:
    CXString m_name;
    CXString m_workflowModule; // empty: the driver has none
    std::filesystem::path m_modelFile;
    std::vector<CXString> m_left; // drivers of ours that no printer uses
    bool m_wasInstalled = false;
    bool m_installed = false;
};

// Whether it is a driver that this program installs: it has the module that holds the provider.
[[nodiscard]] bool IsOurDriver(const DriverSummary& driver);
// Whether a printer has it.
[[nodiscard]] bool IsDriverUsed(const CXString& name);
// By the file's name, without regard to case.
[[nodiscard]] bool HasModule(const DriverSummary& driver, const CXString& module);

// The spooler's folder for drivers; it exists. Throws Failure.
[[nodiscard]] std::filesystem::path DriverFolder();

// Whether the file of a driver is there, as the spooler names it: a module goes by its .dll name, also where modules
// are shared objects.
[[nodiscard]] bool DriverFileExists(const std::filesystem::path& file);

// Removes a driver that no printer uses any more. Returns the Win32 error.
[[nodiscard]] DWORD RemoveDriver(const CXString& name) noexcept;
