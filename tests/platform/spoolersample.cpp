// A driver's configuration module for the spooler's tests: it answers a few capabilities, makes devmodes, and notes
// events in its printer's data.
#include <windows.h>
#include <winspool.h>

#include <winddiui.h>

#include <algorithm>
#include <array>

#include "interfaces/documentpropertyheader.h"
#include "tests/platform/spoolersample.h"

namespace
{

constexpr std::array<WORD, 3> kPapers = {1, 9, 256};
constexpr LONG kDevModeSize = sizeof(DEVMODEW) + spoolersample::kPrivateSize;

} // namespace

extern "C"
{

    SPOOLER_SAMPLE_API DWORD WINAPI DrvDeviceCapabilities(HANDLE, LPWSTR, WORD capability, PVOID output, PDEVMODEW)
    {
        switch (capability)
        {
        case DC_COPIES:
            return spoolersample::kCopies;
        case DC_PAPERS:
            if (output != nullptr)
                std::copy(kPapers.begin(), kPapers.end(), static_cast<WORD*>(output));
            return kPapers.size();
        default:
            return static_cast<DWORD>(-1);
        }
    }

    SPOOLER_SAMPLE_API LONG WINAPI DrvDocumentPropertySheets(PVOID, LPARAM param)
    {
        const auto& header = *reinterpret_cast<const DOCUMENTPROPERTYHEADER*>(param);
        if (header.cbSize < sizeof(header))
            return -1;
        if (header.fMode == 0 || header.pdmOut == nullptr)
            return kDevModeSize;
        const short copies = header.pdmIn != nullptr ? header.pdmIn->dmCopies : short{1};
        *header.pdmOut = {};
        header.pdmOut->dmSize = sizeof(DEVMODEW);
        header.pdmOut->dmDriverExtra = spoolersample::kPrivateSize;
        header.pdmOut->dmCopies = copies;
        auto* const privatePart = reinterpret_cast<BYTE*>(header.pdmOut + 1);
        std::fill_n(privatePart, spoolersample::kPrivateSize, spoolersample::kPrivateByte);
        return IDOK;
    }

    SPOOLER_SAMPLE_API BOOL WINAPI DrvPrinterEvent(LPWSTR printerName, INT event, DWORD, LPARAM)
    {
        PRINTER_DEFAULTSW defaults = {nullptr, nullptr, PRINTER_ALL_ACCESS};
        HANDLE printer = nullptr;
        if (!OpenPrinterW(printerName, &printer, &defaults))
            return FALSE;
        auto noted = static_cast<DWORD>(event);
        const DWORD error = SetPrinterDataExW(printer, spoolersample::kKey, spoolersample::kEvent, REG_DWORD,
                                              reinterpret_cast<BYTE*>(&noted), sizeof(noted));
        ClosePrinter(printer);
        return error == ERROR_SUCCESS ? TRUE : FALSE;
    }
}
