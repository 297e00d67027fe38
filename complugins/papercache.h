// The content of the cache "XPaperCaps": the printer's form list, and its papers as applications are shown them.
//
// docs/device-capabilities-caches.md has the bytes. The counts are foreign words: nothing is read that they promise and
// that is not there.
#pragma once

#include <windows.h>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include <tvutil/bytebuffer.h>
#include <tvutil/cxstring.h>

#include "complugins/formsinforecord.h"

namespace PaperCache
{

inline constexpr std::size_t kHeaderSize = 16;
inline constexpr std::size_t kFormSize = sizeof(FormsInfoRecord);
inline constexpr std::size_t kDisplayNameCapacity = 64; // characters, without a terminator where it is full
inline constexpr std::size_t kPaperSize = 12 + kDisplayNameCapacity * sizeof(WCHAR);

// The words of the header, whole or not.
struct Header
{
    DWORD fields = 0; // what the driver heeds of a devmode (DM_...)
    DWORD paperCount = 0;
    DWORD customFormsCrc = 0;
    DWORD formCount = 0;
};

// A paper that an application may choose.
struct Paper
{
    std::uint16_t paperId = 0;
    std::int32_t width = 0; // tenths of a millimetre
    std::int32_t length = 0;
    CXString displayName; // cut to 64 characters
};

[[nodiscard]] ByteBuffer Write(DWORD fields, DWORD customFormsCrc, std::span<const FormsInfoRecord> forms,
                               std::span<const Paper> papers);

[[nodiscard]] Header ReadHeader(std::span<const std::byte> content) noexcept;
// Whether the forms and papers that the header counts are there.
[[nodiscard]] bool IsWhole(std::span<const std::byte> content) noexcept;

// Nothing when the content is not whole.
[[nodiscard]] std::optional<std::vector<FormsInfoRecord>> ReadForms(std::span<const std::byte> content);
[[nodiscard]] std::optional<std::vector<Paper>> ReadPapers(std::span<const std::byte> content);

} // namespace PaperCache
