// A printer that the set-up has installed with the real modules, and the configuration module's own functions.
#pragma once

#include <windows.h>
#include <winspool.h>

#include <winddiui.h>

#include <functional>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include <tvutil/bytebuffer.h>
#include <tvutil/printer.h>

#include "interfaces/documentpropertyheader.h"
#include "tests/tvpt/hostrun.h"
#include "utilitiesstaticlib/findfunction.h"

inline constexpr const char* kPostScriptModel = "tavlen-c9070-ps";
inline constexpr const char* kUnidrvModel = "tavlen-b4400-uni";

class InstalledPrinter : public HostTest
{
protected:
    // Installs a shipped model, changed, after removing the printer that was there.
    void Install(const std::string& shippedModel, const std::function<void(nlohmann::json&)>& change = {});

    // Changes the installed driver's data file behind everybody's back.
    void ChangeInstalledModel(const std::function<void(nlohmann::json&)>& change) const;

    [[nodiscard]] WideString MutableName() const // the platform's parameters are not const
    {
        return WideString(m_name.View());
    }

    [[nodiscard]] int Ask(WORD capability, void* output = nullptr) const;
    // The list of a capability; its room is guarded.
    template <class Record>
    std::vector<Record> List(WORD capability) const
    {
        SCOPED_TRACE("capability " + std::to_string(capability));
        const int count = Ask(capability);
        EXPECT_GE(count, 0);
        std::vector<Record> records(static_cast<std::size_t>(count < 0 ? 0 : count) + 1);
        memset(&records.back(), 0xA5, sizeof(Record));
        const Record guard = records.back();
        EXPECT_EQ(Ask(capability, records.data()), count);
        EXPECT_EQ(memcmp(&records.back(), &guard, sizeof guard), 0);
        records.pop_back();
        return records;
    }

    // What DocumentPropertiesW makes of an input, or of none.
    [[nodiscard]] ByteBuffer Properties(const DEVMODEW* input = nullptr) const
    {
        return Printer(m_name).GetDriverDevmode(input);
    }
    [[nodiscard]] static DEVMODEW PublicPart(const ByteBuffer& devmode)
    {
        return *reinterpret_cast<const DEVMODEW*>(devmode.data());
    }

    const CXString m_name = CXString::FromUtf8("Tavlen configuration " + std::to_string(GetCurrentProcessId()));
    nlohmann::json m_model;

private:
    bool m_isInstalled = false;
};

// The functions that the spooler calls, in the module beside the test program.
class ConfigurationModule
{
public:
    ConfigurationModule() = default;
    ~ConfigurationModule()
    {
        FreeLibrary(m_module);
    }
    ConfigurationModule(const ConfigurationModule&) = delete;
    ConfigurationModule& operator=(const ConfigurationModule&) = delete;

    [[nodiscard]] int Capability(HANDLE printer, LPWSTR name, WORD capability, void* output) const
    {
        return static_cast<int>(m_capabilities(printer, name, capability, output, nullptr));
    }
    [[nodiscard]] LONG PropertySheets(void* info, DOCUMENTPROPERTYHEADER* header) const
    {
        return m_propertySheets(info, reinterpret_cast<LPARAM>(header));
    }
    [[nodiscard]] BOOL Event(LPWSTR name, INT event) const
    {
        return m_event(name, event, PRINTER_EVENT_FLAG_NO_UI, 0);
    }

    // What the spooler asks PropertySheets with; everything is borrowed.
    static DOCUMENTPROPERTYHEADER Header(LPWSTR name, DEVMODEW* input, std::vector<BYTE>& output, DWORD mode);

private:
    using Capabilities = DWORD(WINAPI*)(HANDLE, LPWSTR, WORD, LPVOID, DEVMODEW*);
    using Sheets = LONG(WINAPI*)(LPVOID, LPARAM);
    using PrinterEvent = BOOL(WINAPI*)(LPWSTR, INT, DWORD, LPARAM);

    HMODULE const m_module = LoadLibraryW(W("tvui_B.dll"));
    Capabilities const m_capabilities = FindFunction<Capabilities>(m_module, "DrvDeviceCapabilities");
    Sheets const m_propertySheets = FindFunction<Sheets>(m_module, "DrvDocumentPropertySheets");
    PrinterEvent const m_event = FindFunction<PrinterEvent>(m_module, "DrvPrinterEvent");
};
