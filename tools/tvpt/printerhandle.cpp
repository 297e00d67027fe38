#include "printerhandle.h"

#include <array>
#include <cstring>
#include <initializer_list>
#include <string_view>
#include <utility>

#include <tvcore/workflowmodulenames.h>
#include <tvutil/printdriver.h>
#include <tvutil/spoolerbuffer.h>

#include "failure.h"

namespace
{

constexpr WCHAR kDriverDataKey[] = W("PrinterDriverData");

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

// Little-endian, as both platforms are. Nothing when the value is absent or another one, or the printer has gone.
template <class Number>
std::optional<Number> ReadNumber(HANDLE printer, const WCHAR* valueName, DWORD expectedType)
{
    std::array<BYTE, sizeof(Number)> bytes{};
    DWORD type = 0;
    DWORD needed = 0;
    const DWORD error =
        GetPrinterDataExW(printer, kDriverDataKey, valueName, &type, bytes.data(), sizeof(Number), &needed);
    if (error != ERROR_SUCCESS || type != expectedType || needed != sizeof(Number))
        return std::nullopt;
    Number number = 0;
    std::memcpy(&number, bytes.data(), sizeof number);
    return number;
}

// The texts of an answer; nothing when one of them does not lie in it.
std::optional<std::vector<CXString>> TextsOf(const SpoolerBuffer& answer, std::initializer_list<const WCHAR*> places)
{
    std::vector<CXString> texts;
    for (const WCHAR* const place : places)
    {
        const std::optional<WStringView> text = answer.Text(place);
        if (!text)
            return std::nullopt;
        texts.emplace_back(*text);
    }
    return texts;
}

std::optional<PrinterSummary> SummaryOf(const SpoolerBuffer& answer, const PRINTER_INFO_2W& info)
{
    const auto texts = TextsOf(answer, {info.pPrinterName, info.pDriverName, info.pPortName});
    return texts ? std::optional(PrinterSummary{(*texts)[0], (*texts)[1], (*texts)[2]}) : std::nullopt;
}

std::optional<DriverSummary> SummaryOf(const SpoolerBuffer& answer, const DRIVER_INFO_3W& info)
{
    const auto texts = TextsOf(answer, {info.pName, info.pDriverPath, info.pDataFile, info.pConfigFile});
    const auto dependentFiles = answer.Texts(info.pDependentFiles);
    if (!texts || !dependentFiles)
        return std::nullopt;
    return DriverSummary{
        (*texts)[0], (*texts)[1], (*texts)[2], (*texts)[3], {dependentFiles->begin(), dependentFiles->end()}};
}

// The first `count` descriptions of an answer. A Failure when the call failed, or when one is not whole.
template <class Info>
auto SummariesOf(const SpoolerBuffer& answer, DWORD error, DWORD count, const char* what, const std::string& which)
{
    if (error != ERROR_SUCCESS)
        FailWithWin32Error(what, which, error);
    std::vector<typename decltype(SummaryOf(answer, std::declval<const Info&>()))::value_type> summaries;
    for (const Info& info : answer.List<Info>(count))
    {
        auto summary = SummaryOf(answer, info);
        if (!summary)
            FailWithWin32Error(what, which, ERROR_INVALID_DATA);
        summaries.push_back(*std::move(summary));
    }
    return summaries;
}

template <class Info>
auto OnlySummaryOf(const SpoolerBuffer& answer, DWORD error, const char* what, const std::string& which)
{
    auto summaries = SummariesOf<Info>(answer, error, 1, what, which);
    if (summaries.empty())
        FailWithWin32Error(what, which, ERROR_INVALID_DATA);
    return std::move(summaries.front());
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
    if (HANDLE const printer = TryOpen(name, 0))
        return std::optional<PrinterHandle>(printer);
    const DWORD error = GetLastError();
    if (error != ERROR_INVALID_PRINTER_NAME && error != ERROR_INVALID_NAME)
        FailWithWin32Error("opening the printer", name, error);
    return std::nullopt;
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
    return ReadNumber<std::uint64_t>(m_printer, PrintDriver::kDriverCapabilityValueName, REG_BINARY);
}

DWORD PrinterHandle::InstallationState() const
{
    return ReadNumber<DWORD>(m_printer, PrintDriver::kInstallationStateValueName, REG_DWORD).value_or(0);
}

DWORD PrinterHandle::StoreCapability(std::uint64_t word) const
{
    std::array<BYTE, sizeof word> bytes{};
    std::memcpy(bytes.data(), &word, sizeof word);
    return SetPrinterDataExW(m_printer, kDriverDataKey, PrintDriver::kDriverCapabilityValueName, REG_BINARY,
                             bytes.data(), sizeof word);
}

DWORD PrinterHandle::StoreWorkflowModule(DWORD kind) const
{
    if (kind != kNoWorkflowModule)
        return StoreDword(kWorkflowModuleValueName, kind);
    // Not every spooler can delete: one that has no such value is not asked to.
    DWORD type = 0;
    DWORD needed = 0;
    const DWORD present =
        GetPrinterDataExW(m_printer, kDriverDataKey, kWorkflowModuleValueName, &type, nullptr, 0, &needed);
    return present == ERROR_FILE_NOT_FOUND ? DWORD{ERROR_SUCCESS}
                                           : DeletePrinterDataExW(m_printer, kDriverDataKey, kWorkflowModuleValueName);
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
    SpoolerBuffer answer;
    const DWORD error = answer.Fill([&](LPBYTE room, DWORD size, LPDWORD needed)
                                    { return ErrorOf(GetPrinterW(printer.Get(), 2, room, size, needed)); });
    return OnlySummaryOf<PRINTER_INFO_2W>(answer, error, "reading the printer", name);
}

DriverSummary DescribeDriver(const PrinterHandle& printer, const std::string& name)
{
    SpoolerBuffer answer;
    const DWORD error =
        answer.Fill([&](LPBYTE room, DWORD size, LPDWORD needed)
                    { return ErrorOf(GetPrinterDriverW(printer.Get(), nullptr, 3, room, size, needed)); });
    return OnlySummaryOf<DRIVER_INFO_3W>(answer, error, "reading the printer's driver", name);
}

std::vector<PrinterSummary> ListLocalPrinters()
{
    constexpr int kAttempts = 100;
    SpoolerBuffer answer;
    DWORD count = 0;
    DWORD error = ERROR_GEN_FAILURE;
    // That is, no error's name: not every spooler leaves a printer out of the list that goes while the list is made.
    for (int attempt = 0; attempt < kAttempts && error == ERROR_GEN_FAILURE; ++attempt)
        error =
            answer.Fill([&](LPBYTE room, DWORD size, LPDWORD needed)
                        { return ErrorOf(EnumPrintersW(PRINTER_ENUM_LOCAL, nullptr, 2, room, size, needed, &count)); });
    return SummariesOf<PRINTER_INFO_2W>(answer, error, count, "listing the printers", SpoolerPlace());
}

std::vector<DriverSummary> ListDrivers()
{
    SpoolerBuffer answer;
    DWORD count = 0;
    const DWORD error =
        answer.Fill([&](LPBYTE room, DWORD size, LPDWORD needed)
                    { return ErrorOf(EnumPrinterDriversW(nullptr, nullptr, 3, room, size, needed, &count)); });
    return SummariesOf<DRIVER_INFO_3W>(answer, error, count, "listing the drivers", SpoolerPlace());
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
