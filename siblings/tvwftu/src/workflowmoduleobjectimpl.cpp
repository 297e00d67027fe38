#include "siblings/tvwftu/src/workflowmoduleobjectimpl.h"

#include <tvcore/workflowmodulenames.h>
#include <tvutil/exceptions.h>
#include <tvutil/throwexception.h>

#include <cstring>

#include "complugins/xdevmode.h"
#include "siblings/tvwftu/src/settingsmoves.h"

namespace
{

constexpr WCHAR kSourceFile[] = W("siblings\\tvwftu\\workflowmoduleobjectimpl");
constexpr WCHAR kOwnName[] = W("tvwftu_B.dll");

// The provider's data model has a copy of the caller's devmode: of the same size, or it is of another one.
void CopyDevmode(const DEVMODEW* from, DEVMODEW* to)
{
    if (from != nullptr && to != nullptr && from->dmSize == to->dmSize && from->dmDriverExtra == to->dmDriverExtra)
        std::memcpy(reinterpret_cast<BYTE*>(to), from, std::size_t{from->dmSize} + from->dmDriverExtra);
}

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
                                                        LONG /*use*/)
{
    m_provider = provider;
    m_printerHandle = printer;
}

FeatureServices* WorkflowModuleObjectImpl::FindFeatureServices() const
{
    return m_provider != nullptr ? m_provider->GetFeatureServicesPtr() : nullptr;
}

bool WorkflowModuleObjectImpl::UpdateRegistryWithDataModelData()
{
    FeatureServices* const services = FindFeatureServices();
    return services != nullptr && SettingsIntoRegistry(*services, m_printerHandle);
}

bool WorkflowModuleObjectImpl::UpdatePublicAndPrivateDevmodeWithDataModelData()
{
    FeatureServices* const services = FindFeatureServices();
    return services != nullptr && SettingsIntoDevmode(*services, *m_provider, m_printerHandle);
}

bool WorkflowModuleObjectImpl::LoadSettingsInitializeDataModelAndWriteDevmode(DEVMODEW* devmode)
{
    if (m_provider == nullptr)
        return false;
    FeatureServices* const services = m_provider->InitializeOrReInitializeDataModel(devmode);
    if (services == nullptr)
        return false;
    const bool isLoaded = SettingsFromRegistry(m_printerHandle, *services);
    const bool isWritten = SettingsIntoDevmode(*services, *m_provider, m_printerHandle);
    if (isWritten)
        CopyDevmode(m_provider->GetXDevmodeRef().GetDevmode(), devmode);
    return isLoaded || isWritten;
}

// Called by the provider amid the renewal of its data model: it must not be asked to initialise that.
bool WorkflowModuleObjectImpl::ReInitializeAssociatedXDevmodeObj()
{
    FeatureServices* const services = FindFeatureServices();
    return services != nullptr && SettingsFromDevmode(*m_provider, m_printerHandle, *services);
}

ULONG WorkflowModuleObjectImpl::GetWorkFlowType()
{
    return WorkflowModuleKind(kOwnName);
}
