#include "complugins/oemdevmodelocation.h"

#include <tvutil/bytereader.h>

#include "complugins/oemdevmode.h"

namespace
{

namespace Format = OemDevmodeFormat;

struct Place
{
    CoreDriverLayout layout;
    std::size_t sizeOffset; // of the core driver's note of its own size, u16
};

constexpr Place kPlaces[] = {
    {CoreDriverLayout::PostScript, Format::kPostScriptSizeOffset},
    {CoreDriverLayout::Unidrv, Format::kUnidrvSizeOffset},
};

// 0 unless something lies behind the note: a driver extra that ends with it has no room for a part anyway.
std::size_t CoreSize(std::span<const std::byte> driverExtra, std::size_t sizeOffset) noexcept
{
    if (driverExtra.size() <= sizeOffset + sizeof(std::uint16_t))
        return 0;
    return ByteReader(driverExtra.subspan(sizeOffset)).U16();
}

OemDevmodeFinding LookAt(std::span<const std::byte> driverExtra, std::size_t offset) noexcept
{
    if (offset == 0)
        return OemDevmodeFinding::NoCoreSize;
    if (driverExtra.size() <= offset + Format::kHeaderSize)
        return OemDevmodeFinding::NoRoom;
    ByteReader reader(driverExtra.subspan(offset));
    const auto size = reader.U32();
    const auto signature = reader.U32();
    if (signature != Format::kSignature)
        return OemDevmodeFinding::WrongSignature;
    if (size != Format::kSize)
        return OemDevmodeFinding::WrongSize;
    return driverExtra.size() >= offset + Format::kSize ? OemDevmodeFinding::Part : OemDevmodeFinding::CutOff;
}

} // namespace

OemDevmodeSearch SearchOemDevmode(std::span<const std::byte> driverExtra) noexcept
{
    OemDevmodeSearch nearest{OemDevmodeFinding::NoCoreSize, {CoreDriverLayout::PostScript, 0}};
    for (const Place& place : kPlaces)
    {
        const std::size_t offset = CoreSize(driverExtra, place.sizeOffset);
        const OemDevmodeFinding finding = LookAt(driverExtra, offset);
        if (finding > nearest.finding)
            nearest = {finding, {place.layout, offset}};
    }
    return nearest;
}

std::optional<OemDevmodeLocation> LocateOemDevmode(std::span<const std::byte> driverExtra) noexcept
{
    const OemDevmodeSearch search = SearchOemDevmode(driverExtra);
    return search.finding == OemDevmodeFinding::Part ? std::optional(search.location) : std::nullopt;
}
