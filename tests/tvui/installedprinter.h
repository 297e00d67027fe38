// A printer that the set-up has installed with the real modules, and the configuration module's own functions.
//
// Over winport the store is a scratch folder; on Windows it is the machine's spooler, and the printer is removed again.
#pragma once

#include <windows.h>
#include <winspool.h>

#include <winddiui.h>

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <tvcore/printermodel.h>
#include <tvutil/bytebuffer.h>
#include <tvutil/printer.h>

#include "interfaces/documentpropertyheader.h"

inline constexpr const char* kPostScriptModel = "tavlen-c9070-ps";
inline constexpr const char* kUnidrvModel = "tavlen-b4400-uni";

class InstalledPrinter : public testing::Test
{
protected:
    void SetUp() override;
    void TearDown() override;

    // Installs a shipped model, changed, after removing the printer that was there.
    void Install(const std::string& shippedModel, const std::function<void(nlohmann::json&)>& change = {});

    // Changes the installed driver's data file behind everybody's back.
    void ChangeInstalledModel(const std::function<void(nlohmann::json&)>& change) const;

    [[nodiscard]] const PrinterModel& Model() const
    {
        return m_model;
    }
    [[nodiscard]] const CXString& Name() const
    {
        return m_name;
    }
    [[nodiscard]] WideString MutableName() const // the platform's parameters are not const
    {
        return WideString(m_name.View());
    }

    [[nodiscard]] int Ask(WORD capability, void* output = nullptr) const;
    // The list of a capability; its room is guarded.
    template <class Record>
    std::vector<Record> List(WORD capability) const
    {
        const int count = Ask(capability);
        if (count < 0)
        {
            ADD_FAILURE() << "capability " << capability << ": " << count;
            return {};
        }
        std::vector<Record> records(static_cast<std::size_t>(count) + 1);
        const std::vector<BYTE> guard(sizeof(Record), BYTE{0xA5});
        memcpy(&records.back(), guard.data(), guard.size());
        EXPECT_EQ(Ask(capability, records.data()), count) << "capability " << capability;
        EXPECT_EQ(memcmp(&records.back(), guard.data(), guard.size()), 0) << "capability " << capability;
        records.pop_back();
        return records;
    }

    // What DocumentPropertiesW makes of an input, or of none.
    [[nodiscard]] ByteBuffer Properties(const DEVMODEW* input = nullptr) const;
    [[nodiscard]] static DEVMODEW PublicPart(const ByteBuffer& devmode);

private:
    void Remove();

    std::filesystem::path m_folder;
    CXString m_name;
    PrinterModel m_model;
    bool m_isInstalled = false;
};

// The functions that the spooler calls, in the module beside the test program.
class ConfigurationModule
{
public:
    ConfigurationModule();
    ~ConfigurationModule();
    ConfigurationModule(const ConfigurationModule&) = delete;
    ConfigurationModule& operator=(const ConfigurationModule&) = delete;

    [[nodiscard]] int Capability(HANDLE printer, LPWSTR name, WORD capability, void* output) const;
    [[nodiscard]] LONG PropertySheets(void* info, DOCUMENTPROPERTYHEADER* header) const;
    [[nodiscard]] BOOL Event(LPWSTR name, INT event) const;

private:
    template <class Function>
    void Find(const char* name, Function*& function) const;

    HMODULE m_module;
    DWORD(WINAPI* m_capabilities)(HANDLE, LPWSTR, WORD, LPVOID, DEVMODEW*) = nullptr;
    LONG(WINAPI* m_propertySheets)(LPVOID, LPARAM) = nullptr;
    BOOL(WINAPI* m_event)(LPWSTR, INT, DWORD, LPARAM) = nullptr;
};
