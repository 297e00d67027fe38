// The paper list that a devmode carries for use inside the spooler, where no cache of the device can be asked.
//
// One attribute (DataModelIds::Feature::DevicePaperList) of the device capabilities' namespace; the format is in
// docs/devmode-format.md: names without padding, in the printer's order, as many forms as fit in kMaxSize bytes. The
// devmode's own form is always among them, at the cost of the last that would fit.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include <tvutil/attributebytesindexedlist.h>
#include <tvutil/bytebuffer.h>

#include "complugins/formsinforecord.h"

namespace DevicePaperList
{

inline constexpr std::size_t kMaxSize = 2400;

// `own` is the position of the devmode's form in the list; one beyond the end is none. Names are cut as in the record.
[[nodiscard]] ByteBuffer Write(std::span<const FormsInfoRecord> forms, std::size_t own);

// Nothing when the bytes are of another format or contradict themselves.
[[nodiscard]] std::optional<std::vector<FormsInfoRecord>> Read(std::span<const std::byte> bytes);

// The list among the capabilities of a devmode; nothing when it is not there, of another kind, or unreadable.
[[nodiscard]] std::optional<std::vector<FormsInfoRecord>> ReadFrom(const AttributeBytesIndexedList& capabilities);

} // namespace DevicePaperList
