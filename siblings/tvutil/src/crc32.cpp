#include <tvutil/crc32.h>

#include <array>
#include <cstdint>
#include <span>

namespace
{

// Slicing by eight: the table of slice n tells what a byte makes of the register when n more bytes follow it, so that
// eight bytes are looked up side by side. Every conversion runs over 5,896 bytes several times.
constexpr std::size_t kSlices = 8;
constexpr std::uint32_t kPolynomial = 0xEDB88320;

using Table = std::array<std::uint32_t, 256>;

constexpr std::array<Table, kSlices> MakeTables()
{
    std::array<Table, kSlices> tables{};
    for (std::uint32_t byte = 0; byte < 256; ++byte)
    {
        std::uint32_t remainder = byte;
        for (int bit = 0; bit < 8; ++bit)
            remainder = (remainder >> 1) ^ ((remainder & 1) != 0 ? kPolynomial : 0);
        tables[0][byte] = remainder;
    }
    for (std::size_t slice = 1; slice < kSlices; ++slice)
        for (std::size_t byte = 0; byte < 256; ++byte)
        {
            const std::uint32_t shorter = tables[slice - 1][byte];
            tables[slice][byte] = (shorter >> 8) ^ tables[0][shorter & 0xFF];
        }
    return tables;
}

constexpr std::array<Table, kSlices> kTables = MakeTables();

constexpr std::uint32_t Word(std::span<const std::uint8_t> bytes, std::size_t at)
{
    return static_cast<std::uint32_t>(bytes[at]) | static_cast<std::uint32_t>(bytes[at + 1]) << 8 |
           static_cast<std::uint32_t>(bytes[at + 2]) << 16 | static_cast<std::uint32_t>(bytes[at + 3]) << 24;
}

constexpr std::uint32_t Update(std::span<const std::uint8_t> bytes, std::uint32_t seed)
{
    std::uint32_t crc = ~seed;
    for (; bytes.size() >= kSlices; bytes = bytes.subspan(kSlices))
    {
        const std::uint32_t low = crc ^ Word(bytes, 0);
        const std::uint32_t high = Word(bytes, 4);
        crc = kTables[7][low & 0xFF] ^ kTables[6][(low >> 8) & 0xFF] ^ kTables[5][(low >> 16) & 0xFF] ^
              kTables[4][low >> 24] ^ kTables[3][high & 0xFF] ^ kTables[2][(high >> 8) & 0xFF] ^
              kTables[1][(high >> 16) & 0xFF] ^ kTables[0][high >> 24];
    }
    for (const std::uint8_t byte : bytes)
        crc = (crc >> 8) ^ kTables[0][(crc ^ byte) & 0xFF];
    return ~crc;
}

constexpr std::array<std::uint8_t, 9> kCheck = {'1', '2', '3', '4', '5', '6', '7', '8', '9'};
static_assert(Update(kCheck, 0) == 0xCBF43926);

} // namespace

ULONG Crc32::GetCrc(const void* data, std::size_t size, ULONG seed) noexcept
{
    return Update(std::span(static_cast<const std::uint8_t*>(data), size), static_cast<std::uint32_t>(seed));
}
