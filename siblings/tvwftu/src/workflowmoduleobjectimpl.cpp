#include "siblings/tvwftu/src/workflowmoduleobjectimpl.h"

#include <tvcore/workflowmodulenames.h>
#include <tvutil/exceptions.h>
#include <tvutil/throwexception.h>

namespace
{

constexpr WCHAR kSourceFile[] = W("siblings\\tvwftu\\workflowmoduleobjectimpl");
constexpr WCHAR kOwnName[] = W("tvwftu_B.dll");

// Each answers whether settings were moved. The services of a data model have no operations yet by which settings could
// be read or written, so none of these moves any, with a data model either, and none says otherwise.

bool SettingsIntoRegistry(FeatureServices& /*from*/, HANDLE /*printer*/)
{
    return false;
}

bool SettingsFromRegistry(HANDLE /*printer*/, FeatureServices& /*into*/)
{
    return false;
}

bool SettingsIntoDevmode(FeatureServices& /*from*/, DataSourceProviderWithDataSources& /*devmodeOwner*/)
{
    return false;
}

bool SettingsFromDevmode(DataSourceProviderWithDataSources& /*devmodeOwner*/, FeatureServices& /*into*/)
{
    return false;
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
    return services != nullptr && SettingsIntoDevmode(*services, *m_provider);
}

bool WorkflowModuleObjectImpl::LoadSettingsInitializeDataModelAndWriteDevmode(DEVMODEW* devmode)
{
    if (m_provider == nullptr)
        return false;
    FeatureServices* const services = m_provider->InitializeOrReInitializeDataModel(devmode);
    return services != nullptr && SettingsFromRegistry(m_printerHandle, *services) &&
           SettingsIntoDevmode(*services, *m_provider);
}

// Called by the provider amid the renewal of its data model: it must not be asked to initialise that.
bool WorkflowModuleObjectImpl::ReInitializeAssociatedXDevmodeObj()
{
    FeatureServices* const services = FindFeatureServices();
    return services != nullptr && SettingsFromDevmode(*m_provider, *services);
}

ULONG WorkflowModuleObjectImpl::GetWorkFlowType()
{
    return WorkflowModuleKind(kOwnName);
}
