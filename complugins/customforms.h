// The user's custom paper sizes, and the CRC that tells whether they have changed.
//
// Each is a key of the current user's registry, named as the size, with two lengths and a boolean; the registry
// compares names ignoring case. What anybody may have written there is not believed: a size whose values are absent, of
// another type or no length of paper is left out.
#pragma once

#include <windows.h>

#include <cstdint>
#include <optional>
#include <vector>

#include <tvutil/cxstring.h>
#include <tvutil/datacache.h>

#include "complugins/formsinforecord.h"

namespace CustomForms
{

inline constexpr WStringView kComponent = W("PrinterDriver"); // of the user's settings
inline constexpr const WCHAR* kKey = W("Tavlen Custom Paper Sizes");
inline constexpr const WCHAR* kWidth = W("WidthInThousandthsOfAMillimeter");
inline constexpr const WCHAR* kLength = W("LengthInThousandthsOfAMillimeter");
inline constexpr const WCHAR* kIsMetric = W("IsMetricUnits");

inline constexpr DWORD kCrcSeed = 1397442489; // also the CRC of no sizes

// Thousandths of a millimetre: what is one tenth or more when it is rounded, and fits a devmode's 16 bits in tenths.
inline constexpr std::int32_t kShortest = 51;
inline constexpr std::int32_t kLongest = 3'276'700;

[[nodiscard]] constexpr bool IsLength(std::int64_t thousandths) noexcept
{
    return thousandths >= kShortest && thousandths <= kLongest;
}

struct Size
{
    CXString name;
    std::int32_t width = 0; // thousandths of a millimetre
    std::int32_t length = 0;
    bool isMetric = true; // or inches
};

struct Walk
{
    DWORD crc = kCrcSeed;
    std::vector<Size> sizes; // in the registry's order
    std::vector<CXString> leftOut;
    bool isCutOff = false; // by an exception: the sizes behind it are unknown
};

// Every exception is reported and not thrown, and so is every size that is left out (message 5335).
[[nodiscard]] Walk WalkSizes() noexcept;

// The record of a printer's form list: tenths of a millimetre.
[[nodiscard]] FormsInfoRecord FormOf(const Size& size);

// Under DataCache::Lock of the user's hive, their own or the caller's. Throw ExceptionDataCacheFailure without it.
// False when there is a size of this name. A name that a key can bear and lengths of paper are the caller's to bring.
// Throws TavlenComException when the registry refuses, with nothing left behind unless it refuses that, too.
bool Add(const Size& size);
bool Add(const Size& size, const DataCache::Lock& lock);
// False when there is no such size.
bool Remove(const CXString& name);

} // namespace CustomForms
