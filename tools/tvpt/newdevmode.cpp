#include "newdevmode.h"

#include <algorithm>
#include <iterator>

#include "coredevmode.h"
#include "oempart.h"

namespace
{

constexpr WORD kDriverVersion = 0x0100;

template <std::size_t Length>
void CopyName(const CXString& name, WCHAR (&field)[Length])
{
    const WStringView text = name.View().substr(0, Length - 1);
    std::fill(std::begin(field), std::end(field), WCHAR());
    std::copy(text.begin(), text.end(), std::begin(field));
}

void SetPaper(const PrinterModel::Form& form, DEVMODEW& devmode)
{
    devmode.dmPaperSize = static_cast<short>(form.paperId);
    devmode.dmPaperWidth = static_cast<short>(form.width);
    devmode.dmPaperLength = static_cast<short>(form.length);
    CopyName(form.name, devmode.dmFormName);
    // The paper id says it all: width, length and name stand there for readers, without their bits.
    devmode.dmFields |= DM_PAPERSIZE;
}

DEVMODEW MakePublicPart(const PrinterModel& model, const CXString& printerName)
{
    DEVMODEW devmode{};
    CopyName(printerName, devmode.dmDeviceName);
    devmode.dmSpecVersion = DM_SPECVERSION;
    devmode.dmDriverVersion = kDriverVersion;
    devmode.dmSize = sizeof devmode;
    devmode.dmFields = DM_ORIENTATION | DM_SCALE | DM_COPIES | DM_DEFAULTSOURCE | DM_PRINTQUALITY | DM_YRESOLUTION |
                       DM_COLOR | DM_DUPLEX | DM_TTOPTION | DM_COLLATE | DM_ICMMETHOD | DM_ICMINTENT | DM_MEDIATYPE;
    devmode.dmOrientation = DMORIENT_PORTRAIT;
    devmode.dmScale = 100;
    devmode.dmCopies = 1;
    devmode.dmDefaultSource = static_cast<short>(model.bins.front().id);
    devmode.dmPrintQuality = static_cast<short>(model.resolutions.front().x);
    devmode.dmYResolution = static_cast<short>(model.resolutions.front().y);
    devmode.dmColor = model.IsColor() ? DMCOLOR_COLOR : DMCOLOR_MONOCHROME;
    devmode.dmDuplex = DMDUP_SIMPLEX;
    devmode.dmTTOption =
        model.coreDriver.kind == PrinterModel::CoreDriverKind::PostScript ? DMTT_SUBDEV : DMTT_DOWNLOAD;
    devmode.dmCollate = DMCOLLATE_TRUE;
    devmode.dmICMMethod = DMICMMETHOD_NONE;
    devmode.dmICMIntent = DMICM_CONTRAST;
    devmode.dmMediaType = static_cast<DWORD>(model.mediaTypes.front().id);
    SetPaper(model.forms.front(), devmode);
    return devmode;
}

} // namespace

Devmode MakeNewDevmode(const PrinterModel& model, const CXString& printerName)
{
    std::vector<std::byte> driverExtra = MakeCorePart(model.coreDriver);
    const std::vector<std::byte> oem = MakeEmptyOemPart();
    driverExtra.insert(driverExtra.end(), oem.begin(), oem.end());
    return {MakePublicPart(model, printerName), driverExtra};
}
