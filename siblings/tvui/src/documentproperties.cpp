#include "documentproperties.h"

#include <windows.h>
#include <winspool.h>

#include <cstring>
#include <optional>
#include <span>

#include <tvui/defaultdevmode.h>

#include "boundary.h"
#include "devmodemerge.h"

namespace
{

// The application's devmode; empty when it gives none.
std::span<const std::byte> InputOf(const DOCUMENTPROPERTYHEADER& header)
{
    if ((header.fMode & DM_IN_BUFFER) == 0 || header.pdmIn == nullptr)
        return {};
    const std::size_t size = std::size_t{header.pdmIn->dmSize} + header.pdmIn->dmDriverExtra;
    return {reinterpret_cast<const std::byte*>(header.pdmIn), size};
}

// A spooler that says 0 knows no size: its caller has asked for ours before, as the platform's calls demand.
bool HasRoom(const DOCUMENTPROPERTYHEADER& header, std::size_t size)
{
    return header.cbOut == 0 || header.cbOut >= size;
}

} // namespace

LONG AnswerDocumentProperties(DOCUMENTPROPERTYHEADER& header)
{
    if ((header.fMode & DM_IN_PROMPT) != 0) // there is no user interface
        return FailWith(ERROR_NOT_SUPPORTED);
    const std::span<const std::byte> input = InputOf(header);
    if (input.data() != nullptr && header.pdmIn->dmSize < kSmallestInput)
        return FailWith(ERROR_INVALID_PARAMETER);

    std::optional<Printer> printer;
    BindPrinter(printer, header.hPrinter, header.pszPrinterName);
    const ProductData product(printer->GetPrinterHandle());
    const std::size_t size = DefaultDevmodeSize(product);
    if (header.fMode == 0 || header.pdmOut == nullptr)
        return static_cast<LONG>(header.cbOut = static_cast<DWORD>(size));
    if ((header.fMode & DM_OUT_BUFFER) == 0)
        return IDOK;
    if (!HasRoom(header, size))
        return FailWith(ERROR_INSUFFICIENT_BUFFER);

    ByteBuffer devmode = MakeDefaultDevmode(product, printer->GetPrinterName());
    if (!input.empty())
        MergeDevmode(product, input, devmode);
    std::memcpy(header.pdmOut, devmode.data(), devmode.size()); // last: pdmIn may lie there
    return IDOK;
}
