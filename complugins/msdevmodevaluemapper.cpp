#include "complugins/msdevmodevaluemapper.h"

#include <iterator>
#include <limits>

#include <tvutil/application.h>
#include <tvutil/devmodebounds.h>
#include <tvutil/exceptions.h>
#include <tvutil/throwexception.h>

#include "complugins/fixedtext.h"
#include "complugins/msdevmodevalues.h"
#include "complugins/reconciledevmodepapersize.h"
#include "complugins/xdevmode.h"

namespace
{

constexpr WCHAR kSourceFile[] = W("complugins\\msdevmodevaluemapper");

// The places that exceptions name, with the lines that the system reports for them.
constexpr WCHAR kSetPaper[] = W("MsDevmodeValueMapper::SetMsPaperSizeFeaturesCurrentValues");
constexpr ThrowSite kNoPaper{kSetPaper, kSourceFile, 293};
constexpr ThrowSite kHalfSize{kSetPaper, kSourceFile, 299};
constexpr ThrowSite kLongName{kSetPaper, kSourceFile, 305};
constexpr ThrowSite kTooLarge{kSetPaper, kSourceFile};
constexpr ThrowSite kConstructor{W("MsDevmodeValueMapper::MsDevmodeValueMapper"), kSourceFile};
constexpr ThrowSite kToMsValue{W("MsDevmodeValueMapper::GetMsValueFromDataModelValue"), kSourceFile};
constexpr ThrowSite kFromMsValue{W("MsDevmodeValueMapper::GetDataModelValueFromMsValue"), kSourceFile};

constexpr DWORD kDimensions = DM_PAPERWIDTH | DM_PAPERLENGTH;
constexpr std::size_t kFormNameCapacity = std::size(DEVMODEW{}.dmFormName);
static_assert(kFormNameCapacity == 32);

void RequireSaneSize(std::uint32_t paperId, LONG width, LONG length)
{
    const auto throwAt = [=](const ThrowSite& site)
    {
        ThrowException<ExceptionInvalidPaperSizeData>(site, W("paper id %u, width %i, length %i"),
                                                      {paperId, width, length});
    };
    if (paperId == 0 && (width == 0 || length == 0))
        throwAt(kNoPaper);
    if ((width == 0) != (length == 0))
        throwAt(kHalfSize);
    // Beyond the fields a size would become another one.
    constexpr LONG kMost = std::numeric_limits<short>::max();
    if (paperId > std::numeric_limits<WORD>::max() || width < 0 || width > kMost || length < 0 || length > kMost)
        throwAt(kTooLarge);
}

void RequireShortName(const CXString& formName)
{
    if (formName.Length() >= kFormNameCapacity)
        ThrowException<ExceptionInvalidFormName>(kLongName, W("\"%s\" has %u characters, a devmode has room for %u"),
                                                 {formName, formName.Length(), kFormNameCapacity - 1});
}

bool HasSize(const DEVMODEW& devmode, LONG width, LONG length) noexcept
{
    return (devmode.dmFields & kDimensions) == kDimensions && LONG{devmode.dmPaperWidth} == width &&
           LONG{devmode.dmPaperLength} == length;
}

void SetDimensions(DEVMODEW& devmode, LONG width, LONG length) noexcept
{
    devmode.dmPaperWidth = static_cast<short>(width);
    devmode.dmPaperLength = static_cast<short>(length);
}

std::span<const MsDevmodeValueRow> ColorManagementTable(std::uint32_t feature, const ThrowSite& site)
{
    switch (feature)
    {
    case DataModelIds::Feature::MsIcmMethod:
    case DataModelIds::Feature::MsIcmIntent:
        return MsDevmodeValues::FindTable(feature, {}); // every driver has the same
    default:
        ThrowException<ExceptionMicrosoftFeatureNotFound>(site, W("feature %u is none of colour management"),
                                                          {feature});
    }
}

} // namespace

MsDevmodeValueMapper::MsDevmodeValueMapper(HANDLE printer, DEVMODEW* devmode, MSDeviceCapabilities& capabilities)
    : m_printer(printer), m_devmode(devmode), m_capabilities(capabilities)
{
    if (devmode == nullptr)
        ThrowException<ExceptionInvalidArgumentNullPointer>(kConstructor);
}

void MsDevmodeValueMapper::SetMsPaperSizeFeaturesCurrentValues(DataModelIds::PageSizeTypeEnum formType,
                                                               std::uint32_t paperId, LONG width, LONG length,
                                                               const CXString& formName, bool reconcile)
{
    RequireSaneSize(paperId, width, length);
    RequireShortName(formName);
    if (m_devmode->dmSize < kSmallestPublicDevmode)
        return;
    if (!HasSize(*m_devmode, width, length))
        WritePaper(formType, static_cast<WORD>(paperId), width, length, formName);
    if (reconcile)
        ReconcileDevmodePaperSize(m_printer, m_devmode, m_capabilities);
}

void MsDevmodeValueMapper::WritePaper(DataModelIds::PageSizeTypeEnum formType, WORD paperId, LONG width, LONG length,
                                      const CXString& formName)
{
    if (formType == DataModelIds::PageSizeUnlisted)
        return WriteCustomSize(width, length, formName);
    WriteForm(paperId, width, length, formName);
    if (formType == DataModelIds::PageSizeDriverCustom)
        LeaveDimensionsOnlyForAcrobat();
}

void MsDevmodeValueMapper::WriteCustomSize(LONG width, LONG length, const CXString& formName)
{
    m_devmode->dmPaperSize = DMPAPER_USER;
    SetDimensions(*m_devmode, width, length);
    m_devmode->dmFields |= kDimensions;
    SetFixedText(m_devmode->dmFormName, formName.View());
}

// The paper number counts, unless the devmode goes by a name alone and there is one.
void MsDevmodeValueMapper::WriteForm(WORD paperId, LONG width, LONG length, const CXString& formName)
{
    const bool goesByName = !formName.IsEmpty() && (m_devmode->dmFields & (DM_FORMNAME | DM_PAPERSIZE)) == DM_FORMNAME;
    m_devmode->dmPaperSize = static_cast<short>(paperId);
    SetDimensions(*m_devmode, width, length);
    if (!formName.IsEmpty())
        SetFixedText(m_devmode->dmFormName, formName.View());
    m_devmode->dmFields &= ~(kDimensions | DWORD{DM_PAPERSIZE | DM_FORMNAME});
    m_devmode->dmFields |= goesByName ? DWORD{DM_FORMNAME} : DWORD{DM_PAPERSIZE};
}

// Intended for that family alone: it must see a custom size by its dimensions.
void MsDevmodeValueMapper::LeaveDimensionsOnlyForAcrobat()
{
    CXString application;
    if (!XDevmode(m_devmode).GetPropertyBagString(OemDevmodeFormat::kApplicationNameKey, application) ||
        !Application::IsApplicationFromAdobeAcrobatFamily(application))
        return;
    m_devmode->dmFields &= ~DWORD{DM_FORMNAME | DM_PAPERSIZE};
    m_devmode->dmFields |= kDimensions;
}

std::optional<std::uint32_t> MsDevmodeValueMapper::GetMsValueFromDataModelValue(std::uint32_t feature,
                                                                                std::int32_t valueId)
{
    const MsDevmodeValueRow* const row =
        MsDevmodeValues::FindValueId(ColorManagementTable(feature, kToMsValue), valueId);
    return row != nullptr ? std::optional(row->devmodeValue) : std::nullopt;
}

std::int32_t MsDevmodeValueMapper::GetDataModelValueFromMsValue(std::uint32_t feature, std::uint32_t msValue)
{
    const MsDevmodeValueRow* const row =
        MsDevmodeValues::FindDevmodeValue(ColorManagementTable(feature, kFromMsValue), msValue);
    if (row == nullptr)
        ThrowException<ExceptionMicrosoftDevmodeValueMappingFailed>(
            kFromMsValue, W("feature %u does not have the value %u"), {feature, msValue});
    return row->valueId;
}
