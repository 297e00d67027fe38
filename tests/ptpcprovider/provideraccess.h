// What tests see of a provider object's state.
#pragma once

#include "complugins/ptpcprovider/tavlenptprovider.h"

struct TavlenPtProviderTestAccess
{
    static void UseDataModel(TavlenPtProvider& provider)
    {
        provider.m_dataModelInUse = true;
    }

    static bool DataModelIsInUse(const TavlenPtProvider& provider)
    {
        return provider.m_dataModelInUse;
    }

    static IPrintCoreHelper* Helper(const TavlenPtProvider& provider)
    {
        return provider.m_printCoreHelper.Get();
    }

    static ULONGLONG Capabilities(const TavlenPtProvider& provider)
    {
        return provider.m_driverCapabilityFlags << 16 | provider.m_secondDriverCapability;
    }

    static ProductData::ValueEnum ControllerFamily(const TavlenPtProvider& provider)
    {
        return provider.m_controllerFamily;
    }

    static ULONG OsMajorVersion(const TavlenPtProvider& provider)
    {
        return provider.m_osMajorVersion;
    }
};
