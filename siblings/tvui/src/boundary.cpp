#include "boundary.h"

#include <new>

#include <tvutil/exceptions.h>
#include <tvutil/tavlencomexception.h>
#include <tvutil/throwexception.h>

LONG FailWith(DWORD error) noexcept
{
    SetLastError(error);
    return kFailed;
}

LONG FailWithCaughtException() noexcept
{
    // Classified here, in the module that caught it: another one could not rethrow it.
    try
    {
        throw;
    }
    catch (const std::bad_alloc&)
    {
        return FailWith(ERROR_NOT_ENOUGH_MEMORY);
    }
    catch (const ExceptionPrinterFailure&)
    {
        return FailWith(ERROR_INVALID_PRINTER_NAME);
    }
    catch (const ExceptionPrintDriverFailure&)
    {
        return FailWith(ERROR_UNKNOWN_PRINTER_DRIVER);
    }
    catch (const ExceptionDataCacheFailure&)
    {
        return FailWith(ERROR_WRITE_FAULT);
    }
    catch (const TavlenComException&) // the user's registry, the saving of caches
    {
        return FailWith(ERROR_WRITE_FAULT);
    }
    catch (const TavlenException&) // the driver's data file, the printer model
    {
        return FailWith(ERROR_INVALID_DATA);
    }
    catch (...)
    {
        return FailWith(ERROR_GEN_FAILURE);
    }
}

void BindPrinter(std::optional<Printer>& printer, HANDLE handle, const WCHAR* name)
{
    if (handle != nullptr && handle != INVALID_HANDLE_VALUE)
        printer.emplace(handle);
    else if (name == nullptr || *name == WCHAR()) // an empty name would open the print server itself
        ThrowException<ExceptionPrinterFailure>({W("BindPrinter"), W("siblings\\tvui\\src\\boundary")},
                                                W("the spooler names no printer"));
    else
        printer.emplace(CXString(name));
}
