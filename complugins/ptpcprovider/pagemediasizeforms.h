// Which form of a printer's list a document or a devmode means, and which forms are offered.
#pragma once

#include <windows.h>

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "complugins/mscacheddevicecapabilities.h"

namespace PageMediaSize
{

using Forms = std::span<const FormsInfoRecord>;

// Empty when the capabilities have no list. Throws as they do where there is no printer.
[[nodiscard]] std::vector<FormsInfoRecord> ReadForms(MsCachedDeviceCapabilities& capabilities);

// What a ticket asks for.
struct AskedSize
{
    LONG width = 0; // microns; both or neither
    LONG height = 0;
    bool isCustom = false;
    // The page-size value whose form is the one, whatever its size. A name that nobody knows gives none: a default in
    // its place would hide the form of the size that is asked for.
    std::optional<std::int32_t> valueId;
};

// The first form of the value, else the first of the size, but a user's form of the size before any other and the last
// of these before the earlier ones; else, and for a custom size, a made-up record: paper 256 of form type 0, which is
// none of the types.
[[nodiscard]] FormsInfoRecord FormForTicket(const AskedSize& asked, Forms forms);

// By paper number or, for paper 256, by size; else the list's custom form with the devmode's size, made up where the
// list has none. The public part must reach the end of dmDitherType.
[[nodiscard]] FormsInfoRecord FormForDevmode(const DEVMODEW& devmode, Forms forms);

// The paper number of a devmode of the form: sizes of the driver's or a user's own are given by their lengths.
[[nodiscard]] std::uint16_t DevmodeNumberOf(const FormsInfoRecord& form) noexcept;

// The forms that become options, in list order: all but those that are never published, the custom form where it shall
// not be offered, and the driver's that share their paper id with a form of another type.
[[nodiscard]] std::vector<FormsInfoRecord> OfferedForms(Forms forms, bool offersCustomSize);

} // namespace PageMediaSize
