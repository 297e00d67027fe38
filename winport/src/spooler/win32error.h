// The exception that carries a Win32 error inside the spooler and the registry, and the guards that turn it into what
// an exported function answers. Nothing is thrown across an exported function.
#pragma once

#include <new>
#include <utility>

#include <winbase.h>
#include <winerror.h>
#include <winport/faultinjection.h>

namespace winport::spooler
{

class Win32Error
{
public:
    explicit Win32Error(DWORD code) noexcept : m_code(code)
    {
    }

    [[nodiscard]] DWORD Code() const noexcept
    {
        return m_code;
    }

private:
    DWORD m_code;
};

inline void Require(bool condition, DWORD otherwise)
{
    if (!condition)
        throw Win32Error(otherwise);
}

// Runs the operation and answers its error, ERROR_SUCCESS when it returns. Every exported function passes here once,
// which makes it one fault point.
template <typename Operation>
DWORD ErrorOf(Operation&& operation) noexcept
{
    if (PlatformCallMustFail())
        return ERROR_GEN_FAILURE;
    try
    {
        std::forward<Operation>(operation)();
        return ERROR_SUCCESS;
    }
    catch (const Win32Error& error)
    {
        return error.Code();
    }
    catch (const std::bad_alloc&)
    {
        return ERROR_NOT_ENOUGH_MEMORY;
    }
    catch (...)
    {
        return ERROR_GEN_FAILURE;
    }
}

// The same for functions that answer TRUE, or FALSE and a last error.
template <typename Operation>
BOOL Succeeds(Operation&& operation) noexcept
{
    const DWORD error = ErrorOf(std::forward<Operation>(operation));
    if (error != ERROR_SUCCESS)
        SetLastError(error);
    return error == ERROR_SUCCESS ? TRUE : FALSE;
}

} // namespace winport::spooler
