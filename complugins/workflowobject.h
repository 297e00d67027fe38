// WorkflowObject: finds out which workflow module a printer's driver uses, loads it from the folder of this module's
// own file, and forwards to its object.
//
// The answer of the search is remembered in the printer's data ("XWorkflowDLL"). A printer without a workflow module
// is no failure: Load answers false, a trace line says why, and every forwarding operation throws
// ExceptionWorkflowObjectNotInitialized.
//
// Lifetime: the printer handle is borrowed and must outlive the object; references into the module end with it. One
// thread at a time.
#pragma once

#include <windows.h>

#include <tvcore/workflowmodule.h>
#include <tvutil/cxstring.h>

#include <memory>
#include <type_traits>

// Gives the object back to its module; what the module throws then is swallowed.
struct WorkflowObjectRelease
{
    ReleaseWorkflowObjectFunction release = nullptr;
    void operator()(WorkflowModuleObject* object) const noexcept;
};

struct WorkflowModuleRelease
{
    void operator()(HMODULE module) const noexcept;
};

class WorkflowObject
{
public:
    WorkflowObject() noexcept = default;
    virtual ~WorkflowObject();
    WorkflowObject(const WorkflowObject&) = delete;
    WorkflowObject& operator=(const WorkflowObject&) = delete;

    // These two are virtual, in this order behind the destructor.
    virtual bool UpdateRegistryWithDataModelData();
    virtual bool UpdatePublicAndPrivateDevmodeWithDataModelData();

    // True when the module's object exists, also from an earlier call: binding again keeps the first product data.
    bool Load(HANDLE printer);
    [[nodiscard]] bool IsLoaded() const noexcept;

    [[nodiscard]] ProductData& GetProductDataObj();
    void SetDataSourceProviderPtr(DataSourceProviderWithDataSources* provider, HANDLE printer, LONG use);
    bool LoadSettingsInitializeDataModelAndWriteDevmode(DEVMODEW* devmode);
    bool ReInitializeAssociatedXDevmodeObj();
    [[nodiscard]] ULONG GetWorkFlowType();

private:
    using ObjectOwner = std::unique_ptr<WorkflowModuleObject, WorkflowObjectRelease>;
    using ModuleOwner = std::unique_ptr<std::remove_pointer_t<HMODULE>, WorkflowModuleRelease>;

    [[nodiscard]] WorkflowModuleObject& Require(const WCHAR* method) const;
    void LoadModuleFor(HANDLE printer);
    void LoadModuleOfKind(DWORD kind);
    void CreateObject(const WCHAR* moduleName);

    bool m_loaded = false;
    HANDLE m_printerHandle = nullptr;
    ModuleOwner m_module;
    ObjectOwner m_object; // goes before its module
};
