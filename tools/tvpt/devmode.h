// Devmode: one devmode as bytes: the public DEVMODEW (dmSize bytes) and what the drivers keep behind it
// (dmDriverExtra bytes).
//
// A value type that always holds exactly that many bytes.
#pragma once

#include <windows.h>

#include <cstddef>
#include <span>
#include <string_view>
#include <vector>

#include <tvutil/devmodebounds.h>

#include "filebytes.h"

// Both parts of it have 16-bit sizes.
inline constexpr std::size_t kMaxDevmodeSize = 2 * 65535;

class Devmode
{
public:
    // The end of dmDitherType: what comes later was added to the structure afterwards.
    static constexpr std::size_t kSmallestPublicSize = kSmallestPublicDevmode;

    // Throws Failure when the bytes are no devmode, or more or less than one. `name` is for the message.
    [[nodiscard]] static Devmode FromBytes(std::string_view bytes, std::string_view name);

    Devmode(const DEVMODEW& publicPart, std::span<const std::byte> driverExtra);

    // The public part; fields beyond this devmode's dmSize are zero.
    [[nodiscard]] DEVMODEW Public() const noexcept;
    // Writes the fields back; dmSize and dmDriverExtra stay what they are.
    void SetPublic(const DEVMODEW& fields) noexcept;

    [[nodiscard]] std::span<const std::byte> DriverExtra() const noexcept;
    [[nodiscard]] std::string_view Bytes() const noexcept;

    // For a driver that reads and writes the devmode in place.
    [[nodiscard]] DEVMODEW* Raw() noexcept;
    [[nodiscard]] ULONG Size() const noexcept;

private:
    explicit Devmode(std::vector<std::byte> bytes) noexcept;

    std::vector<std::byte> m_bytes;
};

// The devmode of a file. Throws Failure.
[[nodiscard]] Devmode ReadDevmode(const std::string& file, const StandardStreams& streams);
