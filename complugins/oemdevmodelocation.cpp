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

bool PartBeginsAt(std::span<const std::byte> driverExtra, std::size_t offset) noexcept
{
    if (offset == 0 || driverExtra.size() <= offset + Format::kHeaderSize)
        return false;
    ByteReader reader(driverExtra.subspan(offset));
    const auto size = reader.U32();
    const auto signature = reader.U32();
    return size == Format::kSize && signature == Format::kSignature && driverExtra.size() >= offset + Format::kSize;
}

} // namespace

std::optional<OemDevmodeLocation> LocateOemDevmode(std::span<const std::byte> driverExtra) noexcept
{
    for (const Place& place : kPlaces)
    {
        const std::size_t offset = CoreSize(driverExtra, place.sizeOffset);
        if (PartBeginsAt(driverExtra, offset))
            return OemDevmodeLocation{place.layout, offset};
    }
    return std::nullopt;
}
