#include "complugins/ptpcprovider/pagemediasizeextents.h"

#include <windows.h>
#include <winspool.h>

namespace
{

std::optional<PrinterModel::Extent> ExtentOf(int answer) noexcept
{
    const auto words = static_cast<DWORD>(answer);
    const PrinterModel::Extent extent{LOWORD(words), HIWORD(words)};
    if (answer == -1 || extent.width == 0 || extent.length == 0)
        return std::nullopt;
    return extent;
}

} // namespace

std::optional<PageMediaSize::Extents> PageMediaSize::ExtentsOf(int least, int most) noexcept
{
    const auto from = ExtentOf(least);
    const auto to = ExtentOf(most);
    if (!from || !to || from->width > to->width || from->length > to->length)
        return std::nullopt;
    return Extents{*from, *to};
}

std::optional<PageMediaSize::Extents> PageMediaSize::AskExtents(const Printer& printer, const DEVMODEW* devmode)
{
    const CXString name = printer.GetPrinterName();
    const auto ask = [&](WORD capability)
    {
        return DeviceCapabilitiesW(name.c_str(), nullptr, capability, nullptr, devmode);
    };
    const int most = ask(DC_MAXEXTENT);
    return ExtentsOf(ask(DC_MINEXTENT), most);
}
