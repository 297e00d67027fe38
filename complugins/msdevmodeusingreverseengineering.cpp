#include "complugins/msdevmodeusingreverseengineering.h"

#include <algorithm>

#include <tvcore/datamodelids.h>
#include <tvutil/bytereader.h>
#include <tvutil/bytewriter.h>
#include <tvutil/exceptions.h>
#include <tvutil/throwexception.h>

#include "complugins/oemdevmode.h"
#include "complugins/oemdevmodelocation.h"

namespace
{

namespace Features = DataModelIds::Feature;
using Cell = MsDevmodeCell;

constexpr WCHAR kSourceFile[] = W("complugins\\msdevmodeusingreverseengineering");

// The places that exceptions name, with the lines that the system reports for them.
constexpr ThrowSite kReading{W("MsDevmodeUsingReverseEngineering::GetMsFeatureValue"), kSourceFile, 409};
constexpr ThrowSite kWriting{W("MsDevmodeUsingReverseEngineering::SetMsFeatureValue"), kSourceFile, 662};
constexpr ThrowSite kReadingPart{W("MsDevmodeUsingReverseEngineering::GetMsPrivateDmFeatureValue_Helper"), kSourceFile,
                                 706};
constexpr ThrowSite kWritingPart{W("MsDevmodeUsingReverseEngineering::SetMsPrivateDmFeatureValue_Helper"), kSourceFile,
                                 747};

constexpr std::uint32_t kLandscape = 2; // as dmOrientation has it
constexpr std::uint32_t kRotatedLandscape = 3;
constexpr std::uint32_t kBookletValue = MsDevmodeOffsets::kBookletInPagesPerSheet;
constexpr std::uint32_t kLowWord = 0xFFFF;
constexpr std::uint32_t kCustomQuality = 0xFFFFFFFF;

// Where the driver's layout notes the size of its part, 0 when it ends before that.
std::size_t NotedSize(const MsDriverKind& driver, std::span<const std::byte> part) noexcept
{
    ByteReader reader(part);
    reader.Skip(driver.HasPostScriptLayout() ? OemDevmodeFormat::kPostScriptSizeOffset
                                             : OemDevmodeFormat::kUnidrvSizeOffset);
    return reader.U16();
}

bool IsWithin(std::span<const std::byte> part, std::uint32_t offset) noexcept
{
    return offset < part.size() && part.size() - offset >= sizeof(std::uint16_t);
}

void RequireWithin(const ThrowSite& site, std::span<const std::byte> part, std::uint32_t offset)
{
    if (!IsWithin(part, offset))
        ThrowException<ExceptionMicrosoftPrivateDevmodeOffsetOutOfBounds>(
            site, W("offset %i is outside of the core driver's private part of %u bytes"),
            {static_cast<std::int32_t>(offset), part.size()});
}

[[noreturn]] void ThrowNotFound(const ThrowSite& site, std::uint32_t feature, const MsDriverKind& driver)
{
    ThrowException<ExceptionMicrosoftFeatureNotFound>(
        site, W("feature %u is not in the %s layout of a driver of kind %u, platform %u"),
        {feature, driver.HasPostScriptLayout() ? W("PostScript") : W("Unidrv"), driver.kind, driver.platform});
}

} // namespace

void MsDevmodeUsingReverseEngineering::Initialize()
{
    const std::size_t noted = NotedSize(GetDriverKind(), GetPrivatePart());
    const auto isNoted = [noted](std::uint16_t size)
    {
        return size == noted;
    };
    m_isLayoutRecognized = GetDriverKind().HasPostScriptLayout()
                               ? std::ranges::any_of(MsDevmodeOffsets::kPostScriptSizes, isNoted)
                               : std::ranges::any_of(MsDevmodeOffsets::kUnidrvSizes, isNoted);
}

bool MsDevmodeUsingReverseEngineering::IsLayoutRecognized() const noexcept
{
    return m_isLayoutRecognized;
}

std::uint32_t MsDevmodeUsingReverseEngineering::GetMsFeatureValue(std::uint32_t feature, Map map)
{
    const MsDevmodePlace place = MsDevmodeOffsets::FindPlace(feature, GetDriverKind());
    if (place.cell == Cell::NotAvailable)
        ThrowNotFound(kReading, feature, GetDriverKind());
    const std::uint32_t value = ReadPlace(feature, place);
    // One word is read; the table has the custom quality as the negative number that the word is the low half of.
    const bool isCustomQuality = map == DataModel && place.cell == Cell::QualityMacro && value == kLowWord;
    return FromDevmodeValue(feature, isCustomQuality ? kCustomQuality : value, map);
}

void MsDevmodeUsingReverseEngineering::SetMsFeatureValue(std::uint32_t feature, std::uint32_t value, Map map)
{
    const MsDevmodePlace place = MsDevmodeOffsets::FindPlace(feature, GetDriverKind());
    if (place.cell == Cell::NotAvailable)
        ThrowNotFound(kWriting, feature, GetDriverKind());
    if (place.cell == Cell::NoOffset) // whatever the value is
        RequireWithin(kWritingPart, GetPrivatePart(), place.offset);
    WritePlace(feature, place, ToDevmodeValue(feature, value, map));
}

std::uint32_t MsDevmodeUsingReverseEngineering::ReadPlace(std::uint32_t feature, const MsDevmodePlace& place) const
{
    const auto isRotated = [this, &place](std::uint32_t orientation)
    {
        return (GetDriverKind().kind & MsDriverKind::kPostScript) != 0 && orientation == kLandscape &&
               GetMsPrivateDmFeatureValue_Helper(place.offset, place.mask) != 0;
    };
    switch (place.cell)
    {
    case Cell::Public:
        return GetPublicDmFeatureValue_Helper(GetDevmode(), feature, Raw);
    case Cell::PublicRotated:
    {
        const std::uint32_t orientation = GetPublicDmFeatureValue_Helper(GetDevmode(), feature, Raw);
        return isRotated(orientation) ? kRotatedLandscape : orientation;
    }
    case Cell::InverseBit:
        return GetMsPrivateDmFeatureValue_Helper(place.offset, place.mask) == 0 ? 1 : 0;
    case Cell::PagesPerSheet:
    {
        const std::uint32_t pages = GetMsPrivateDmFeatureValue_Helper(place.offset, 0);
        return pages == kBookletValue ? 0 : pages;
    }
    case Cell::Booklet:
        return GetMsPrivateDmFeatureValue_Helper(place.offset, 0) == kBookletValue ? 1 : 0;
    default:
        return GetMsPrivateDmFeatureValue_Helper(place.offset, place.mask);
    }
}

void MsDevmodeUsingReverseEngineering::WritePlace(std::uint32_t feature, const MsDevmodePlace& place,
                                                  std::uint32_t value) const
{
    switch (place.cell)
    {
    case Cell::Public:
        return SetPublicDmFeatureValue_Helper(GetDevmode(), feature, value, Raw);
    case Cell::PublicRotated:
        return WriteOrientation(place, value);
    case Cell::InverseBit:
        return SetMsPrivateDmFeatureValue_Helper(place.offset, place.mask, value == 0 ? 1 : 0);
    case Cell::PagesPerSheet:
        return WriteSheet(place, value);
    case Cell::Booklet:
        if (value != 0)
            return WriteSheet(place, kBookletValue);
        if (GetMsPrivateDmFeatureValue_Helper(place.offset, 0) == kBookletValue)
            SetMsPrivateDmFeatureValue_Helper(place.offset, 0, 0);
        return;
    case Cell::QualityMacro: // the second word first: if it is there, so is the one before it
        SetMsPrivateDmFeatureValue_Helper(place.offset + sizeof(std::uint16_t), 0,
                                          (value & kLowWord) == kLowWord ? kLowWord : 0);
        return SetMsPrivateDmFeatureValue_Helper(place.offset, 0, value);
    default:
        return WriteWord(feature, place, value);
    }
}

// For drivers of the PostScript kind the third orientation is the second one and a bit. Nothing is written by halves:
// once the bit is known to be there, only the public field can be missing, and that is written first.
void MsDevmodeUsingReverseEngineering::WriteOrientation(const MsDevmodePlace& place, std::uint32_t value) const
{
    if ((GetDriverKind().kind & MsDriverKind::kPostScript) == 0)
        return SetPublicDmFeatureValue_Helper(GetDevmode(), Features::MsOrientation, value, Raw);
    const bool isRotated = value == kRotatedLandscape;
    RequireWithin(kWritingPart, GetPrivatePart(), place.offset);
    SetPublicDmFeatureValue_Helper(GetDevmode(), Features::MsOrientation, isRotated ? kLandscape : value, Raw);
    SetMsPrivateDmFeatureValue_Helper(place.offset, place.mask, isRotated ? 1 : 0);
}

// One page on a sheet leaves a booklet one.
void MsDevmodeUsingReverseEngineering::WriteSheet(const MsDevmodePlace& place, std::uint32_t value) const
{
    if (value == 0 && GetMsPrivateDmFeatureValue_Helper(place.offset, 0) == kBookletValue)
        return;
    SetMsPrivateDmFeatureValue_Helper(place.offset, 0, value);
}

// The colour printing mode takes the public colour with it, neither without the other. A mode that no table has means
// no colour: it is the word alone.
void MsDevmodeUsingReverseEngineering::WriteWord(std::uint32_t feature, const MsDevmodePlace& place,
                                                 std::uint32_t value) const
{
    const MsDevmodeValueRow* const mode =
        feature == Features::MsColorPrintingMode
            ? MsDevmodeValues::FindDevmodeValue(GetDmValueTable_Helper(feature), value)
            : nullptr;
    if (mode == nullptr)
        return SetMsPrivateDmFeatureValue_Helper(place.offset, place.mask, value);
    const std::uint32_t color =
        GetMsDmValueFromValueEnum_Helper(Features::MsColorMode, static_cast<std::uint32_t>(mode->valueId));
    RequireWithin(kWritingPart, GetPrivatePart(), place.offset);
    SetPublicDmFeatureValue_Helper(GetDevmode(), Features::MsColorMode, color, Raw);
    SetMsPrivateDmFeatureValue_Helper(place.offset, place.mask, value);
}

std::uint32_t MsDevmodeUsingReverseEngineering::GetMsPrivateDmFeatureValue_Helper(std::uint32_t offset,
                                                                                  std::uint16_t mask) const
{
    const std::span<const std::byte> part = GetPrivatePart();
    RequireWithin(kReadingPart, part, offset);
    const std::uint16_t word = ByteReader(part.subspan(offset)).U16();
    if (mask == 0)
        return word;
    return (word & mask) != 0 ? 1 : 0;
}

void MsDevmodeUsingReverseEngineering::SetMsPrivateDmFeatureValue_Helper(std::uint32_t offset, std::uint16_t mask,
                                                                         std::uint32_t value) const
{
    const std::span<std::byte> part = GetPrivatePart();
    RequireWithin(kWritingPart, part, offset);
    const std::uint16_t word = ByteReader(part.subspan(offset)).U16();
    const unsigned masked = value != 0 ? unsigned{word} | mask : word & ~unsigned{mask};
    ByteWriter(part.subspan(offset)).U16(static_cast<std::uint16_t>(mask == 0 ? value : masked));
}

// What lies before the maker's part; without that, as much as the layout's own note says, if that can be.
std::span<std::byte> MsDevmodeUsingReverseEngineering::GetPrivatePart() const noexcept
{
    const std::span driverExtra(reinterpret_cast<std::byte*>(GetDevmode()) + GetDevmode()->dmSize,
                                GetDevmode()->dmDriverExtra);
    if (const auto location = LocateOemDevmode(driverExtra))
        return driverExtra.first(location->offset);
    const std::size_t noted = NotedSize(GetDriverKind(), driverExtra);
    return noted != 0 && noted < driverExtra.size() ? driverExtra.first(noted) : driverExtra;
}
