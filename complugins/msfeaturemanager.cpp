#include "complugins/msfeaturemanager.h"

#include <algorithm>
#include <iterator>
#include <optional>
#include <vector>

#include <tvutil/devmodebounds.h>
#include <tvutil/exceptions.h>
#include <tvutil/executioncontext.h>

#include "complugins/fixedtext.h"
#include "complugins/mediahandler.h"
#include "complugins/msdevicecapabilities.h"
#include "complugins/msdevmodepublicfields.h"
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

// Whether the setting is one of the public part, and dmFields says that the devmode does not have it.
bool IsUnclaimed(const DEVMODEW& devmode, std::uint32_t feature)
{
    constexpr std::size_t kClaimsEnd = offsetof(DEVMODEW, dmFields) + sizeof(DEVMODEW::dmFields);
    const DWORD claims = devmode.dmSize >= kClaimsEnd ? devmode.dmFields : 0;
    return std::any_of(std::begin(MsDevmodePublicFields::kFields), std::end(MsDevmodePublicFields::kFields),
                       [&](const MsDevmodePublicField& field)
                       { return field.feature == feature && (claims & field.flag) == 0; });
}

Dimension Tenths(std::int32_t value)
{
    return {Number(value), Dimension::TenthsOfAMillimeter};
}

const FormsInfoRecord* FindFormOfNumber(std::span<const FormsInfoRecord> forms, std::uint16_t paperId)
{
    const auto found = std::find_if(forms.begin(), forms.end(),
                                    [paperId](const FormsInfoRecord& form) { return form.paperId == paperId; });
    return found != forms.end() ? &*found : nullptr;
}

const FormsInfoRecord* FindFormOfName(std::span<const FormsInfoRecord> forms, const CXString& name)
{
    const auto found =
        std::find_if(forms.begin(), forms.end(),
                     [&name](const FormsInfoRecord& form) { return name.CompareNoCase(form.GetDevmodeName()) == 0; });
    return found != forms.end() ? &*found : nullptr;
}

// The form that the devmode's paper is, by what the devmode claims: the number, else the size, else the name. The rest
// may be left over from another paper. Of a devmode that claims nothing, all of it is believed.
const FormsInfoRecord* FindForm(std::span<const FormsInfoRecord> forms, const DEVMODEW& devmode)
{
    constexpr DWORD kSize = DM_PAPERWIDTH | DM_PAPERLENGTH;
    const auto paperId = static_cast<std::uint16_t>(devmode.dmPaperSize);
    const CXString name = GetFixedText(devmode.dmFormName);
    const auto ofSize = [&](std::uint16_t preferredId, const CXString& preferredName)
    {
        return MediaHandler::GetBestMatchPageSize(forms, Tenths(devmode.dmPaperWidth), Tenths(devmode.dmPaperLength),
                                                  preferredId, preferredName);
    };
    // A user's size is no form's number: the dimensions tell.
    if ((devmode.dmFields & DM_PAPERSIZE) != 0 && paperId != DMPAPER_USER)
        return FindFormOfNumber(forms, paperId);
    const bool claimsName = (devmode.dmFields & DM_FORMNAME) != 0;
    if ((devmode.dmFields & kSize) == kSize)
        return ofSize(0, claimsName ? name : CXString()); // of several forms of one size
    if (claimsName)
        return FindFormOfName(forms, name);
    if ((devmode.dmFields & (kSize | DM_PAPERSIZE)) != 0)
        return nullptr;
    return devmode.dmPaperWidth > 0 && devmode.dmPaperLength > 0 ? ofSize(paperId, name)
                                                                 : FindFormOfNumber(forms, paperId);
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
    const DEVMODEW* const devmode = m_dataModel.GetDevmode();
    if (devmode == nullptr || IsUnclaimed(*devmode, feature.feature))
        return;
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
