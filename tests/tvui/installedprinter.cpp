#include "tests/tvui/installedprinter.h"

#include <fstream>
#include <stdexcept>
#include <system_error>

#include "failure.h"
#include "printerhandle.h"
#include "printerinstall.h"

namespace
{

namespace fs = std::filesystem;

CXString TextOf(const fs::path& path)
{
    const std::u8string text = path.u8string();
    return CXString::FromUtf8(std::string(text.begin(), text.end()));
}

} // namespace

void InstalledPrinter::SetUp()
{
    const std::string id = std::to_string(GetCurrentProcessId());
    m_folder = fs::temp_directory_path() / ("tvui-tests-" + id);
    m_name = CXString::FromUtf8("Tavlen configuration " + id);
    fs::remove_all(m_folder);
    fs::create_directories(m_folder);
    SetEnvironmentVariableW(W("TVPT_STORE"), TextOf(m_folder / "store").c_str());
}

void InstalledPrinter::TearDown()
{
    Remove();
    SetEnvironmentVariableW(W("TVPT_STORE"), nullptr);
    std::error_code ignored;
    fs::remove_all(m_folder, ignored);
}

void InstalledPrinter::Install(const std::string& shippedModel, const std::function<void(nlohmann::json&)>& change)
{
    Remove();
    std::ifstream stream(fs::path(TVPT_MODELS_FOLDER) / (shippedModel + ".json"));
    nlohmann::json model = nlohmann::json::parse(stream);
    model["name"] = "Tavlen Configuration " + shippedModel;
    if (change)
        change(model);
    const fs::path file = m_folder / ("tvui-" + shippedModel + ".json");
    std::ofstream(file) << model.dump();
    m_model = ReadPrinterModel(file);
    const std::u8string fileName = file.u8string();
    ASSERT_NO_THROW(InstallPrinter(m_name.ToUtf8(), std::string(fileName.begin(), fileName.end())));
    m_isInstalled = true;
}

void InstalledPrinter::ChangeInstalledModel(const std::function<void(nlohmann::json&)>& change) const
{
    const PrinterHandle printer = PrinterHandle::Open(m_name.ToUtf8(), PrinterHandle::Access::Use);
    const std::string name = DescribeDriver(printer, m_name.ToUtf8()).dataFile.ToUtf8();
    const fs::path file(std::u8string(name.begin(), name.end()));
    nlohmann::json model = nlohmann::json::parse(std::ifstream(file));
    change(model);
    std::ofstream(file) << model.dump();
}

void InstalledPrinter::Remove()
{
    if (!m_isInstalled)
        return;
    EXPECT_NO_THROW(RemovePrinter(m_name.ToUtf8()));
    m_isInstalled = false;
}

int InstalledPrinter::Ask(WORD capability, void* output) const
{
    return DeviceCapabilitiesW(m_name.c_str(), W("FILE:"), capability, static_cast<LPWSTR>(output), nullptr);
}

ByteBuffer InstalledPrinter::Properties(const DEVMODEW* input) const
{
    const Printer printer(m_name);
    WideString name = MutableName();
    const LONG size = DocumentPropertiesW(nullptr, printer.GetPrinterHandle(), name.data(), nullptr, nullptr, 0);
    EXPECT_GT(size, LONG{sizeof(DEVMODEW)}) << GetLastError();
    if (size < LONG{sizeof(DEVMODEW)})
        return ByteBuffer(sizeof(DEVMODEW));
    ByteBuffer output(static_cast<std::size_t>(size));
    EXPECT_EQ(DocumentPropertiesW(nullptr, printer.GetPrinterHandle(), name.data(),
                                  reinterpret_cast<DEVMODEW*>(output.data()), const_cast<DEVMODEW*>(input),
                                  DM_OUT_BUFFER | (input != nullptr ? DM_IN_BUFFER : 0)),
              IDOK)
        << GetLastError();
    return output;
}

DEVMODEW InstalledPrinter::PublicPart(const ByteBuffer& devmode)
{
    DEVMODEW fields{};
    memcpy(&fields, devmode.data(), sizeof fields);
    return fields;
}

ConfigurationModule::ConfigurationModule() : m_module(LoadLibraryW(W("tvui_B.dll")))
{
    Find("DrvDeviceCapabilities", m_capabilities);
    Find("DrvDocumentPropertySheets", m_propertySheets);
    Find("DrvPrinterEvent", m_event);
}

ConfigurationModule::~ConfigurationModule()
{
    FreeLibrary(m_module);
}

template <class Function>
void ConfigurationModule::Find(const char* name, Function*& function) const
{
    function = reinterpret_cast<Function*>(reinterpret_cast<void*>(GetProcAddress(m_module, name)));
    if (function == nullptr)
        throw std::runtime_error(std::string("the configuration module has no ") + name);
}

int ConfigurationModule::Capability(HANDLE printer, LPWSTR name, WORD capability, void* output) const
{
    return static_cast<int>(m_capabilities(printer, name, capability, output, nullptr));
}

LONG ConfigurationModule::PropertySheets(void* info, DOCUMENTPROPERTYHEADER* header) const
{
    return m_propertySheets(info, reinterpret_cast<LPARAM>(header));
}

BOOL ConfigurationModule::Event(LPWSTR name, INT event) const
{
    return m_event(name, event, PRINTER_EVENT_FLAG_NO_UI, 0);
}
