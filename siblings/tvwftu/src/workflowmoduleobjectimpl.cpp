#include "siblings/tvwftu/src/workflowmoduleobjectimpl.h"

#include <tvutil/exceptions.h>
#include <tvutil/throwexception.h>

namespace
{

constexpr WCHAR kSourceFile[] = W("siblings\\tvwftu\\workflowmoduleobjectimpl");
constexpr ULONG kWorkFlowType = 1; // "tvwftu_B.dll" in the printer's data

} // namespace

void WorkflowModuleObjectImpl::Initialize(HANDLE printer)
{
    m_productData = std::make_unique<ProductData>(printer);
    m_printerHandle = printer;
}

ProductData& WorkflowModuleObjectImpl::GetProductDataObj()
{
    if (!m_productData)
        ThrowException<ExceptionWorkflowObjectNotInitialized>(
            {W("WorkflowModuleObjectImpl::GetProductDataObj"), kSourceFile});
    return *m_productData;
}

void WorkflowModuleObjectImpl::SetDataSourceProviderPtr(DataSourceProviderWithDataSources* provider, HANDLE printer,
                                                        LONG use)
{
    m_provider = provider;
    m_printerHandle = printer;
    m_use = use;
}

bool WorkflowModuleObjectImpl::UpdateRegistryWithDataModelData()
{
    return false;
}

bool WorkflowModuleObjectImpl::UpdatePublicAndPrivateDevmodeWithDataModelData()
{
    return false;
}

bool WorkflowModuleObjectImpl::LoadSettingsInitializeDataModelAndWriteDevmode(DEVMODEW* /*devmode*/)
{
    return false;
}

bool WorkflowModuleObjectImpl::ReInitializeAssociatedXDevmodeObj()
{
    return false;
}

ULONG WorkflowModuleObjectImpl::GetWorkFlowType()
{
    return kWorkFlowType;
}
