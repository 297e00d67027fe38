// The border between the spooler and this module: nothing is thrown over it, and a failure leaves its last error.
#pragma once

#include <windows.h>
#include <winspool.h>

#include <optional>

#include <tvutil/printer.h>

inline constexpr LONG kFailed = -1;

[[nodiscard]] LONG FailWith(DWORD error) noexcept; // -1

// Called while an exception is being handled: -1, and the last error that tells its kind.
[[nodiscard]] LONG FailWithCaughtException() noexcept;

// `ask` returns the answer.
template <class Ask>
[[nodiscard]] LONG AnswerSpooler(Ask ask) noexcept
{
    try
    {
        return ask();
    }
    catch (...)
    {
        return FailWithCaughtException();
    }
}

// The printer that the spooler asks about: its own handle, or, where it lends none, the printer of that name. Throws
// ExceptionPrinterFailure.
void BindPrinter(std::optional<Printer>& printer, HANDLE handle, const WCHAR* name);
