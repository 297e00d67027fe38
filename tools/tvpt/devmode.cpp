#include "devmode.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "failure.h"

Devmode Devmode::FromBytes(std::string_view bytes, std::string_view name)
{
    constexpr char kReading[] = "reading the devmode";
    if (bytes.size() < kSmallestPublicSize)
        Fail(kReading, name, "only " + std::to_string(bytes.size()) + " bytes, a devmode has more");

    std::vector<std::byte> copy(bytes.size());
    std::memcpy(copy.data(), bytes.data(), bytes.size());
    Devmode devmode(std::move(copy));
    const DEVMODEW fields = devmode.Public();
    if (fields.dmSize < kSmallestPublicSize)
        Fail(kReading, name, "dmSize is " + std::to_string(fields.dmSize) + ", less than a devmode has");
    const std::size_t total = std::size_t{fields.dmSize} + fields.dmDriverExtra;
    if (total != bytes.size())
        Fail(kReading, name,
             "dmSize and dmDriverExtra make " + std::to_string(total) + " bytes, the file has " +
                 std::to_string(bytes.size()));
    return devmode;
}

Devmode::Devmode(const DEVMODEW& publicPart, std::span<const std::byte> driverExtra)
    : m_bytes(sizeof(DEVMODEW) + driverExtra.size())
{
    DEVMODEW fields = publicPart;
    fields.dmSize = sizeof(DEVMODEW);
    fields.dmDriverExtra = static_cast<WORD>(driverExtra.size());
    std::memcpy(m_bytes.data(), &fields, sizeof fields);
    std::copy(driverExtra.begin(), driverExtra.end(), m_bytes.begin() + sizeof fields);
}

Devmode::Devmode(std::vector<std::byte> bytes) noexcept : m_bytes(std::move(bytes))
{
}

DEVMODEW Devmode::Public() const noexcept
{
    DEVMODEW fields{};
    std::memcpy(&fields, m_bytes.data(), std::min(m_bytes.size(), sizeof fields));
    if (fields.dmSize < sizeof fields) // the rest belongs to the driver
        std::memset(reinterpret_cast<std::byte*>(&fields) + fields.dmSize, 0, sizeof fields - fields.dmSize);
    return fields;
}

void Devmode::SetPublic(const DEVMODEW& fields) noexcept
{
    const DEVMODEW before = Public();
    DEVMODEW after = fields;
    after.dmSize = before.dmSize;
    after.dmDriverExtra = before.dmDriverExtra;
    std::memcpy(m_bytes.data(), &after, std::min<std::size_t>(before.dmSize, sizeof after));
}

std::span<const std::byte> Devmode::DriverExtra() const noexcept
{
    return std::span(m_bytes).subspan(Public().dmSize);
}

std::string_view Devmode::Bytes() const noexcept
{
    return {reinterpret_cast<const char*>(m_bytes.data()), m_bytes.size()};
}

DEVMODEW* Devmode::Raw() noexcept
{
    return reinterpret_cast<DEVMODEW*>(m_bytes.data());
}

ULONG Devmode::Size() const noexcept
{
    return static_cast<ULONG>(m_bytes.size());
}

Devmode ReadDevmode(const std::string& file, const StandardStreams& streams)
{
    return Devmode::FromBytes(ReadInput(file, kMaxDevmodeSize, streams), file);
}
