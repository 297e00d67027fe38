#include "printerhandle.h"

#include <array>
#include <cstring>
#include <string_view>
#include <utility>

#include <tvcore/workflowmodulenames.h>
#include <tvutil/printdriver.h>

#include "failure.h"
#include "spoolerquery.h"

namespace
{

constexpr WCHAR kDriverDataKey[] = W("PrinterDriverData");
constexpr DWORD kCapabilitySize = 8;

HANDLE TryOpen(const std::string& name, ACCESS_MASK access)
{
    std::vector<WCHAR> text = Terminated(CXString::FromUtf8(name));
    PRINTER_DEFAULTSW defaults{};
    defaults.DesiredAccess = access;
    HANDLE printer = nullptr;
    SetLastError(ERROR_SUCCESS);
    // An empty name would open the print server itself.
    if (name.empty())
        SetLastError(ERROR_INVALID_PRINTER_NAME);
    else if (OpenPrinterW(text.data(), &printer, access != 0 ? &defaults : nullptr))
        return printer;
    return nullptr;
}

std::vector<CXString> SplitMultiString(const WCHAR* texts)
{
    std::vector<CXString> list;
    while (texts != nullptr && *texts != WCHAR())
    {
        list.emplace_back(texts);
        texts += list.back().Length() + 1;
    }
    return list;
}

} // namespace

PrinterHandle::PrinterHandle(HANDLE printer) noexcept : m_printer(printer)
{
}

PrinterHandle PrinterHandle::Open(const std::string& name, Access access)
{
    HANDLE const printer = TryOpen(name, access == Access::Administer ? PRINTER_ALL_ACCESS : 0);
    if (printer == nullptr)
        FailWithWin32Error("opening the printer", name, GetLastError());
    return PrinterHandle(printer);
}

std::optional<PrinterHandle> PrinterHandle::OpenIfExists(const std::string& name)
{
    HANDLE const printer = TryOpen(name, 0);
    return printer != nullptr ? std::optional<PrinterHandle>(printer) : std::nullopt;
}

PrinterHandle::~PrinterHandle()
{
    if (m_printer != nullptr)
        ClosePrinter(m_printer);
}

PrinterHandle::PrinterHandle(PrinterHandle&& other) noexcept : m_printer(std::exchange(other.m_printer, nullptr))
{
}

PrinterHandle& PrinterHandle::operator=(PrinterHandle&& other) noexcept
{
    std::swap(m_printer, other.m_printer);
    return *this;
}

HANDLE PrinterHandle::Get() const noexcept
{
    return m_printer;
}

std::optional<std::uint64_t> PrinterHandle::Capability() const
{
    std::array<BYTE, kCapabilitySize> bytes{};
    DWORD type = 0;
    DWORD needed = 0;
    const DWORD error = GetPrinterDataExW(m_printer, kDriverDataKey, PrintDriver::kDriverCapabilityValueName, &type,
                                          bytes.data(), kCapabilitySize, &needed);
    if (error != ERROR_SUCCESS || type != REG_BINARY || needed != kCapabilitySize)
        return std::nullopt;
    std::uint64_t word = 0;
    std::memcpy(&word, bytes.data(), sizeof word); // little-endian, as both platforms are
    return word;
}

DWORD PrinterHandle::StoreCapability(std::uint64_t word) const
{
    std::array<BYTE, kCapabilitySize> bytes{};
    std::memcpy(bytes.data(), &word, sizeof word);
    return SetPrinterDataExW(m_printer, kDriverDataKey, PrintDriver::kDriverCapabilityValueName, REG_BINARY,
                             bytes.data(), kCapabilitySize);
}

DWORD PrinterHandle::StoreWorkflowModule(DWORD kind) const
{
    return StoreDword(kWorkflowModuleValueName, kind);
}

DWORD PrinterHandle::StoreInstallationState(DWORD state) const
{
    return StoreDword(PrintDriver::kInstallationStateValueName, state);
}

DWORD PrinterHandle::StoreDword(const WCHAR* valueName, DWORD value) const
{
    std::array<BYTE, sizeof value> bytes{};
    std::memcpy(bytes.data(), &value, sizeof value);
    return SetPrinterDataExW(m_printer, kDriverDataKey, valueName, REG_DWORD, bytes.data(), sizeof value);
}

PrinterSummary DescribePrinter(const PrinterHandle& printer, const std::string& name)
{
    constexpr DWORD kLevel = 2;
    std::vector<BYTE> room;
    const DWORD error = QuerySpooler(room, [&](LPBYTE bytes, DWORD size, LPDWORD needed)
                                     { return GetPrinterW(printer.Get(), kLevel, bytes, size, needed); });
    if (error != ERROR_SUCCESS)
        FailWithWin32Error("reading the printer", name, error);
    const auto& info = *reinterpret_cast<const PRINTER_INFO_2W*>(room.data());
    return {info.pPrinterName, info.pDriverName, info.pPortName};
}

DriverSummary DescribeDriver(const PrinterHandle& printer, const std::string& name)
{
    constexpr DWORD kLevel = 3;
    std::vector<BYTE> room;
    const DWORD error =
        QuerySpooler(room, [&](LPBYTE bytes, DWORD size, LPDWORD needed)
                     { return GetPrinterDriverW(printer.Get(), nullptr, kLevel, bytes, size, needed); });
    if (error != ERROR_SUCCESS)
        FailWithWin32Error("reading the printer's driver", name, error);
    const auto& info = *reinterpret_cast<const DRIVER_INFO_3W*>(room.data());
    return {info.pName, info.pDriverPath, info.pDataFile, info.pConfigFile, SplitMultiString(info.pDependentFiles)};
}

std::vector<PrinterSummary> ListLocalPrinters()
{
    constexpr DWORD kLevel = 2;
    constexpr int kAttempts = 100;
    std::vector<BYTE> room;
    DWORD count = 0;
    DWORD error = ERROR_GEN_FAILURE;
    // That is, no error's name: not every spooler leaves a printer out of the list that goes while the list is made.
    for (int attempt = 0; attempt < kAttempts && error == ERROR_GEN_FAILURE; ++attempt)
        error =
            QuerySpooler(room, [&](LPBYTE bytes, DWORD size, LPDWORD needed)
                         { return EnumPrintersW(PRINTER_ENUM_LOCAL, nullptr, kLevel, bytes, size, needed, &count); });
    if (error != ERROR_SUCCESS)
        FailWithWin32Error("listing the printers", SpoolerPlace(), error);

    std::vector<PrinterSummary> printers;
    const auto* const infos = reinterpret_cast<const PRINTER_INFO_2W*>(room.data());
    for (DWORD index = 0; index < count; ++index)
        printers.push_back({infos[index].pPrinterName, infos[index].pDriverName, infos[index].pPortName});
    return printers;
}

std::string SpoolerPlace()
{
    std::vector<WCHAR> folder(32768); // the most that a variable can hold
    const DWORD length = GetEnvironmentVariableW(kStoreVariable, folder.data(), static_cast<DWORD>(folder.size()));
    return length > 0 && length < folder.size() ? CXString(WStringView(folder.data(), length)).ToUtf8() : "the spooler";
}

std::vector<WCHAR> Terminated(const CXString& text)
{
    std::vector<WCHAR> characters(text.View().begin(), text.View().end());
    characters.push_back(WCHAR());
    return characters;
}
