// Runs of the command-line host inside the test program, and a scratch folder with a spooler store of its own.
//
// On Windows the spooler is the machine's: printers are given names of their own and removed again.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include <gtest/gtest.h>

struct RunResult
{
    int status = -1;
    std::string out;
    std::string errors;
};

RunResult RunHost(const std::vector<std::string>& arguments, const std::string& input = {});

std::string ReadBytes(const std::filesystem::path& path);
void WriteBytes(const std::filesystem::path& path, const std::string& bytes);

// Exactly one line on the error stream, and it holds this text.
testing::AssertionResult IsOneErrorLine(const std::string& errors, const std::string& text);

class HostTest : public testing::Test
{
protected:
    HostTest();
    ~HostTest() override;

    // A file in the scratch folder, in UTF-8.
    [[nodiscard]] std::string File(const std::string& name) const;
    [[nodiscard]] const std::filesystem::path& Folder() const;
    // Files of the scratch folder, the store left out.
    [[nodiscard]] std::vector<std::string> FilesLeft() const;

    // Adds a printer, expects success, and removes it at the end.
    std::string InstallTestPrinter(const std::string& model = "tavlen-c9070-ps");
    void RemoveAtEnd(const std::string& printer);

private:
    std::filesystem::path m_folder;
    std::vector<std::string> m_printers;
};
