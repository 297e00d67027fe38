// Between which lengths a printer takes custom sizes.
#pragma once

#include <windows.h>

#include <optional>

#include <tvcore/printermodel.h>
#include <tvutil/printer.h>

namespace PageMediaSize
{

struct Extents
{
    PrinterModel::Extent least; // tenths of a millimetre
    PrinterModel::Extent most;
};

// Out of the driver's answers to DC_MINEXTENT and DC_MAXEXTENT: the width is the low word, the length the high one,
// both unsigned. Nothing when one of them is a failure (-1), has no length in it, or they leave no size between them.
[[nodiscard]] std::optional<Extents> ExtentsOf(int least, int most) noexcept;

// A null devmode is none. Throws ExceptionPrinterFailure when the printer does not answer.
[[nodiscard]] std::optional<Extents> AskExtents(const Printer& printer, const DEVMODEW* devmode);

} // namespace PageMediaSize
