// A printer in the spooler for the life of a test, whose driver's data file holds the given text.
//
// On Linux the store is a scratch folder of this process; under Windows it is the machine's spooler.
#pragma once

#include <windows.h>

#include <filesystem>
#include <string>

class InstalledModel
{
public:
    explicit InstalledModel(const std::string& modelText);
    ~InstalledModel();
    InstalledModel(const InstalledModel&) = delete;
    InstalledModel& operator=(const InstalledModel&) = delete;

    [[nodiscard]] HANDLE Handle() const noexcept;
    // The name that the spooler gave the data file, without its folder.
    [[nodiscard]] const std::string& FileName() const noexcept;

private:
    void InstallDriver();
    void AddThePrinter();

    std::filesystem::path m_folder;
    std::string m_fileName;
    HANDLE m_printer = nullptr;
};
