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

bool BeginsAsOemDevmode(std::span<const std::byte> bytes) noexcept
{
    ByteReader reader(bytes);
    const auto size = reader.U32();
    const auto signature = reader.U32();
    return reader.Ok() && size == Format::kSize && signature == Format::kSignature;
}

std::array<OemDevmodeSearch, 2> SearchOemDevmode(std::span<const std::byte> driverExtra) noexcept
{
    const auto search = [driverExtra](const Place& place)
    {
        const std::size_t offset = CoreSize(driverExtra, place.sizeOffset);
        return OemDevmodeSearch{LookAt(driverExtra, offset), {place.layout, offset}};
    };
    return {search(kPlaces[0]), search(kPlaces[1])};
}

std::optional<OemDevmodeLocation> LocateOemDevmode(std::span<const std::byte> driverExtra) noexcept
{
    for (const OemDevmodeSearch& search : SearchOemDevmode(driverExtra))
        if (search.finding == OemDevmodeFinding::Part)
            return search.location;
    return std::nullopt;
}
