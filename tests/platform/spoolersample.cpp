// A driver's configuration module for the spooler's tests: it answers a few capabilities, makes devmodes, and notes
// events in its printer's data.
#include <windows.h>
#include <winspool.h>

#include <winddiui.h>

#include <algorithm>
#include <array>

#include "interfaces/documentpropertyheader.h"
#include "tests/platform/spoolersample.h"

extern "C"
{

    SPOOLER_SAMPLE_API DWORD WINAPI DrvDeviceCapabilities(HANDLE, LPWSTR, WORD capability, PVOID output, PDEVMODEW)
    {
        constexpr std::array<WORD, 3> kPapers = {1, 9, 256};
        if (capability == DC_COPIES)
            return spoolersample::kCopies;
        if (capability != DC_PAPERS)
            return static_cast<DWORD>(-1);
        if (output != nullptr)
            std::copy(kPapers.begin(), kPapers.end(), static_cast<WORD*>(output));
        return kPapers.size();
    }

    SPOOLER_SAMPLE_API LONG WINAPI DrvDocumentPropertySheets(PVOID, LPARAM param)
    {
        const auto& header = *reinterpret_cast<const DOCUMENTPROPERTYHEADER*>(param);
        if (header.fMode == 0 || header.pdmOut == nullptr)
            return sizeof(DEVMODEW) + spoolersample::kPrivateSize;
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
        SetPrinterDataW(printer, const_cast<LPWSTR>(spoolersample::kEvent), REG_DWORD, reinterpret_cast<BYTE*>(&event),
                        sizeof(event));
        return ClosePrinter(printer);
    }
}
