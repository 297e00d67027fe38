#include <tvcore/datasourceproviderwithdatasources.h>

#include "complugins/msdevicecapabilities.h"

MSDeviceCapabilities& DataSourceProviderWithDataSources::GetMSDeviceCapabilities()
{
    if (!m_deviceCapabilities)
        m_deviceCapabilities = {std::make_unique<MSDeviceCapabilities>().release(), [](MSDeviceCapabilities* ended)
                                {
                                    const std::unique_ptr<MSDeviceCapabilities> last(ended);
                                }};
    return *m_deviceCapabilities;
}
