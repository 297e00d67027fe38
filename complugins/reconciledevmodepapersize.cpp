#include "complugins/reconciledevmodepapersize.h"

#include <vector>

#include <tvcore/datamodelids.h>
#include <tvutil/cforms.h>
#include <tvutil/devicesettingsmanager.h>
#include <tvutil/devmodebounds.h>
#include <tvutil/operatingsystem.h>
#include <tvutil/printer.h>

#include "complugins/msdevicecapabilities.h"
#include "complugins/papermatching.h"
#include "complugins/xdevmode.h"

namespace
{

constexpr WORD kFirstDriverPaper = 119; // beyond the platform's own numbers
constexpr WStringView kSpreadsheet = W("excel.exe");

// A paper number wins over a form name.
void PreferNumber(DEVMODEW& devmode) noexcept
{
    if ((devmode.dmFields & DM_PAPERSIZE) != 0)
        devmode.dmFields &= ~DWORD{DM_FORMNAME};
}

bool ComesFromSpreadsheet(DEVMODEW& devmode)
{
    CXString application;
    return XDevmode(&devmode).GetPropertyBagString(OemDevmodeFormat::kApplicationNameKey, application) &&
           application == kSpreadsheet; // exactly: whoever writes the name writes lower case
}

// Intended for this one program. A user's own form, whose flags are 0, stays.
void ReplaceDriverPaperOfSpreadsheet(HANDLE printer, DEVMODEW& devmode)
{
    DeviceSettingsManager settings{Printer(printer)};
    const bool isWanted =
        settings.GetBooleanValueFromAttributeBytes(DataModelIds::Feature::ReplaceDriverPaperInSpreadsheets)
            .value_or(false);
    const auto number = static_cast<WORD>(devmode.dmPaperSize);
    if (!isWanted || number < kFirstDriverPaper || !ComesFromSpreadsheet(devmode))
        return;
    CFormRecord form;
    if (CForms(printer).GetFormW(number, form) && form.flags != 0)
        devmode.dmPaperSize = OperatingSystem::IsMetricCountry() ? DMPAPER_A4 : DMPAPER_LETTER;
}

// The two are the same sheet; only one number is kept.
void ReplaceTabloid(DEVMODEW& devmode) noexcept
{
    if (devmode.dmPaperSize == DMPAPER_TABLOID)
        devmode.dmPaperSize = DMPAPER_11X17;
}

// Empty when the capabilities have no list.
std::vector<FormsInfoRecord> GetForms(HANDLE printer, DEVMODEW& devmode, MSDeviceCapabilities& capabilities)
{
    std::vector<FormsInfoRecord> forms;
    if (FAILED(capabilities.GetPaperDatabaseCachedDeviceCapabilitiesVector(printer, &devmode, forms)))
        forms.clear();
    return forms;
}

} // namespace

bool ReconcileDevmodePaperSize(void* printerHandle, DEVMODEW* devmode, MSDeviceCapabilities& capabilities)
{
    if (devmode == nullptr || devmode->dmSize < kSmallestPublicDevmode)
        return false;
    PreferNumber(*devmode);
    ReplaceDriverPaperOfSpreadsheet(printerHandle, *devmode);
    ReplaceTabloid(*devmode);
    return MatchPaperWithForms(*devmode, GetForms(printerHandle, *devmode, capabilities));
}
