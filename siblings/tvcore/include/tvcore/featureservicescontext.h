// FeatureServicesContext: the feature services as the place that a devmode's core driver settings are brought into.
//
// Borrows both for one transfer. Nothing that must be linked but FeatureServices.
#pragma once

#include <tvcore/datamodelcontext.h>
#include <tvcore/featureservices.h>

class FeatureServicesContext final : public DataModelContext
{
public:
    FeatureServicesContext(FeatureServices& services, DEVMODEW* devmode) : m_services(services), m_devmode(devmode)
    {
    }

    [[nodiscard]] DEVMODEW* GetDevmode() override
    {
        return m_devmode;
    }

    void SetOptionValue(std::int32_t feature, std::int32_t valueId) override
    {
        m_services.SetValue(FeatureIdWithContext::FromNumber(feature),
                            ValueId(static_cast<DataModelIds::tagValueEnum>(valueId)));
    }

    void SetIntegerValue(std::int32_t feature, std::int32_t value) override
    {
        m_services.SetValue(FeatureIdWithContext::FromNumber(feature), value);
    }

    void SetPageSize(const PageSize& pageSize) override
    {
        m_services.SetPageSize(pageSize);
    }

private:
    FeatureServices& m_services;
    DEVMODEW* m_devmode;
};
