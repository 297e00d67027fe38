#include <windows.h>

#include <tvutil/printdriver.h>

#include <optional>

#include <tvutil/bytereader.h>
#include <tvutil/exceptions.h>
#include <tvutil/printer.h>
#include <tvutil/throwexception.h>

#include "spoolerbuffer.h"

namespace
{

constexpr const WCHAR* kSourceFile = W("siblings\\tvutil\\src\\printdriver");
constexpr std::size_t kCapabilityWordSize = 8;

// A list of texts, each zero-terminated, that ends with an empty one or with the buffer in which it lies.
void AppendMultiString(std::vector<CXString>& texts, WStringView list)
{
    while (!list.empty() && list.front() != WCHAR())
    {
        const WStringView text = list.substr(0, list.find(WCHAR()));
        texts.emplace_back(text);
        list.remove_prefix(text.size() < list.size() ? text.size() + 1 : list.size());
    }
}

// Printer data that the driver's set-up leaves.
struct SetupValue
{
    DWORD type = REG_NONE;
    ByteBuffer data;
};

// No value: the set-up has left none of this name.
std::optional<SetupValue> ReadSetupValue(ThrowSite site, HANDLE printer, const WCHAR* name, WStringView failureFormat)
{
    SetupValue value;
    try
    {
        if (!Printer(printer).GetPrinterDataW(name, value.type, value.data))
            return std::nullopt;
    }
    catch (const ExceptionPrinterFailure& failure)
    {
        ThrowException<ExceptionPrintDriverFailure>(site, failureFormat, {failure.GetText()});
    }
    return value;
}

// The levels begin with the same members; which of them is asked decides what a spooler must know.
template <class Info>
std::vector<CXString> FilesOf(const SpoolerBuffer& answer)
{
    std::vector<CXString> files;
    const Info* const info = answer.Get<Info>();
    if (info == nullptr)
        return files;
    for (const WCHAR* const file : {info->pDriverPath, info->pDataFile, info->pConfigFile, info->pHelpFile})
        if (file != nullptr && *file != WCHAR())
            files.emplace_back(file);
    AppendMultiString(files, answer.From(info->pDependentFiles));
    return files;
}

} // namespace

// The exporting library emits a constant of its class only where it is defined out of line.
constexpr const WCHAR* PrintDriver::kDriverCapabilityValueName;
constexpr const WCHAR* PrintDriver::kInstallationStateValueName;
constexpr DWORD PrintDriver::kInstallationComplete;

ULONGLONG PrintDriver::GetDriverCapability(HANDLE printer, ULONGLONG mask) const
{
    const ThrowSite site{W("PrintDriver::GetDriverCapability"), kSourceFile};
    const std::optional<SetupValue> value =
        ReadSetupValue(site, printer, kDriverCapabilityValueName, W("the driver's capabilities cannot be read: %s"));
    if (!value || value->type != REG_BINARY || value->data.size() != kCapabilityWordSize)
        ThrowException<ExceptionPrintDriverFailure>(
            site, W("the printer holds no capability word \"%s\" (REG_BINARY, 8 bytes): %s"),
            {kDriverCapabilityValueName,
             value ? W("the value is of another kind") : W("the driver's set-up has not run for it")});
    return ByteReader(value->data.bytes()).U64() & mask;
}

DWORD PrintDriver::GetInstallationStateFromHandle(HANDLE printer) const
{
    const std::optional<SetupValue> value =
        ReadSetupValue({W("PrintDriver::GetInstallationStateFromHandle"), kSourceFile}, printer,
                       kInstallationStateValueName, W("the driver's installation state cannot be read: %s"));
    return value && value->type == REG_DWORD && value->data.size() == sizeof(DWORD) ? value->data.getDword() : 0;
}

std::vector<CXString> PrintDriver::GetDriverFiles(HANDLE printer, DWORD level, const CXString& environment) const
{
    const ThrowSite site{W("PrintDriver::GetDriverFiles"), kSourceFile};
    if (level != 3 && level != 6 && level != 9)
        ThrowException<ExceptionPrintDriverFailure>(site, W("level %u does not name a driver's files"), {level});

    WideString mutableEnvironment(environment.View()); // the platform's parameter is not const
    LPWSTR const environmentOrNull = environment.IsEmpty() ? nullptr : mutableEnvironment.data();
    const DWORD spoolerLevel = level == 9 ? 6 : level;
    SpoolerBuffer answer;
    const DWORD error = answer.Fill(
        [&](LPBYTE room, DWORD size, LPDWORD needed)
        { return ErrorOf(GetPrinterDriverW(printer, environmentOrNull, spoolerLevel, room, size, needed)); });
    if (error != ERROR_SUCCESS)
        ThrowException<ExceptionPrintDriverFailure>(
            site, W("GetPrinterDriverW failed for level %u, environment \"%s\": Win32 error %u"),
            {spoolerLevel, environment, error});
    return spoolerLevel == 3 ? FilesOf<DRIVER_INFO_3W>(answer) : FilesOf<DRIVER_INFO_6W>(answer);
}
