// Failure: why a command could not be done, as the one line that people see: "what: which: why".
#pragma once

#include <windows.h>

#include <stdexcept>
#include <string>
#include <string_view>

class Failure : public std::runtime_error
{
public:
    explicit Failure(std::string_view line);
};

// The command line itself is wrong.
class UsageFailure : public Failure
{
public:
    using Failure::Failure;
};

// `what` was attempted, on `which` (a file, a printer, a key), `why` it failed.
[[noreturn]] void Fail(std::string_view what, std::string_view which, std::string_view why);
[[noreturn]] void FailWithWin32Error(std::string_view what, std::string_view which, DWORD error);
// `inside` is what the called module had to say about it; empty when it said nothing.
[[noreturn]] void FailWithHresult(std::string_view what, std::string_view which, HRESULT result,
                                  std::string_view inside = {});

// At most some hundred characters of a text out of a file, for an error line.
[[nodiscard]] std::string Shortened(std::string_view text);

// Line breaks and other control characters become blanks: an error stays one line whatever a file or name holds.
[[nodiscard]] std::string OneLine(std::string_view text);
