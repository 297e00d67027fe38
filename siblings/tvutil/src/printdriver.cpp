#include <windows.h>

#include <tvutil/printdriver.h>

#include <optional>

#include <tvutil/bytereader.h>
#include <tvutil/exceptions.h>
#include <tvutil/printer.h>
#include <tvutil/spoolerbuffer.h>
#include <tvutil/throwexception.h>

namespace
{

constexpr const WCHAR* kSourceFile = W("siblings\\tvutil\\src\\printdriver");
constexpr std::size_t kCapabilityWordSize = 8;

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

// The levels begin with the same members; which of them is asked decides what a spooler must know. Nothing when a
// text does not lie in the answer.
template <class Info>
std::optional<std::vector<CXString>> FilesOf(const SpoolerBuffer& answer)
{
    const Info* const info = answer.Get<Info>();
    if (info == nullptr)
        return std::nullopt;
    std::vector<CXString> files;
    for (const WCHAR* const file : {info->pDriverPath, info->pDataFile, info->pConfigFile, info->pHelpFile})
    {
        const std::optional<WStringView> text = answer.Text(file);
        if (!text)
            return std::nullopt;
        if (!text->empty())
            files.emplace_back(*text);
    }
    const std::optional<std::vector<WStringView>> dependent = answer.Texts(info->pDependentFiles);
    if (!dependent)
        return std::nullopt;
    files.insert(files.end(), dependent->begin(), dependent->end());
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
    std::optional<std::vector<CXString>> files =
        spoolerLevel == 3 ? FilesOf<DRIVER_INFO_3W>(answer) : FilesOf<DRIVER_INFO_6W>(answer);
    if (!files)
        ThrowException<ExceptionPrintDriverFailure>(
            site, W("GetPrinterDriverW answered for level %u with texts that do not lie in its answer"),
            {spoolerLevel});
    return *std::move(files);
}
