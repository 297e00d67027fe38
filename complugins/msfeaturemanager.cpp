#include "complugins/msfeaturemanager.h"

#include <optional>
#include <vector>

#include <tvutil/devmodebounds.h>
#include <tvutil/exceptions.h>
#include <tvutil/executioncontext.h>

#include "complugins/fixedtext.h"
#include "complugins/mediahandler.h"
#include "complugins/msdevicecapabilities.h"
#include "complugins/msdevmodeusingiprintcorehelper.h"
#include "complugins/msdevmodeusingreverseengineering.h"

namespace
{

constexpr WCHAR kSourceFile[] = W("complugins\\msfeaturemanager");
constexpr LONG kTransferMessage = 31555;

// What one setting of one devmode may be missing. Each throw has been traced.
template <class Transfer>
void SkipWhatIsNotThere(Transfer transfer)
{
    try
    {
        transfer();
    }
    catch (const ExceptionMicrosoftFeatureNotFound&)
    {
    }
    catch (const ExceptionMicrosoftDevmodeValueMappingFailed&)
    {
    }
    catch (const ExceptionMicrosoftPrivateDevmodeOffsetOutOfBounds&)
    {
    }
    catch (const ExceptionIPrintCoreHelperReadFailure&)
    {
    }
}

Dimension Tenths(std::int32_t value)
{
    return {Number(value), Dimension::TenthsOfAMillimeter};
}

// The form that the devmode's paper is: of a devmode that goes by the number alone the one with that number.
const FormsInfoRecord* FindForm(std::span<const FormsInfoRecord> forms, const DEVMODEW& devmode)
{
    const auto paperId = static_cast<std::uint16_t>(devmode.dmPaperSize);
    if (devmode.dmPaperWidth > 0 && devmode.dmPaperLength > 0)
        return MediaHandler::GetBestMatchPageSize(forms, Tenths(devmode.dmPaperWidth), Tenths(devmode.dmPaperLength),
                                                  paperId, GetFixedText(devmode.dmFormName));
    for (const FormsInfoRecord& form : forms)
        if (form.paperId == paperId)
            return &form;
    return nullptr;
}

} // namespace

MsFeatureManager::MsFeatureManager(HANDLE printer, DataModelContext& dataModel, IPrintCoreHelper* helper,
                                   MSDeviceCapabilities& capabilities)
    : m_printer(printer),
      m_dataModel(dataModel),
      m_capabilities(capabilities),
      m_msDevmode(MakeMsDevmode(MsDriverKind::OfPrinter(printer), helper, dataModel.GetDevmode()))
{
}

MsFeatureManager::~MsFeatureManager() = default;

std::unique_ptr<MsDevmodeBase> MsFeatureManager::MakeMsDevmode(const MsDriverKind& driver, IPrintCoreHelper* helper,
                                                               DEVMODEW* devmode)
{
    std::unique_ptr<MsDevmodeBase> access;
    if (helper != nullptr && devmode != nullptr)
        access = std::make_unique<MsDevmodeUsingIPrintCoreHelper>(
            driver, helper, devmode, DWORD{devmode->dmSize} + DWORD{devmode->dmDriverExtra});
    else
        access = std::make_unique<MsDevmodeUsingReverseEngineering>(driver, devmode); // throws for a null devmode
    access->Initialize();
    return access;
}

MsDevmodeBase& MsFeatureManager::GetMsDevmode() const noexcept
{
    return *m_msDevmode;
}

void MsFeatureManager::SetCurrentMsPublicAndPrivateDmSettingsInDataModel()
{
    const ExecutionContextLifetime context(
        {W("MsFeatureManager::SetCurrentMsPublicAndPrivateDmSettingsInDataModel"), kSourceFile}, kTransferMessage);
    for (const MsDevmodeBase::Feature& feature : m_msDevmode->GetFeatures())
        if (feature.isExposed && m_msDevmode->FindFeature(feature.feature) == &feature) // of two rows the first
            TransferFeature(feature);
    TransferPageSize();
}

void MsFeatureManager::TransferFeature(const MsDevmodeBase::Feature& feature)
{
    const auto id = static_cast<std::int32_t>(feature.feature);
    const MsDevmodeBase::Map map = feature.values.empty() ? MsDevmodeBase::Raw : MsDevmodeBase::DataModel;
    std::optional<std::uint32_t> value;
    SkipWhatIsNotThere([&] { value = m_msDevmode->GetMsFeatureValue(feature.feature, map); });
    if (!value)
        return;
    if (map == MsDevmodeBase::DataModel)
        m_dataModel.SetOptionValue(id, static_cast<std::int32_t>(*value));
    else
        m_dataModel.SetIntegerValue(id, static_cast<std::int32_t>(*value));
}

void MsFeatureManager::TransferPageSize()
{
    DEVMODEW* const devmode = m_dataModel.GetDevmode();
    std::vector<FormsInfoRecord> forms;
    if (devmode == nullptr || devmode->dmSize < kSmallestPublicDevmode ||
        FAILED(m_capabilities.GetPaperDatabaseCachedDeviceCapabilitiesVector(m_printer, devmode, forms)))
        return;
    if (const FormsInfoRecord* const form = FindForm(forms, *devmode))
        m_dataModel.SetPageSize({static_cast<DataModelIds::PageSizeTypeEnum>(form->formType), form->valueId,
                                 form->paperId, Tenths(form->width), Tenths(form->length), CXString(form->GetName())});
}
