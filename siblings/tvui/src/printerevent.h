// What the driver does when the spooler, or a program in its place, tells what has happened to a printer.
#pragma once

#include <windows.h>

// Fills the printer's caches, or removes them, as the event (PRINTER_EVENT_...) asks for. Other events, and the end of
// a printer without a name, change nothing. Throws the printer's, its driver's, its model's or the caches' failure.
void AnswerPrinterEvent(const WCHAR* printerName, INT event);
