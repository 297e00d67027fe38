#include "printerinstall.h"

#include <algorithm>
#include <filesystem>

#include <tvcore/workflowmodulenames.h>
#include <tvutil/printer.h>

#include "configurationmodule.h"
#include "driverpackage.h"
#include "failure.h"
#include "modelfiles.h"
#include "newdevmode.h"
#include "printersetup.h"
#include "setuplock.h"

namespace
{

constexpr char kAdding[] = "adding the printer";
constexpr char kRemoving[] = "removing the printer";

// An installation under way: undone, newest first, unless it is completed.
class Installation
{
public:
    Installation(DriverPackage package, const std::string& name) : m_package(std::move(package)), m_name(name)
    {
    }

    ~Installation()
    {
        if (m_done)
            return;
        if (m_printer.Get() != nullptr)
        {
            DeletePrinter(m_printer.Get());
            ForgetCapabilityCaches(m_name);
        }
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
    std::string m_name;
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

// What a driver's files were chosen by at its installation cannot be changed by its data file.
void RequireSameDriver(const std::string& name, const PrinterModel& model, const DriverSummary& driver)
{
    constexpr char kRefreshing[] = "refreshing the printer";
    constexpr char kAdvice[] = "; copy the model away, remove the printer, and add it with the copy";
    if (driver.name != model.name)
        Fail(kRefreshing, name,
             "its driver is \"" + driver.name.ToUtf8() + "\", its model is now named \"" + model.name.ToUtf8() + "\"" +
                 kAdvice);
    for (const WCHAR* const module : kWorkflowModuleNames)
        if (HasModule(driver, module) != (model.workflowModule == module))
            Fail(kRefreshing, name,
                 std::string("the workflow module \"") + CXString(module).ToUtf8() +
                     (model.workflowModule == module ? "\" of its model is not among its driver's files"
                                                     : "\" is among its driver's files, but not its model's") +
                     kAdvice);
}

} // namespace

void InstallPrinter(const std::string& name, const std::string& modelNameOrFile)
{
    if (CXString::FromUtf8(name).ToUtf8() != name) // it would become another name
        Fail(kAdding, name, "the name is not UTF-8");
    const std::filesystem::path modelFile = FindModelFile(modelNameOrFile);
    const PrinterModel model = ReadPrinterModel(modelFile);
    const SetupLock lock; // until everything is done or taken back
    // Not every spooler refuses a second printer of one name.
    if (const auto present = PrinterHandle::OpenIfExists(name))
    {
        if (SetUpStateOf(*present) == SetUpState::Incomplete)
            Fail(kAdding, name, "its installation did not come to its end; \"tvpt printer refresh\" completes it");
        FailWithWin32Error(kAdding, name, ERROR_PRINTER_ALREADY_EXISTS);
    }

    Installation installation(DriverPackage(model, modelFile), name);
    installation.Package().Install();
    const PrinterHandle& printer = installation.Keep(CreatePrinter(name, model));
    FillCapabilityCaches(printer, name);
    StoreModelData(printer, name, model);
    installation.Complete();
}

void RemovePrinter(const std::string& name)
{
    const SetupLock lock;
    CXString driverName;
    {
        const PrinterHandle printer = PrinterHandle::Open(name, PrinterHandle::Access::Administer);
        if (SetUpStateOf(printer) == SetUpState::NotOurs)
            Fail(kRemoving, name, "it was not installed by this program");
        driverName = DescribePrinter(printer, name).driverName;
        if (!DeletePrinter(printer.Get()))
            FailWithWin32Error(kRemoving, name, GetLastError());
    }
    ForgetCapabilityCaches(name);
    if (IsDriverUsed(driverName))
        return;
    const DWORD error = RemoveDriver(driverName);
    if (error != ERROR_SUCCESS && error != ERROR_PRINTER_DRIVER_IN_USE) // in use: somebody added a printer just now
        FailWithWin32Error("removing the printer's driver", driverName.ToUtf8(), error);
}

bool RefreshPrinter(const std::string& name)
{
    const SetupLock lock;
    const PrinterHandle printer = PrinterHandle::Open(name, PrinterHandle::Access::Administer);
    const PrinterModel model = ReadInstalledModel(printer, name, SetUpState::Incomplete);
    RequireSameDriver(name, model, DescribeDriver(printer, name));
    RenewDevmode(printer, name);
    Printer(printer.Get()).ClearDevmode1stLevelCache();
    FillCapabilityCaches(printer, name);
    return StoreModelData(printer, name, model);
}
