#include "coresettings.h"

#include <algorithm>
#include <cstring>
#include <span>

#include <tvcore/customsizenumber.h>
#include <tvcore/datamodelids.h>
#include <tvutil/tavlenexception.h>

#include "complugins/msfeaturemanager.h"
#include "corefeatures.h"
#include "devmodefields.h"
#include "newdevmode.h"

namespace
{

namespace Features = DataModelIds::Feature;

bool IsUsersOwnPaper(const DEVMODEW& fields) noexcept
{
    return static_cast<std::uint16_t>(fields.dmPaperSize) >= kFirstCustomSizeNumber;
}

// The model's defaults, with what the devmode claims written over them.
DEVMODEW ClaimedFields(const Devmode& devmode, const PrinterModel& model)
{
    const DEVMODEW given = devmode.Public();
    DEVMODEW fields = MakeNewDevmode(model, CXString()).Public();
    for (const DevmodeField& field : DevmodeFields())
        if ((given.dmFields & field.flag) != 0)
            std::memcpy(reinterpret_cast<std::byte*>(&fields) + field.offset,
                        reinterpret_cast<const std::byte*>(&given) + field.offset, DevmodeFieldWidth(field));
    if ((given.dmFields & DM_PAPERSIZE) == 0 && (given.dmFields & DM_PAPERWIDTH) != 0 &&
        (given.dmFields & DM_PAPERLENGTH) != 0)
        fields.dmPaperSize = DMPAPER_USER;
    if (IsUsersOwnPaper(fields)) // the number claims the measures, too, which the model does not know
    {
        fields.dmPaperWidth = given.dmPaperWidth;
        fields.dmPaperLength = given.dmPaperLength;
    }
    return fields;
}

bool HasOwnParts(const Devmode& devmode, const PrinterModel& model)
{
    const auto parts = LocateDriverParts(devmode.DriverExtra());
    const CoreDriver driver{MsDriverKind::FromCapabilityWord(model.capability), true};
    // Without a maker's part behind it nothing contradicts the size that the core driver's part notes of itself.
    return (!parts || LayoutOf(driver.kind) == parts->layout) && IsCorePartRecognized(devmode, driver);
}

} // namespace

CoreSettings::CoreSettings(const Devmode& devmode, const PrinterModel& model, IPrintCoreHelper* helper)
    : m_devmode(devmode), m_isWhole(HasOwnParts(devmode, model))
{
    if (!m_isWhole)
        m_devmode = Devmode(devmode.Public(), {});
    m_access =
        MsFeatureManager::MakeMsDevmode(MsDriverKind::FromCapabilityWord(model.capability), helper, m_devmode.Raw());
}

CoreSettings CoreSettings::AsMeant(const Devmode& devmode, const PrinterModel& model, IPrintCoreHelper* helper)
{
    return {Devmode(ClaimedFields(devmode, model), devmode.DriverExtra()), model, helper};
}

bool CoreSettings::Has(const CoreSetting& setting)
{
    if (setting.kind == CoreSetting::Kind::Number)
        return Number(setting.feature) == setting.value;
    return ValueId(setting.feature) == static_cast<std::int32_t>(setting.value);
}

std::uint32_t CoreSettings::Number(std::uint32_t feature)
{
    return FindNumber(feature).value_or(0);
}

std::optional<std::uint32_t> CoreSettings::FindNumber(std::uint32_t feature)
{
    bool isFound = false;
    const std::uint32_t number =
        m_access->GetPublicDmFeatureValue_Helper(m_devmode.Raw(), feature, MsDevmodeBase::Raw, &isFound);
    const DEVMODEW& fields = *m_devmode.Raw();
    if (feature == Features::MsPaperSize && IsUsersOwnPaper(fields) && fields.dmPaperWidth > 0 &&
        fields.dmPaperLength > 0)
        return DMPAPER_USER;
    if (feature != Features::MsResolution)
        return isFound ? std::optional(number) : std::nullopt;
    if (fields.dmPrintQuality <= 0)
        return std::nullopt;
    const short along = fields.dmYResolution > 0 ? fields.dmYResolution : fields.dmPrintQuality;
    return MsDevmodeValues::Resolution(static_cast<std::uint32_t>(fields.dmPrintQuality),
                                       static_cast<std::uint32_t>(along));
}

const SchemaOption* CoreSettings::FindOption(const SchemaFeature& feature)
{
    const auto found = std::find_if(feature.options.begin(), feature.options.end(),
                                    [this](const SchemaOption& option)
                                    { return option.settings.empty() || Has(option.settings.front()); });
    if (found != feature.options.end())
        return &*found;
    const SchemaOption& standIn = feature.options.front();
    const bool isUnlisted =
        standIn.settings.front().feature == Features::MsResolution && Number(Features::MsResolution) != 0;
    return isUnlisted ? nullptr : &standIn;
}

long CoreSettings::ParameterValue(const SchemaParameter& parameter)
{
    if (parameter.feature == 0)
        return parameter.defaultValue;
    const long value =
        static_cast<std::int16_t>(Number(parameter.feature)) * parameter.factor; // the fields have 16 bits
    return std::clamp(value, parameter.minimum, parameter.maximum); // a devmode may hold what nobody offers
}

void CoreSettings::Write(const CoreSetting& setting)
{
    if (setting.kind == CoreSetting::Kind::Number)
        return m_access->SetPublicDmFeatureValue_Helper(m_devmode.Raw(), setting.feature, setting.value,
                                                        MsDevmodeBase::Raw);
    try
    {
        m_access->SetMsFeatureValue(setting.feature, setting.value, MsDevmodeBase::DataModel);
    }
    catch (const TavlenException&)
    {
        WriteField(setting.feature, static_cast<std::int32_t>(setting.value));
    }
}

void CoreSettings::CopyTo(Devmode& devmode) const
{
    if (m_isWhole)
        devmode = m_devmode;
    else
        devmode.SetPublic(m_devmode.Public());
}

std::int32_t CoreSettings::ValueId(std::uint32_t feature)
{
    constexpr std::int32_t kNone = 0;
    const MsDevmodeBase::Feature* const row = m_access->FindFeature(feature);
    if (row == nullptr)
        return kNone;
    try
    {
        return static_cast<std::int32_t>(m_access->GetMsFeatureValue(feature, MsDevmodeBase::DataModel));
    }
    catch (const TavlenException&)
    {
    }
    const std::optional<std::uint32_t> number = FindNumber(feature); // a private setting has none
    const MsDevmodeValueRow* const value = number ? MsDevmodeValues::FindDevmodeValue(row->values, *number) : nullptr;
    return value != nullptr ? value->valueId : kNone;
}

void CoreSettings::WriteField(std::uint32_t feature, std::int32_t valueId)
{
    const MsDevmodeBase::Feature* const row = m_access->FindFeature(feature);
    const MsDevmodeValueRow* const value =
        row != nullptr ? MsDevmodeValues::FindValueId(row->values, valueId) : nullptr;
    const DevmodeField* const field = FindDevmodeFieldOfFeature(feature);
    // What the field alone cannot say lies in the part that is out of reach.
    if (value != nullptr && field != nullptr && value->devmodeValue <= field->maximum)
        m_access->SetPublicDmFeatureValue_Helper(m_devmode.Raw(), feature, value->devmodeValue, MsDevmodeBase::Raw);
}
