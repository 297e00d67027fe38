// DataModelManager: builds the feature data model of a devmode on a printer, owns it, and brings it up to date when the
// devmode is another one.
//
// The data model is filled, later sources over earlier ones, with the product's defaults, the printer's device
// settings, the document's settings of the devmode (its attribute bytes), and the core driver's settings and paper; and
// with the printer's media types. What the devmode holds that the data model does not take stays in the devmode
// (tvcore/attributebyteslisttranslator.h).
//
// Everything given is borrowed and outlives the manager. One thread at a time. The library is delay-loaded
// (tvcore/tvcoreapi.h); the one virtual operation is the destructor, so that whoever deletes a manager needs nothing of
// the library.
#pragma once

#include <windows.h>

#include <tvcore/featureservices.h>
#include <tvcore/tvcoreapi.h>

class MSDeviceCapabilities;
class ProductData;
class XDevmode;
struct IPrintCoreHelper;

// What a data model is for, as the modules of the driver know it.
namespace DataModelUse
{
inline constexpr LONG kPrintTicketModel = 5;    // a manager's
inline constexpr LONG kPrintTicketSettings = 3; // of the settings in it, and of their data sources
} // namespace DataModelUse

class TVCORE_API DataModelManager
{
public:
    // Builds the data model. `use` is accepted only: all uses have the same model. Without a helper the core driver's
    // settings are read from the devmode itself; without capabilities, or a maker's part in the devmode, they are left
    // out. A null printer has no device settings. Throws ExceptionPrinterFailure, ExceptionPrintDriverFailure.
    DataModelManager(HANDLE printer, ProductData& product, XDevmode& devmode, LONG use,
                     IPrintCoreHelper* helper = nullptr, MSDeviceCapabilities* capabilities = nullptr);
    virtual ~DataModelManager();
    DataModelManager(const DataModelManager&) = delete;
    DataModelManager& operator=(const DataModelManager&) = delete;

    // Never null; valid as long as the manager.
    [[nodiscard]] FeatureServices* GetFeatureServices();

    // ---- Another devmode: SetXDevmode, DisconnectFeatureServices, then the services' ForgetSettings, the import of
    // the document's settings, ConnectFeatureServices, and the rest of the services' population.

    // From here on the former one is not touched.
    void SetXDevmode(XDevmode& devmode);
    // The services' source is gone, and their defaults are read anew. Throws as the constructor.
    void DisconnectFeatureServices();
    // The services' source are the core driver's settings of the devmode.
    void ConnectFeatureServices(FeatureServices* services);

private:
    void BringInCoreSettings(FeatureServices& services);

    HANDLE m_printer;
    ProductData& m_product;
    XDevmode* m_devmode;
    IPrintCoreHelper* m_helper;
    MSDeviceCapabilities* m_capabilities;
    FeatureServices m_services;
};
