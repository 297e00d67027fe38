#include "printersetup.h"

#include <cstddef>
#include <filesystem>
#include <span>

#include <tvcore/featurevalues.h>
#include <tvcore/workflowmodulenames.h>
#include <tvutil/bytebuffer.h>
#include <tvutil/devicesettingsmanager.h>
#include <tvutil/devmodebounds.h>
#include <tvutil/printdriver.h>
#include <tvutil/printer.h>
#include <tvutil/spoolerbuffer.h>

#include "driverpackage.h"
#include "failure.h"

namespace
{

constexpr char kRenewing[] = "renewing the printer's devmode";

bool HasOurDriver(const PrinterHandle& printer)
{
    try
    {
        return IsOurDriver(DescribeDriver(printer, {}));
    }
    catch (const Failure&) // a printer may have no driver that could be told
    {
        return false;
    }
}

// The model's, and of the stored ones those that somebody has chosen or that the model does not know.
bool StoreDeviceSettings(const PrinterHandle& printer, const PrinterModel& model)
{
    const Printer spoolersPrinter(printer.Get());
    DeviceSettingsManager stored(spoolersPrinter);
    AttributeBytesIndexedList settings = *stored.GetDefaultAttributeBytesIndexedList();
    const auto defaults = FeatureCatalogue::MakeSettings(model.defaults, FeatureCatalogue::Scope::Device);
    for (std::size_t at = 0; at < defaults.GetCount(); ++at)
    {
        const AttributeBytesValue* const present = settings.GetAttributeBytes(defaults.GetFeature(at));
        if (present == nullptr || (present->flags & AttributeBytesValue::kIsChoice) == 0)
            settings.SetAttributeBytes(defaults.GetFeature(at), defaults.GetValue(at));
    }
    return DeviceSettingsManager::Store(spoolersPrinter, settings);
}

// The devmode of the printer's description; empty when there is none whose bytes lie in the answer. A copy, which is
// aligned: not every spooler aligns what it answers.
ByteBuffer StoredDevmode(const SpoolerBuffer& answer, const PRINTER_INFO_2W& info)
{
    const std::span<const std::byte> bytes = answer.Bytes();
    const auto offset =
        reinterpret_cast<std::uintptr_t>(info.pDevMode) - reinterpret_cast<std::uintptr_t>(bytes.data());
    if (info.pDevMode == nullptr || offset >= bytes.size())
        return ByteBuffer();
    ByteBuffer devmode(bytes.subspan(offset));
    const auto* const fields = reinterpret_cast<const DEVMODEW*>(devmode.data());
    if (!DevmodeFitsIn(fields, devmode.size()))
        return ByteBuffer();
    devmode.resize(std::size_t{fields->dmSize} + fields->dmDriverExtra);
    return devmode;
}

} // namespace

SetUpState SetUpStateOf(const PrinterHandle& printer)
{
    const bool hasWord = printer.Capability().has_value();
    if (hasWord && printer.InstallationState() >= PrintDriver::kInstallationComplete)
        return SetUpState::Complete;
    return hasWord || HasOurDriver(printer) ? SetUpState::Incomplete : SetUpState::NotOurs;
}

PrinterModel ReadInstalledModel(const PrinterHandle& printer, const std::string& name, SetUpState least)
{
    constexpr char kReading[] = "reading the printer's model";
    const SetUpState state = SetUpStateOf(printer);
    if (state == SetUpState::NotOurs)
        Fail(kReading, name, "it was not installed by this program");
    if (state < least)
        Fail(kReading, name, "its installation did not come to its end; \"tvpt printer refresh\" completes it");
    const CXString file = DescribeDriver(printer, name).dataFile;
    return ReadPrinterModel(std::filesystem::path(file.View().begin(), file.View().end()));
}

// The provider could find its workflow module by itself, but could not remember it: whoever prints may not write the
// printer's data.
bool StoreModelData(const PrinterHandle& printer, const std::string& name, const PrinterModel& model)
{
    const auto require = [&name](DWORD error)
    {
        if (error != ERROR_SUCCESS)
            FailWithWin32Error("storing the printer's data", name, error);
    };
    require(printer.StoreCapability(model.capability));
    require(printer.StoreWorkflowModule(WorkflowModuleKind(model.workflowModule)));
    const bool isOurFormat = StoreDeviceSettings(printer, model);
    require(printer.StoreInstallationState(PrintDriver::kInstallationComplete)); // last
    return isOurFormat;
}

void RenewDevmode(const PrinterHandle& printer, const std::string& name)
{
    SpoolerBuffer answer;
    const DWORD error = answer.Fill([&](LPBYTE room, DWORD size, LPDWORD needed)
                                    { return ErrorOf(GetPrinterW(printer.Get(), 2, room, size, needed)); });
    const auto* const described = answer.Get<PRINTER_INFO_2W>();
    if (error != ERROR_SUCCESS || described == nullptr)
        FailWithWin32Error(kRenewing, name, error != ERROR_SUCCESS ? error : DWORD{ERROR_INVALID_DATA});
    const ByteBuffer stored = StoredDevmode(answer, *described);
    ByteBuffer renewed =
        Printer(printer.Get())
            .GetDriverDevmode(stored.empty() ? nullptr : reinterpret_cast<const DEVMODEW*>(stored.data()));
    if (renewed == stored)
        return;
    PRINTER_INFO_2W info = *described;
    info.pDevMode = reinterpret_cast<DEVMODEW*>(renewed.data());
    info.pSecurityDescriptor = nullptr; // stays
    if (!SetPrinterW(printer.Get(), 2, reinterpret_cast<LPBYTE>(&info), 0))
        FailWithWin32Error(kRenewing, name, GetLastError());
}
