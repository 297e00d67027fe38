// Which core driver a printer has, as far as its settings depend on that: bits of the printer's capability word.
#pragma once

#include <windows.h>

#include <cstdint>

struct MsDriverKind
{
    static constexpr std::uint32_t kKindMask = 0x7C0;
    static constexpr std::uint32_t kUnidrvA =
        0x40; // the two Unidrv kinds differ in where the driver's own settings lie
    static constexpr std::uint32_t kUnidrvB = 0x80;
    static constexpr std::uint32_t kPostScript = 0x200;
    static constexpr std::uint32_t kPlainOrientation = 0x400; // a third kind: its orientation is "Orientation"

    static constexpr std::uint32_t kPlatformMask = 0x1800;
    static constexpr std::uint32_t kPlatformA = 0x800;
    static constexpr std::uint32_t kPlatformB = 0x1000;

    static constexpr std::uint32_t kCoreFlagsMask = 0xF;
    static constexpr std::uint32_t kPostScriptLayout = 0x2 | 0x4; // either: the private part has the PostScript layout
    static constexpr std::uint32_t kPageOrientation = 0x4;        // the orientation is "PageOrientation"
    static constexpr std::uint32_t kResKeywords = 0x8;            // resolutions are "Res600x600"

    std::uint32_t kind = 0; // each holds the bits of its mask
    std::uint32_t platform = 0;
    std::uint32_t coreFlags = 0;

    [[nodiscard]] static constexpr MsDriverKind FromCapabilityWord(std::uint64_t word) noexcept
    {
        const auto bits = static_cast<std::uint32_t>(word);
        return {bits & kKindMask, bits & kPlatformMask, bits & kCoreFlagsMask};
    }

    // Throws ExceptionPrintDriverFailure when the printer cannot be asked.
    [[nodiscard]] static MsDriverKind OfPrinter(HANDLE printer);

    [[nodiscard]] constexpr bool HasPostScriptLayout() const noexcept
    {
        return (coreFlags & kPostScriptLayout) != 0;
    }

    // What a mask says of the drivers it is for: at least one of its kinds and, where it names a platform, exactly that
    // one; a driver of both platforms is of neither.
    [[nodiscard]] constexpr bool Fits(std::uint32_t mask) const noexcept
    {
        const std::uint32_t named = mask & kPlatformMask;
        return (mask & kind & kKindMask) != 0 && (named == 0 || named == platform);
    }
};
