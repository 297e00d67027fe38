#include "complugins/workflowobject.h"

#include <windows.h>

#include <winspool.h>

#include <tvcore/workflowmodulenames.h>
#include <tvutil/exceptions.h>
#include <tvutil/executioncontext.h>
#include <tvutil/printdriver.h>
#include <tvutil/printer.h>
#include <tvutil/tavlenutilities.h>
#include <tvutil/textresourceloader.h>
#include <tvutil/throwexception.h>

#include <iterator>
#include <utility>

#include "utilitiesstaticlib/findfunction.h"

namespace
{

constexpr WCHAR kSourceFile[] = W("complugins\\workflowobject");
constexpr DWORD kEveryDriverFile = 9;

// A printer without a workflow module is bound all the same, so nobody but the trace says why its product is missing.
// Each outcome has one line. Memory that is short costs the line, not the binding.
void TraceMissing(WStringView reason, std::initializer_list<CXString::Argument> arguments = {}) noexcept
try
{
    const CXString line =
        CXString(W("WorkflowObject::Load: no workflow module: ")) + CXString::Format(reason, arguments);
    OutputDebugStringW((line + W("\n")).c_str());
}
catch (...)
{
    OutputDebugStringW(W("WorkflowObject::Load: no workflow module\n"));
}

// Of the three only the names sought are brought to lower case, not the list that the spooler returns, on purpose: a
// driver whose files are spelled otherwise has no workflow module.
//
// Nothing is stored when none is found, on purpose: the next load looks again.
void StoreDetectedKind(HANDLE printer)
{
    CXString files;
    try
    {
        for (const CXString& file : PrintDriver().GetDriverFiles(printer, kEveryDriverFile, CXString()))
        {
            files += file;
            files += W("\n");
        }
        DWORD kind = 1;
        for (const WCHAR* name : kWorkflowModuleNames)
        {
            if (files.Find(CXString(name).ToLower()) != CXString::npos)
            {
                Printer(printer).SetPrinterDataW(kWorkflowModuleValueName, REG_DWORD, &kind, sizeof(kind));
                return;
            }
            ++kind;
        }
        TraceMissing(W("none of the known ones is among the driver's files"));
    }
    // A driver that cannot be asked, or a printer that cannot be written: the kind is looked for again next time.
    catch (const ExceptionPrintDriverFailure& failure)
    {
        TraceMissing(W("the driver's files cannot be listed: %s"), {failure.GetText()});
    }
    catch (const ExceptionPrinterFailure& failure)
    {
        TraceMissing(W("its kind cannot be kept in the printer's data: %s"), {failure.GetText()});
    }
}

// False when there is no value. A value of another type is kind 0, and is not rewritten.
bool ReadStoredKind(const Printer& printer, DWORD& kind)
{
    DWORD type = REG_NONE;
    ByteBuffer data;
    if (!printer.GetPrinterDataW(kWorkflowModuleValueName, type, data))
        return false;
    const bool isNumber = type == REG_DWORD && data.size() == sizeof(DWORD);
    kind = isNumber ? data.getDword() : kNoWorkflowModule;
    if (!isNumber)
        TraceMissing(W("what the printer's data hold for it is no number"));
    else if (kind == kNoWorkflowModule)
        TraceMissing(W("the printer's data say that there is none"));
    return true;
}

void OwnFolderMarker()
{
}

} // namespace

void WorkflowObjectRelease::operator()(WorkflowModuleObject* object) const noexcept
{
    try
    {
        release(object);
    }
    catch (...)
    {
        // The module goes either way.
    }
}

void WorkflowModuleRelease::operator()(HMODULE module) const noexcept
{
    FreeLibrary(module);
}

WorkflowObject::~WorkflowObject() = default;

bool WorkflowObject::IsLoaded() const noexcept
{
    return m_loaded;
}

bool WorkflowObject::Load(HANDLE printer)
{
    if (m_loaded)
        return true;
    const ExecutionContextLifetime context({W("WorkflowObject::Load"), kSourceFile});
    m_module.reset(); // of a load that an exception ended: another printer may have another module
    m_printerHandle = printer;
    try
    {
        LoadModuleFor(printer);
    }
    catch (const ExceptionPrinterFailure& failure) // a printer that cannot be asked has no workflow module
    {
        TraceMissing(W("the printer does not answer what is asked of it: %s"), {failure.GetText()});
    }
    if (!m_object)
        m_module.reset();
    m_loaded = m_object != nullptr;
    return m_loaded;
}

void WorkflowObject::LoadModuleFor(HANDLE printerHandle)
{
    const Printer printer(printerHandle);
    TextResourceLoader::Initialize(printerHandle, false);
    DWORD kind = kNoWorkflowModule;
    if (!ReadStoredKind(printer, kind))
    {
        StoreDetectedKind(printerHandle);
        ReadStoredKind(printer, kind);
    }
    if (kind > std::size(kWorkflowModuleNames))
        TraceMissing(W("the printer's data name an unknown one, number %u"), {kind});
    else if (kind != kNoWorkflowModule)
        LoadModuleOfKind(kind);
    if (m_module)
        CreateObject(kWorkflowModuleNames[kind - 1]);
}

void WorkflowObject::LoadModuleOfKind(DWORD kind)
{
    const CXString folder = TavlenUtilities::getPathFromFileName(TavlenUtilities::getModulePath(&OwnFolderMarker));
    const CXString path = folder + kWorkflowModuleNames[kind - 1];
    m_module.reset(LoadLibraryExW(path.c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH));
    if (!m_module)
        TraceMissing(W("%s cannot be loaded: Win32 error %u"), {path, GetLastError()});
}

// An object that cannot be initialised for this printer is given back: it counts as none. What it throws decides
// whether the printer is bound without it; memory that runs out, also for making the object, never passes for a missing
// module.
void WorkflowObject::CreateObject(const WCHAR* moduleName)
{
    HMODULE const module = m_module.get();
    const auto getObject = FindFunction<GetWorkflowObjectFunction>(module, kGetWorkflowObjectName);
    const auto releaseObject = FindFunction<ReleaseWorkflowObjectFunction>(module, kReleaseWorkflowObjectName);
    if (getObject == nullptr || releaseObject == nullptr) // an object that could not be given back is not taken
        return TraceMissing(W("%s does not export the two functions of one"), {moduleName});
    ObjectOwner object(getObject(0), WorkflowObjectRelease{releaseObject});
    if (!object)
        return TraceMissing(W("%s has no object to give"), {moduleName});
    object->Initialize(m_printerHandle);
    m_object = std::move(object);
}

WorkflowModuleObject& WorkflowObject::Require(const WCHAR* method) const
{
    if (!m_loaded)
        ThrowException<ExceptionWorkflowObjectNotInitialized>({method, kSourceFile});
    return *m_object;
}

ProductData& WorkflowObject::GetProductDataObj()
{
    return Require(W("WorkflowObject::GetProductDataObj")).GetProductDataObj();
}

void WorkflowObject::SetDataSourceProviderPtr(DataSourceProviderWithDataSources* provider, HANDLE printer, LONG use)
{
    Require(W("WorkflowObject::SetDataSourceProviderPtr")).SetDataSourceProviderPtr(provider, printer, use);
}

bool WorkflowObject::UpdateRegistryWithDataModelData()
{
    return Require(W("WorkflowObject::UpdateRegistryWithDataModelData")).UpdateRegistryWithDataModelData();
}

bool WorkflowObject::UpdatePublicAndPrivateDevmodeWithDataModelData()
{
    return Require(W("WorkflowObject::UpdatePublicAndPrivateDevmodeWithDataModelData"))
        .UpdatePublicAndPrivateDevmodeWithDataModelData();
}

bool WorkflowObject::LoadSettingsInitializeDataModelAndWriteDevmode(DEVMODEW* devmode)
{
    return Require(W("WorkflowObject::LoadSettingsInitializeDataModelAndWriteDevmode"))
        .LoadSettingsInitializeDataModelAndWriteDevmode(devmode);
}

bool WorkflowObject::ReInitializeAssociatedXDevmodeObj()
{
    return Require(W("WorkflowObject::ReInitializeAssociatedXDevmodeObj")).ReInitializeAssociatedXDevmodeObj();
}

ULONG WorkflowObject::GetWorkFlowType()
{
    return Require(W("WorkflowObject::GetWorkFlowType")).GetWorkFlowType();
}
