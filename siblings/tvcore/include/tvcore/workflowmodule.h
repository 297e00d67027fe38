// What a workflow module of the driver supplies: one object that owns the product data and moves settings of the data
// model into the registry and into the devmode.
//
// The module exports two plain functions, looked up by name: GetWorkflowObject (called with 0) hands out the object,
// or null where it has none; memory that runs out is thrown, so both sides are built by one compiler, as the object's
// own operations demand. ReleaseWorkflowObject takes it back. The object stays the module's: nobody else deletes it,
// and it must not outlive the module.
#pragma once

#include <windows.h>

class DataSourceProviderWithDataSources;
class ProductData;

class WorkflowModuleObject
{
public:
    // Once, before everything else. The handle is borrowed for the object's life. Product data that cannot be read is
    // thrown: the printer's (ExceptionPrinterFailure) or the model's own failure.
    virtual void Initialize(HANDLE printer) = 0;

    // Valid as long as the object.
    virtual ProductData& GetProductDataObj() = 0;

    // Where the data model's settings come from; null takes it back. Borrowed. `use` is what the provider is for
    // (3: the settings of a print ticket).
    virtual void SetDataSourceProviderPtr(DataSourceProviderWithDataSources* provider, HANDLE printer, LONG use) = 0;

    // These answer whether settings were moved: false without a provider, or while its data model is not in use.
    virtual bool UpdateRegistryWithDataModelData() = 0;
    virtual bool UpdatePublicAndPrivateDevmodeWithDataModelData() = 0;
    virtual bool LoadSettingsInitializeDataModelAndWriteDevmode(DEVMODEW* devmode) = 0;
    virtual bool ReInitializeAssociatedXDevmodeObj() = 0;

    // The module's number, as it is stored in the printer's data.
    virtual ULONG GetWorkFlowType() = 0;

protected:
    ~WorkflowModuleObject() = default;
};

using GetWorkflowObjectFunction = WorkflowModuleObject* (*)(LONG reserved);
using ReleaseWorkflowObjectFunction = void (*)(WorkflowModuleObject* object);

inline constexpr char kGetWorkflowObjectName[] = "GetWorkflowObject";
inline constexpr char kReleaseWorkflowObjectName[] = "ReleaseWorkflowObject";
