// The reference workflow module's object: owns the product data that the installed printer model describes.
//
// Settings are moved from and to the feature services of the provider's data model (settingsmoves.h). In light mode
// there are none, so every moving operation asks the provider and answers that nothing was moved.
#pragma once

#include <tvcore/datasourceproviderwithdatasources.h>
#include <tvcore/productdata.h>
#include <tvcore/workflowmodule.h>

#include <memory>

class WorkflowModuleObjectImpl final : public WorkflowModuleObject
{
public:
    void Initialize(HANDLE printer) override;
    ProductData& GetProductDataObj() override;
    void SetDataSourceProviderPtr(DataSourceProviderWithDataSources* provider, HANDLE printer, LONG use) override;
    bool UpdateRegistryWithDataModelData() override;
    bool UpdatePublicAndPrivateDevmodeWithDataModelData() override;
    bool LoadSettingsInitializeDataModelAndWriteDevmode(DEVMODEW* devmode) override;
    bool ReInitializeAssociatedXDevmodeObj() override;
    ULONG GetWorkFlowType() override;

private:
    // What settings are moved from; null without a provider, and while its data model is not in use.
    [[nodiscard]] FeatureServices* FindFeatureServices() const;

    HANDLE m_printerHandle = nullptr;
    std::unique_ptr<ProductData> m_productData;
    DataSourceProviderWithDataSources* m_provider = nullptr;
};
