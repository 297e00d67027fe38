// DataSourceProviderWithDataSources: the core library's provider of data sources to the feature data model.
//
// The module's provider object derives from it and answers the data model's questions about the bound printer. The
// core library is delay-loaded, and only functions can be: this base must keep inline virtuals only, so that neither
// its vtable nor its type information is imported as data. Its one function of the library is plain.
#pragma once

#include <windows.h>

#include <memory>

#include <tvcore/tvcoreapi.h>

class FeatureServices;
class MSDeviceCapabilities;
class PageSizeDictionary;
class ProductData;
class ProductStringLoader;
class XDevmode;

class DataSourceProviderWithDataSources
{
public:
    DataSourceProviderWithDataSources() = default;
    DataSourceProviderWithDataSources(const DataSourceProviderWithDataSources&) = delete;
    DataSourceProviderWithDataSources& operator=(const DataSourceProviderWithDataSources&) = delete;

    // The order of these slots, the destructor first, is known to the core library.
    virtual ~DataSourceProviderWithDataSources() = default;

    // A null devmode keeps the model state as it is. Returns the feature services; null while the data model is not
    // in use.
    virtual FeatureServices* InitializeOrReInitializeDataModel(DEVMODEW* devmode) = 0;
    virtual XDevmode& GetXDevmodeRef() = 0;
    virtual FeatureServices* GetFeatureServicesPtr() = 0;
    // References end with the provider object; the string loader's with the next call.
    virtual ProductData& GetProductData() = 0;
    virtual ProductStringLoader& GetProductStringLoader() = 0;
    virtual PageSizeDictionary& GetPageSizeDictionary() = 0;
    virtual bool IsColorDevice() = 0;

    // What the printer can do: created for the first who asks, kept until the provider ends. It is not bound to the
    // printer here: whoever asks it initialises it with the handle.
    TVCORE_API MSDeviceCapabilities& GetMSDeviceCapabilities();

private:
    // Ends where it was made: in the core library.
    std::unique_ptr<MSDeviceCapabilities, void (*)(MSDeviceCapabilities*)> m_deviceCapabilities{nullptr, nullptr};
};
