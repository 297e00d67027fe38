// Runs of the command-line host inside the test program, and a scratch folder with a spooler store of its own.
//
// On Windows the spooler is the machine's: printers are given names of their own and removed again.
#pragma once

#include <cstring>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "documenttree.h"

struct RunResult
{
    int status = -1;
    std::string out;
    std::string errors;
};

RunResult RunHost(const std::vector<std::string>& arguments, const std::string& input = {});
// The program itself, of which the command processor of either platform gives the status: double quotes are common.
int RunChild(const std::string& arguments);

std::string ReadBytes(const std::filesystem::path& path);
void WriteBytes(const std::filesystem::path& path, const std::string& bytes);

template <class Value>
std::string Patched(std::string bytes, std::size_t offset, Value value)
{
    EXPECT_LE(offset + sizeof value, bytes.size());
    std::memcpy(&bytes.at(offset), &value, sizeof value);
    return bytes;
}

// Exactly one line on the error stream, and it holds this text.
testing::AssertionResult IsOneErrorLine(const std::string& errors, const std::string& text);
// The status of a failure, one such line, and nothing else is printed.
testing::AssertionResult IsRefused(const RunResult& result, const std::string& text, int status = 1);
// What a run prints that succeeds; as JSON, with that option.
std::string OutputOf(const std::vector<std::string>& arguments, const std::string& input = {});
nlohmann::json JsonOf(std::vector<std::string> arguments, const std::string& input = {});

// A PrintTicket whose root binds the framework to "psf", with more declarations and content.
std::string Ticket(const std::string& declarations, const std::string& content);
std::string Binding(const std::string& prefix, std::string_view uri);

// Its root element.
SchemaElement ReadTree(const std::string& bytes);

inline constexpr const char* kModels[] = {"tavlen-c9070-ps", "tavlen-b4400-uni", "tavlen-w3100-xps",
                                          "tavlen-b7000-xps"};

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

    // Adds a printer, expects success, and removes it at the end; it is m_printer then.
    std::string InstallTestPrinter(const std::string& model = "tavlen-c9070-ps");
    // The same for a printer of a driver of its own, of the changed model; the changes have its name.
    std::string InstallChanged(const nlohmann::json& changes);
    void RemoveAtEnd(const std::string& printer);
    // The Unidrv model with changes, where null removes a field, as a file of the scratch folder.
    [[nodiscard]] std::string ChangedModel(const std::string& fileName, const nlohmann::json& changes) const;
    // What "printer show" tells of it, as JSON.
    [[nodiscard]] static nlohmann::json Shown(const std::string& printer);
    // The arguments, then "--set" and a setting, for each of them.
    [[nodiscard]] static std::vector<std::string> With(std::vector<std::string> arguments,
                                                       const std::vector<std::string>& settings);
    [[nodiscard]] static std::string NewDevmode(const std::string& printer,
                                                const std::vector<std::string>& settings = {});
    // What "devmode show" tells of the bytes, as JSON; with a printer, compared with it.
    [[nodiscard]] static nlohmann::json ShownDevmode(const std::string& bytes, const std::string& printer = {});
    // A new devmode of m_printer, as a file of the scratch folder.
    void WriteDevmode(const std::string& file, const std::vector<std::string>& settings = {}) const;
    // For m_printer, between files of the scratch folder or elsewhere; without a base it is the core driver's ticket.
    RunResult FromDevmode(const std::string& devmode, const std::string& ticket, const std::string& base = {}) const;
    RunResult ToDevmode(const std::string& ticket, const std::string& devmode, const std::string& result) const;

    std::string m_printer;

private:
    std::filesystem::path m_folder;
    std::vector<std::string> m_printers;
};
