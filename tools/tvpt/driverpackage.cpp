#include "driverpackage.h"

#include <windows.h>
#include <winspool.h>

#include <algorithm>
#include <system_error>
#include <vector>

#include <tvutil/spoolerbuffer.h>

#include "failure.h"
#include "filebytes.h"
#include "modelfiles.h"
#include "printerhandle.h"

namespace
{

namespace fs = std::filesystem;

constexpr char kInstalling[] = "installing the driver";
constexpr DWORD kDriverVersion = 3; // user-mode drivers

std::vector<WCHAR> EnvironmentName()
{
    return Terminated(CXString(W("Windows x64")));
}

// The spooler copies the sibling of that name where modules are shared objects.
fs::path ModuleSource(std::string_view name)
{
    fs::path module = ProgramFolder() / PathFromUtf8(name);
    if (!DriverFileExists(module))
        FailWithWin32Error(kInstalling, Utf8FromPath(module), ERROR_FILE_NOT_FOUND);
    return module;
}

CXString TextOf(const fs::path& path)
{
    return CXString::FromUtf8(Utf8FromPath(path));
}

CXString FileNameOf(const CXString& path)
{
    const std::size_t separator = path.View().find_last_of(W("/\\"));
    return separator == WStringView::npos ? path : path.Mid(separator + 1);
}

bool SameModel(const fs::path& modelFile, const CXString& installedFile)
{
    const fs::path installed(installedFile.View().begin(), installedFile.View().end());
    return ReadFileBytes(modelFile, PrinterModel::kMaxFileSize) == ReadFileBytes(installed, PrinterModel::kMaxFileSize);
}

// Recorded in small letters, on purpose: whoever looks for a driver's workflow module compares its name in small
// letters with the recorded ones, and to a file system all its spellings are one.
CXString WorkflowModuleSource(const CXString& name)
{
    fs::path module = ModuleSource(name.ToUtf8());
    return TextOf(module.replace_filename(PathFromUtf8(name.ToLower().ToUtf8())));
}

std::vector<WCHAR> MultiString(const std::vector<CXString>& texts)
{
    std::vector<WCHAR> characters;
    for (const CXString& text : texts)
    {
        const std::vector<WCHAR> one = Terminated(text);
        characters.insert(characters.end(), one.begin(), one.end());
    }
    characters.push_back(WCHAR());
    return characters;
}

} // namespace

bool IsOurDriver(const DriverSummary& driver)
{
    return HasModule(driver, CXString::FromUtf8(kProviderModule));
}

bool IsDriverUsed(const CXString& name)
{
    const auto printers = ListLocalPrinters();
    return std::any_of(printers.begin(), printers.end(),
                       [&name](const PrinterSummary& printer) { return printer.driverName.CompareNoCase(name) == 0; });
}

bool HasModule(const DriverSummary& driver, const CXString& module)
{
    return std::any_of(driver.dependentFiles.begin(), driver.dependentFiles.end(),
                       [&module](const CXString& file) { return FileNameOf(file).CompareNoCase(module) == 0; });
}

DriverPackage::DriverPackage(const PrinterModel& model, std::filesystem::path modelFile)
    : m_name(model.name), m_workflowModule(model.workflowModule), m_modelFile(std::move(modelFile))
{
    const CXString dataFile = TextOf(m_modelFile.filename());
    for (const DriverSummary& driver : ListDrivers())
    {
        const bool isThisDriver = driver.name.CompareNoCase(m_name) == 0;
        if (!isThisDriver && FileNameOf(driver.dataFile).CompareNoCase(dataFile) != 0)
            continue;
        if (IsOurDriver(driver) && !IsDriverUsed(driver.name)) // an installation that did not come to its end
            m_left.push_back(driver.name);
        else if (!isThisDriver)
            Fail(kInstalling, m_name.ToUtf8(),
                 "the driver \"" + driver.name.ToUtf8() + "\" already uses a file named " + dataFile.ToUtf8());
        else if (!SameModel(m_modelFile, driver.dataFile))
            Fail(kInstalling, m_name.ToUtf8(), "it is installed with another model; remove its printers first");
        else
            m_wasInstalled = true;
    }
}

void DriverPackage::Install()
{
    std::vector<WCHAR> environment = EnvironmentName();
    std::vector<WCHAR> name = Terminated(m_name);
    std::vector<WCHAR> module = Terminated(TextOf(ModuleSource(kProviderModule)));
    std::vector<WCHAR> model = Terminated(TextOf(m_modelFile));
    std::vector<WCHAR> configuration = Terminated(TextOf(ModuleSource(kConfigurationModule)));
    std::vector<CXString> modules;
    for (const std::string_view each : {kProviderModule, kUtilityModule, kCoreModule})
        modules.push_back(TextOf(ModuleSource(each)));
    if (!m_workflowModule.IsEmpty())
        modules.push_back(WorkflowModuleSource(m_workflowModule));
    std::vector<WCHAR> dependentFiles = MultiString(modules);
    std::vector<WCHAR> dataType = Terminated(CXString(W("RAW")));

    DRIVER_INFO_3W driver{};
    driver.cVersion = kDriverVersion;
    driver.pName = name.data();
    driver.pEnvironment = environment.data();
    driver.pDriverPath = module.data();
    driver.pDataFile = model.data();
    driver.pConfigFile = configuration.data();
    driver.pDependentFiles = dependentFiles.data();
    driver.pDefaultDataType = dataType.data();
    for (const CXString& left : m_left)
        if (const DWORD error = RemoveDriver(left); error != ERROR_SUCCESS)
            FailWithWin32Error("removing the driver that no printer uses", left.ToUtf8(), error);
    // The files of a driver come from anywhere, not from the spooler's own folder.
    if (!AddPrinterDriverExW(nullptr, 3, reinterpret_cast<LPBYTE>(&driver),
                             APD_COPY_ALL_FILES | APD_COPY_FROM_DIRECTORY))
        FailWithWin32Error(kInstalling, m_name.ToUtf8(), GetLastError());
    m_installed = true;
}

void DriverPackage::RollBack() noexcept
{
    if (m_installed && !m_wasInstalled)
        (void)RemoveDriver(m_name);
}

std::filesystem::path DriverFolder()
{
    std::vector<WCHAR> environment = EnvironmentName();
    SpoolerBuffer answer;
    const DWORD error = answer.Fill(
        [&](LPBYTE room, DWORD size, LPDWORD needed)
        { return ErrorOf(GetPrinterDriverDirectoryW(nullptr, environment.data(), 1, room, size, needed)); });
    const auto folder = answer.Text(reinterpret_cast<const WCHAR*>(answer.Bytes().data()));
    if (error != ERROR_SUCCESS || !folder || folder->empty())
        FailWithWin32Error("finding the folder of drivers", SpoolerPlace(),
                           error != ERROR_SUCCESS ? error : DWORD{ERROR_INVALID_DATA});
    return PathFromUtf8(CXString(*folder).ToUtf8());
}

bool DriverFileExists(const std::filesystem::path& file)
{
    std::error_code error;
    return fs::exists(file, error) || fs::exists(fs::path(file).replace_extension(".so"), error);
}

DWORD RemoveDriver(const CXString& driverName) noexcept
{
    try
    {
        std::vector<WCHAR> environment = EnvironmentName();
        std::vector<WCHAR> name = Terminated(driverName);
        if (DeletePrinterDriverExW(nullptr, environment.data(), name.data(), DPD_DELETE_UNUSED_FILES, 0))
            return ERROR_SUCCESS;
        if (GetLastError() != ERROR_INVALID_PARAMETER)
            return GetLastError();
        // A spooler that cannot remove files removes at least the record.
        return DeletePrinterDriverExW(nullptr, environment.data(), name.data(), 0, 0) ? ERROR_SUCCESS : GetLastError();
    }
    catch (...)
    {
        return ERROR_NOT_ENOUGH_MEMORY;
    }
}
