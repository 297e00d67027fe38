#include "siblings/tvwftu/src/settingsmoves.h"

#include <tvcore/datasourceproviderwithdatasources.h>
#include <tvcore/featureservicescontext.h>
#include <tvutil/devicesettingsmanager.h>
#include <tvutil/printer.h>

#include <cstdint>
#include <optional>
#include <variant>

#include "complugins/documentsettings.h"
#include "complugins/msdevmodevaluemapper.h"
#include "complugins/msfeaturemanager.h"
#include "complugins/xdevmode.h"

namespace
{

AttributeBytesListTranslator TranslatorFor(FeatureServices& services, LONG scope)
{
    return services.GetTranslator(TranslatorIds::kSettings, TranslatorIds::kAttributeBytes, scope);
}

bool MoveDocumentSettings(FeatureServices& from, XDevmode& devmode)
{
    const auto settings = ReadDocumentSettings(devmode);
    return settings && TranslatorFor(from, TranslatorIds::kDocument).ExportSettings(*settings) &&
           CommitDocumentSettings(devmode, *settings);
}

// Writes a value of either kind.
struct CoreSettingWriter
{
    MsDevmodeBase& access;
    std::uint32_t feature;

    void operator()(const ValueId& value) const
    {
        access.SetMsFeatureValue(feature, static_cast<std::uint32_t>(value.GetValueEnum()), MsDevmodeBase::DataModel);
    }
    void operator()(std::int32_t value) const
    {
        access.SetMsFeatureValue(feature, static_cast<std::uint32_t>(value), MsDevmodeBase::Raw);
    }
    template <class Other>
    void operator()(const Other&) const // a core driver's setting has no other kind
    {
    }
};

bool MoveCoreSettings(const FeatureServices& from, DEVMODEW* devmode, HANDLE printer)
{
    const auto access = MsFeatureManager::MakeMsDevmode(MsDriverKind::OfPrinter(printer), nullptr, devmode);
    bool isMoved = false;
    for (const MsDevmodeBase::Feature& feature : access->GetFeatures())
    {
        const auto id = FeatureIdWithContext::FromNumber(static_cast<std::int32_t>(feature.feature));
        const FeatureValue* const value = from.FindValue(id);
        if (value == nullptr || !from.IsChanged(id) || access->FindFeature(feature.feature) != &feature)
            continue;
        std::visit(CoreSettingWriter{*access, feature.feature}, *value);
        isMoved = true;
    }
    return isMoved;
}

bool MovePageSize(const FeatureServices& from, DEVMODEW* devmode, HANDLE printer, MSDeviceCapabilities& capabilities)
{
    const std::optional<FeatureServices::PageSize>& paper = from.GetPageSize();
    if (!paper || !from.PageSizeIsChanged())
        return false;
    const auto tenths = [](const Dimension& length)
    {
        return length.GetValue(Dimension::TenthsOfAMillimeter).GetLongValue();
    };
    MsDevmodeValueMapper(printer, devmode, capabilities)
        .SetMsPaperSizeFeaturesCurrentValues(paper->type, paper->paperId, tenths(paper->width), tenths(paper->length),
                                             paper->name.View().substr(0, CCHFORMNAME - 1), true); // as far as it fits
    return true;
}

} // namespace

bool SettingsIntoRegistry(FeatureServices& from, HANDLE printer)
{
    const Printer device(printer);
    AttributeBytesIndexedList settings = *DeviceSettingsManager(device).GetDefaultAttributeBytesIndexedList();
    return TranslatorFor(from, TranslatorIds::kDevice).ExportSettings(settings) &&
           DeviceSettingsManager::Store(device, settings);
}

bool SettingsFromRegistry(HANDLE printer, FeatureServices& into)
{
    DeviceSettingsManager stored{Printer(printer)};
    return TranslatorFor(into, TranslatorIds::kDevice).ImportSettings(*stored.GetDefaultAttributeBytesIndexedList()) >
           0;
}

bool SettingsIntoDevmode(FeatureServices& from, DataSourceProviderWithDataSources& devmodeOwner, HANDLE printer)
{
    XDevmode& wrapper = devmodeOwner.GetXDevmodeRef();
    bool isMoved = MoveDocumentSettings(from, wrapper);
    if (DEVMODEW* const devmode = wrapper.GetDevmode())
    {
        isMoved |= MoveCoreSettings(from, devmode, printer);
        isMoved |= MovePageSize(from, devmode, printer, devmodeOwner.GetMSDeviceCapabilities());
    }
    from.KeepAsUnchanged();
    return isMoved;
}

bool SettingsFromDevmode(DataSourceProviderWithDataSources& devmodeOwner, HANDLE printer, FeatureServices& into)
{
    XDevmode& wrapper = devmodeOwner.GetXDevmodeRef();
    DEVMODEW* const devmode = wrapper.GetDevmode();
    if (devmode == nullptr)
        return false;
    if (const auto settings = ReadDocumentSettings(wrapper))
        TranslatorFor(into, TranslatorIds::kDocument).ImportSettings(*settings);
    FeatureServicesContext context(into, devmode);
    MsFeatureManager(printer, context, nullptr, devmodeOwner.GetMSDeviceCapabilities())
        .SetCurrentMsPublicAndPrivateDmSettingsInDataModel();
    return true;
}
