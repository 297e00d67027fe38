// A printer in the spooler for the life of a test, with a driver of dummy files and a capability word.
//
// On Linux the store is a scratch folder of the test program; under Windows it is the machine's spooler.
#pragma once

#include <windows.h>
#include <winspool.h>

#include <optional>

#include <tvutil/cxstring.h>

class TestPrinter
{
public:
    // Without a word the printer looks like one that our set-up has not installed.
    explicit TestPrinter(std::optional<ULONGLONG> capabilityWord);
    ~TestPrinter();
    TestPrinter(const TestPrinter&) = delete;
    TestPrinter& operator=(const TestPrinter&) = delete;

    [[nodiscard]] HANDLE Handle() const noexcept;

private:
    HANDLE m_printer = nullptr;
};
