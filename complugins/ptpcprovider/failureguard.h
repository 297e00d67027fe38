// The failure guard of the interface's operations: no exception passes the COM boundary.
#pragma once

#include <windows.h>

#include <tvutil/executioncontext.h>
#include <tvutil/tavlenexception.h>
#include <tvutil/utilitiesdllperthreadstorage.h>

#include <exception>
#include <new>
#include <utility>

#include "utilitiesstaticlib/wideliteral.h"

inline void ReportFailure(const std::exception* exception, const ThrowSite& site) noexcept
{
    TavlenException::DisplayExceptionMessage(false, false, exception, site.file, site.line, site.method,
                                             UtilitiesDllPerThreadStorage::GetExecutionContextStack(), nullptr, W(""),
                                             W(""));
}

// Runs the body in an execution context of its own, which is still open when a failure is reported. Every exception is
// reported with the operation's place and becomes E_FAIL; the code that a TavlenComException carries is not passed on,
// deliberately. Only memory that runs out has a code of its own where the operation promises one.
template <class Body>
HRESULT RunGuarded(const ThrowSite& site, Body&& body, HRESULT outOfMemoryResult = E_FAIL) noexcept
{
    const ExecutionContextLifetime context(site);
    try
    {
        return std::forward<Body>(body)();
    }
    catch (const std::bad_alloc& outOfMemory)
    {
        ReportFailure(&outOfMemory, site); // reported as "bad allocation", without allocating
        return outOfMemoryResult;
    }
    catch (const std::exception& exception)
    {
        ReportFailure(&exception, site);
    }
    catch (...)
    {
        ReportFailure(nullptr, site);
    }
    return E_FAIL;
}
