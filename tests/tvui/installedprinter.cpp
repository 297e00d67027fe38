#include "tests/tvui/installedprinter.h"
#include "tests/common/testfolders.h"

#include "filebytes.h"
#include "printerhandle.h"
void InstalledPrinter::Install(const std::string& shippedModel, const std::function<void(nlohmann::json&)>& change)
{
    const std::string name = m_name.ToUtf8();
    if (m_isInstalled)
        EXPECT_EQ(RunHost({"printer", "remove", name}).status, 0);
    else
        RemoveAtEnd(name);
    m_model = nlohmann::json::parse(ReadBytes(ModelsFolder() / (shippedModel + ".json")));
    m_model["name"] = "Tavlen Configuration " + shippedModel;
    if (change)
        change(m_model);
    const std::string file = "tvui-" + shippedModel + ".json";
    WriteBytes(Folder() / file, m_model.dump());
    const RunResult added = RunHost({"printer", "add", name, "--model", File(file)});
    ASSERT_EQ(added.status, 0) << added.errors;
    m_isInstalled = true;
}

void InstalledPrinter::ChangeInstalledModel(const std::function<void(nlohmann::json&)>& change) const
{
    const PrinterHandle printer = PrinterHandle::Open(m_name.ToUtf8(), PrinterHandle::Access::Use);
    const std::filesystem::path file = PathFromUtf8(DescribeDriver(printer, m_name.ToUtf8()).dataFile.ToUtf8());
    nlohmann::json model = nlohmann::json::parse(ReadBytes(file));
    change(model);
    WriteBytes(file, model.dump());
}

int InstalledPrinter::Ask(WORD capability, void* output) const
{
    return DeviceCapabilitiesW(m_name.c_str(), W("FILE:"), capability, static_cast<LPWSTR>(output), nullptr);
}

DOCUMENTPROPERTYHEADER ConfigurationModule::Header(LPWSTR name, DEVMODEW* input, std::vector<BYTE>& output, DWORD mode)
{
    DOCUMENTPROPERTYHEADER header{};
    header.cbSize = sizeof header;
    header.pszPrinterName = name;
    header.pdmIn = input;
    header.pdmOut = reinterpret_cast<DEVMODEW*>(output.data());
    header.cbOut = static_cast<DWORD>(output.size());
    header.fMode = mode;
    return header;
}
