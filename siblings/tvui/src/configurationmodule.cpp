// The functions that the spooler, and through it every application, calls in a printer driver's configuration module.
#include <windows.h>
#include <winspool.h>

#include <winddiui.h>

#include <optional>

#include "boundary.h"
#include "devicecapabilities.h"
#include "documentproperties.h"
#include "printerevent.h"

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

    // A new printer, and one whose settings or model have changed, gets its caches; those of a printer that is gone go
    // with it. Where no spooler tells of events, a program may do so.
    TVUI_API BOOL WINAPI DrvPrinterEvent(LPWSTR name, INT event, DWORD, LPARAM)
    {
        return AnswerSpooler(
                   [&]() -> LONG
                   {
                       AnswerPrinterEvent(name, event);
                       return 0;
                   }) == 0
                   ? TRUE
                   : FALSE;
    }

    // How often this process has asked for capabilities so far: so it can be told who runs the driver's slow code.
    TVUI_API DWORD WINAPI TavlenCountCapabilityQuestions()
    {
        return CountCapabilityQuestions();
    }
}
