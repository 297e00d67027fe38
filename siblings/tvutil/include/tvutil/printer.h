// Printer: one printer of the spooler.
//
// Bound to a handle with SetPrinterHandle or opened by name. Questions about a printer that is not bound, and calls
// that the spooler refuses, throw ExceptionPrinterFailure, which names the operation, the printer and the error.
#pragma once

#include <windows.h>

#include <winspool.h>

#include <tvutil/bytebuffer.h>
#include <tvutil/cxstring.h>

class TVUTIL_API Printer
{
public:
    Printer() noexcept;
    explicit Printer(HANDLE printer) noexcept; // not owned
    explicit Printer(const CXString& name);    // opens, owns
    ~Printer();
    Printer(const Printer&) = delete;
    Printer& operator=(const Printer&) = delete;

    // With `own` the handle is closed when the object ends or is bound again.
    void SetPrinterHandle(HANDLE printer, bool own) noexcept;
    [[nodiscard]] HANDLE GetPrinterHandle() const noexcept;

    [[nodiscard]] CXString GetPrinterName() const;
    [[nodiscard]] CXString GetPortName() const;
    [[nodiscard]] CXString GetDriverName() const;

    // Printer data under the key "PrinterDriverData". `type` receives the REG_ type. False when the value is absent.
    bool GetPrinterDataW(const CXString& valueName, DWORD& type, ByteBuffer& data) const;
    void SetPrinterDataW(const CXString& valueName, DWORD type, const void* data, DWORD size) const;

    // What the printer's driver makes of a devmode, dmSize + dmDriverExtra bytes that are there, or its own default of
    // null. Asked each time. A driver that makes none, or one whose sizes are not those of its bytes, is a failure of
    // the printer.
    [[nodiscard]] ByteBuffer GetDriverDevmode(const DEVMODEW* input) const;

    // The devmode that a document of this user starts with, dmSize + dmDriverExtra bytes, as the printer's driver makes
    // it of null. The driver is asked once in a process for each printer, until the cache is cleared.
    [[nodiscard]] ByteBuffer GetUserDefaultDevmode() const;
    // For whoever has changed the printer's settings: this process's next question goes to the driver.
    void ClearDevmode1stLevelCache() const;

private:
    HANDLE m_printer = nullptr;
    bool m_owned = false;
};
