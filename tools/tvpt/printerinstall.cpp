#include "printerinstall.h"

#include <algorithm>
#include <filesystem>

#include <tvcore/featurevalues.h>
#include <tvcore/workflowmodulenames.h>
#include <tvutil/devicesettingsmanager.h>
#include <tvutil/printdriver.h>

#include "driverpackage.h"
#include "failure.h"
#include "modelfiles.h"
#include "newdevmode.h"
#include "setuplock.h"

namespace
{

constexpr char kAdding[] = "adding the printer";
constexpr char kRemoving[] = "removing the printer";

// An installation under way: undone, newest first, unless it is completed.
class Installation
{
public:
    explicit Installation(DriverPackage package) noexcept : m_package(std::move(package))
    {
    }

    ~Installation()
    {
        if (m_done)
            return;
        if (m_printer.Get() != nullptr)
            DeletePrinter(m_printer.Get());
        m_printer = PrinterHandle(nullptr); // a driver is in use while a handle to its printer is open
        m_package.RollBack();
    }

    Installation(const Installation&) = delete;
    Installation& operator=(const Installation&) = delete;

    DriverPackage& Package() noexcept
    {
        return m_package;
    }

    const PrinterHandle& Keep(PrinterHandle printer) noexcept
    {
        m_printer = std::move(printer);
        return m_printer;
    }

    void Complete() noexcept
    {
        m_done = true;
    }

private:
    DriverPackage m_package;
    PrinterHandle m_printer{nullptr};
    bool m_done = false;
};

PrinterHandle CreatePrinter(const std::string& name, const PrinterModel& model)
{
    const CXString wideName = CXString::FromUtf8(name);
    std::vector<WCHAR> printerName = Terminated(wideName);
    std::vector<WCHAR> driverName = Terminated(model.name);
    std::vector<WCHAR> port = Terminated(CXString(W("FILE:")));
    std::vector<WCHAR> processor = Terminated(CXString(W("winprint")));
    std::vector<WCHAR> dataType = Terminated(CXString(W("RAW")));
    std::vector<WCHAR> nothing = Terminated(CXString());
    Devmode devmode = MakeNewDevmode(model, wideName);

    PRINTER_INFO_2W info{};
    info.pPrinterName = printerName.data();
    info.pPortName = port.data();
    info.pDriverName = driverName.data();
    info.pPrintProcessor = processor.data();
    info.pDatatype = dataType.data();
    info.pComment = nothing.data();
    info.pLocation = nothing.data();
    info.pDevMode = devmode.Raw();
    info.Attributes = PRINTER_ATTRIBUTE_LOCAL;
    SetLastError(ERROR_SUCCESS);
    HANDLE const printer = AddPrinterW(nullptr, 2, reinterpret_cast<LPBYTE>(&info));
    if (printer == nullptr)
        FailWithWin32Error(kAdding, name, GetLastError());
    return PrinterHandle(printer);
}

// The provider could find its workflow module by itself, but could not remember it: whoever prints may not write the
// printer's data.
void StoreModelData(const PrinterHandle& printer, const std::string& name, const PrinterModel& model)
{
    DWORD error = printer.StoreCapability(model.capability);
    const DWORD workflow = WorkflowModuleKind(model.workflowModule);
    if (error == ERROR_SUCCESS && workflow != kNoWorkflowModule) // none is not stored: it is looked for each time
        error = printer.StoreWorkflowModule(workflow);
    if (error == ERROR_SUCCESS)
    {
        DeviceSettingsManager::Store(Printer(printer.Get()),
                                     FeatureCatalogue::MakeSettings(model.defaults, FeatureCatalogue::Scope::Device));
        error = printer.StoreInstallationState(PrintDriver::kInstallationComplete); // last
    }
    if (error != ERROR_SUCCESS)
        FailWithWin32Error("storing the printer's data", name, error);
}

bool IsDriverUsed(const CXString& driverName)
{
    const auto printers = ListLocalPrinters();
    return std::any_of(printers.begin(), printers.end(),
                       [&driverName](const PrinterSummary& printer)
                       { return printer.driverName.CompareNoCase(driverName) == 0; });
}

} // namespace

void InstallPrinter(const std::string& name, const std::string& modelNameOrFile)
{
    const std::filesystem::path modelFile = FindModelFile(modelNameOrFile);
    const PrinterModel model = ReadPrinterModel(modelFile);
    const SetupLock lock; // until everything is done or taken back
    // Not every spooler refuses a second printer of one name.
    if (PrinterHandle::OpenIfExists(name))
        FailWithWin32Error(kAdding, name, ERROR_PRINTER_ALREADY_EXISTS);

    Installation installation(DriverPackage(model, modelFile));
    installation.Package().Install();
    const PrinterHandle& printer = installation.Keep(CreatePrinter(name, model));
    StoreModelData(printer, name, model);
    installation.Complete();
}

void RemovePrinter(const std::string& name)
{
    const SetupLock lock;
    CXString driverName;
    {
        const PrinterHandle printer = PrinterHandle::Open(name, PrinterHandle::Access::Administer);
        if (!printer.Capability())
            Fail(kRemoving, name, "it was not installed by this program");
        driverName = DescribePrinter(printer, name).driverName;
        if (!DeletePrinter(printer.Get()))
            FailWithWin32Error(kRemoving, name, GetLastError());
    }
    if (IsDriverUsed(driverName))
        return;
    const DWORD error = RemoveDriver(driverName);
    if (error != ERROR_SUCCESS && error != ERROR_PRINTER_DRIVER_IN_USE) // in use: somebody added a printer just now
        FailWithWin32Error("removing the printer's driver", driverName.ToUtf8(), error);
}

void RefreshPrinter(const std::string& name)
{
    const PrinterHandle printer = PrinterHandle::Open(name, PrinterHandle::Access::Administer);
    StoreModelData(printer, name, ReadInstalledModel(printer, name));
}

PrinterModel ReadInstalledModel(const PrinterHandle& printer, const std::string& name)
{
    if (!printer.Capability())
        Fail("reading the printer's model", name, "it was not installed by this program");
    const CXString file = DescribeDriver(printer, name).dataFile;
    return ReadPrinterModel(std::filesystem::path(file.View().begin(), file.View().end()));
}
