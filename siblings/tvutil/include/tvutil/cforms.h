// CForms: the forms of a printer, by paper number.
//
// The platform numbers the forms of its spooler by their place in the list, from 1 on; papers that only the driver
// knows have the driver's own numbers.
#pragma once

#include <windows.h>

#include <tvutil/cxstring.h>

// Whose form it is. The platform's own values (FORM_USER, FORM_BUILTIN, FORM_PRINTER): only a user's form is 0.
struct CFormRecord
{
    DWORD paperNumber = 0;
    DWORD flags = 0;
    LONG width = 0; // thousandths of a millimetre
    LONG length = 0;
    CXString name;
};

class TVUTIL_API CForms
{
public:
    explicit CForms(HANDLE printer) noexcept; // borrowed

    // False when the printer has no such form. The spooler's forms are asked first, then the driver's papers, which are
    // FORM_PRINTER. Throws ExceptionPrinterFailure when the spooler does not answer.
    bool GetFormW(DWORD paperNumber, CFormRecord& form) const;

private:
    HANDLE m_printer;
};
