// MsFeatureManager: the core driver's settings of a devmode, brought into the data model.
//
// For one devmode, while the printer, the data model and the device capabilities, all borrowed, are there. One thread
// at a time.
#pragma once

#include <windows.h>

#include <memory>

#include <tvcore/datamodelcontext.h>

#include "complugins/msdevmodebase.h"
#include "interfaces/prcomoem.h"

class MSDeviceCapabilities;

class MsFeatureManager
{
public:
    // The core driver is asked when there is a helper; otherwise the layout of its private part must do. Throws
    // ExceptionInvalidArgumentNullPointer when the data model has no devmode, ExceptionPrintDriverFailure.
    MsFeatureManager(HANDLE printer, DataModelContext& dataModel, IPrintCoreHelper* helper,
                     MSDeviceCapabilities& capabilities);
    ~MsFeatureManager();
    MsFeatureManager(const MsFeatureManager&) = delete;
    MsFeatureManager& operator=(const MsFeatureManager&) = delete;

    // Access to the settings over a devmode, initialised: the choice between the two ways, for everybody.
    [[nodiscard]] static std::unique_ptr<MsDevmodeBase> MakeMsDevmode(const MsDriverKind& driver,
                                                                      IPrintCoreHelper* helper, DEVMODEW* devmode);

    [[nodiscard]] MsDevmodeBase& GetMsDevmode() const noexcept;

    // Every setting that the driver has and shows becomes the data model's: an option where it has a table of values, a
    // number otherwise; then the paper, where it is one of the printer's forms. A setting that this devmode does not
    // have (a public field that it does not claim, too), or whose value means nothing, leaves the data model's as it
    // is; so does a paper that is none of the printer's.
    void SetCurrentMsPublicAndPrivateDmSettingsInDataModel();

private:
    void TransferFeature(const MsDevmodeBase::Feature& feature);
    void TransferPageSize();

    HANDLE m_printer;
    DataModelContext& m_dataModel;
    MSDeviceCapabilities& m_capabilities;
    std::unique_ptr<MsDevmodeBase> m_msDevmode;
};
