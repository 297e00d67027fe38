// The failure guard of the document operations: no exception passes the COM boundary.
#pragma once

#include <windows.h>

#include <tvutil/executioncontext.h>
#include <tvutil/tavlenexception.h>
#include <tvutil/utilitiesdllperthreadstorage.h>

#include <new>
#include <utility>

// What is reported for a failed allocation. It owns nothing: the report itself must not allocate.
class BadAllocation : public std::bad_alloc
{
public:
    [[nodiscard]] const char* what() const noexcept override
    {
        return "bad allocation";
    }
};

inline void ReportFailure(const std::exception* exception, const ThrowSite& site) noexcept
{
    TavlenException::DisplayExceptionMessage(false, false, exception, site.file, site.line, site.method,
                                             UtilitiesDllPerThreadStorage::GetExecutionContextStack(), nullptr, W(""),
                                             W(""));
}

// Runs the body in an execution context of its own, which is still open when a failure is reported. Every exception is
// reported with the operation's place and becomes E_FAIL; the code that a TavlenComException carries is not passed on,
// deliberately.
template <class Body>
HRESULT RunGuarded(const ThrowSite& site, Body&& body) noexcept
{
    const ExecutionContextLifetime context(site);
    try
    {
        return std::forward<Body>(body)();
    }
    catch (const std::bad_alloc&)
    {
        const BadAllocation badAllocation;
        ReportFailure(&badAllocation, site);
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
