#include "printerevent.h"

#include <windows.h>
#include <winspool.h>

#include <winddiui.h>

#include <optional>

#include "boundary.h"
#include "capabilityfilling.h"

void AnswerPrinterEvent(const WCHAR* printerName, INT event)
{
    switch (event)
    {
    case PRINTER_EVENT_ADD_CONNECTION:
    case PRINTER_EVENT_INITIALIZE:
    case PRINTER_EVENT_CACHE_REFRESH:
    {
        std::optional<Printer> printer;
        BindPrinter(printer, nullptr, printerName);
        FillCapabilityCaches(*printer, ProductData(printer->GetPrinterHandle()));
        break;
    }
    case PRINTER_EVENT_DELETE_CONNECTION:
    case PRINTER_EVENT_DELETE:
    case PRINTER_EVENT_CACHE_DELETE:
        if (printerName != nullptr)
            RemoveCapabilityCaches(printerName);
        break;
    default:
        break;
    }
}
