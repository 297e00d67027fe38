// The paper numbers of named custom sizes, of which a devmode can hold nothing but a number.
//
// 49152 to 65535 are theirs alone: the platform's own papers and the spooler's forms are numbered from 1 up, and no
// form of a printer model may have such a number (tvcore/printermodel.h). Paper numbers are compared unsigned.
#pragma once

#include <tvutil/crc32.h>
#include <tvutil/cxstring.h>

#include <cstdint>

inline constexpr std::uint16_t kFirstCustomSizeNumber = 0xC000;

// The same name gives the same number in every process and on every machine, whatever the case of its letters, as the
// registry compares the keys under which custom sizes are kept. Two names may, seldom, share a number: a list of
// forms then shows the first of them.
[[nodiscard]] inline std::uint16_t CustomSizeNumber(const CXString& name)
{
    const CXString key = name.ToLower();
    const ULONG crc = Crc32::GetCrc(key.c_str(), key.Length() * sizeof(WCHAR));
    return static_cast<std::uint16_t>(kFirstCustomSizeNumber | (crc & 0x3FFF));
}
