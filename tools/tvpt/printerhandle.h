// Printers as the spooler knows them: the handle's owner, and its answers with their texts copied out.
//
// Everything here throws Failure, which names the printer and the Win32 error.
#pragma once

#include <windows.h>
#include <winspool.h>

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include <tvutil/cxstring.h>

// The environment variable that chooses the spooler's store, where it can be chosen.
inline constexpr const WCHAR* kStoreVariable = W("TVPT_STORE");

class PrinterHandle
{
public:
    enum class Access
    {
        Use,
        Administer,
    };

    // A handle that the spooler has just handed out. Null is no printer.
    explicit PrinterHandle(HANDLE printer) noexcept;
    [[nodiscard]] static PrinterHandle Open(const std::string& name, Access access);
    // For use; none when the spooler knows no printer of this name. What else fails is a Failure.
    [[nodiscard]] static std::optional<PrinterHandle> OpenIfExists(const std::string& name);

    ~PrinterHandle();
    PrinterHandle(PrinterHandle&& other) noexcept;
    PrinterHandle& operator=(PrinterHandle&& other) noexcept;

    [[nodiscard]] HANDLE Get() const noexcept;

    // The capability word that the set-up stored; none: it has not, or the printer is not one of ours.
    [[nodiscard]] std::optional<std::uint64_t> Capability() const;
    // How far the set-up has come; 0 also when it has left no word of it.
    [[nodiscard]] DWORD InstallationState() const;
    // Returns the Win32 error.
    [[nodiscard]] DWORD StoreCapability(std::uint64_t word) const;
    // Which workflow module the driver has (tvcore/workflowmodulenames.h); with none the value is taken away, since it
    // is looked for each time. Returns the Win32 error.
    [[nodiscard]] DWORD StoreWorkflowModule(DWORD kind) const;
    // How far the set-up has come. Returns the Win32 error.
    [[nodiscard]] DWORD StoreInstallationState(DWORD state) const;

private:
    [[nodiscard]] DWORD StoreDword(const WCHAR* valueName, DWORD value) const;

    HANDLE m_printer = nullptr;
};

struct PrinterSummary
{
    CXString name;
    CXString driverName;
    CXString portName;
};

struct DriverSummary
{
    CXString name;
    CXString driverFile;
    CXString dataFile;
    CXString configFile;
    std::vector<CXString> dependentFiles;
};

[[nodiscard]] PrinterSummary DescribePrinter(const PrinterHandle& printer, const std::string& name);
[[nodiscard]] DriverSummary DescribeDriver(const PrinterHandle& printer, const std::string& name);
[[nodiscard]] std::vector<PrinterSummary> ListLocalPrinters();
[[nodiscard]] std::vector<DriverSummary> ListDrivers();

// What a failure of the spooler as a whole names: the store's folder where one was chosen.
[[nodiscard]] std::string SpoolerPlace();

// A zero-terminated copy, for the spooler's arguments, which are not const.
[[nodiscard]] std::vector<WCHAR> Terminated(const CXString& text);
