// The functions that the spooler, and through it every application, calls in a printer driver's configuration module.
#include <windows.h>
#include <winspool.h>

#include <winddiui.h>

#include <optional>

#include "boundary.h"
#include "devicecapabilities.h"
#include "documentproperties.h"

extern "C"
{

    // A null handle means the printer of that name: not every spooler lends a handle. The devmode changes nothing here.
    TVUI_API DWORD WINAPI DrvDeviceCapabilities(HANDLE printer, LPWSTR name, WORD capability, PVOID output, PDEVMODEW)
    {
        return static_cast<DWORD>(AnswerSpooler(
            [&]() -> LONG
            {
                if (!IsAnsweredCapability(capability))
                    return FailWith(ERROR_NOT_SUPPORTED);
                std::optional<Printer> bound;
                BindPrinter(bound, printer, name);
                return static_cast<LONG>(AnswerCapability(capability, *bound, output));
            }));
    }

    // `info` is a PROPSHEETUI_INFO when property sheets are wanted, which there are none of; null asks for devmodes
    // only.
    TVUI_API LONG WINAPI DrvDocumentPropertySheets(PVOID info, LPARAM param)
    {
        return AnswerSpooler(
            [&]() -> LONG
            {
                if (info != nullptr)
                    return FailWith(ERROR_NOT_SUPPORTED);
                auto* const header = reinterpret_cast<DOCUMENTPROPERTYHEADER*>(param);
                if (header == nullptr || header->cbSize < sizeof *header)
                    return FailWith(ERROR_INVALID_PARAMETER);
                return AnswerDocumentProperties(*header);
            });
    }

    // Nothing is prepared for a new printer yet, and nothing is left behind by an old one.
    TVUI_API BOOL WINAPI DrvPrinterEvent(LPWSTR, INT, DWORD, LPARAM)
    {
        return TRUE;
    }
}
