// A printer in the spooler for the life of a test, with a driver of dummy files and a capability word.
//
// Names and folder are this process's own: test programs may run side by side, and one that was killed leaves nothing
// in the way. On Linux the store is in that folder; under Windows it is the machine's spooler.
#pragma once

#include <windows.h>
#include <winspool.h>

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include <tvutil/cxstring.h>

class TestPrinter
{
public:
    struct SetUp
    {
        // Without a word the printer looks like one that our set-up has not installed.
        std::optional<ULONGLONG> capabilityWord;
        std::string model;                       // the driver's data file, a shipped model; empty: a dummy file
        std::vector<std::string> dependentFiles; // names of dummy files
        std::string configurationModule = {};    // a module beside the test program; empty: a dummy file
        std::string dataText = {};               // the data file's content, in place of a shipped model's
    };

    // Throws std::runtime_error when the spooler refuses.
    explicit TestPrinter(const SetUp& setUp);
    explicit TestPrinter(std::optional<ULONGLONG> capabilityWord = std::nullopt);
    ~TestPrinter();
    TestPrinter(const TestPrinter&) = delete;
    TestPrinter& operator=(const TestPrinter&) = delete;

    [[nodiscard]] HANDLE Handle() const noexcept;
    [[nodiscard]] static CXString Name(); // not all of it ASCII
    [[nodiscard]] static CXString DriverName();

private:
    HANDLE m_printer = nullptr;
    std::filesystem::path m_folder;
    CXString m_previousStore;
};
