// What the configuration module of the spooler's tests answers.
#pragma once

#include "utilitiesstaticlib/wideliteral.h"

namespace spoolersample
{

inline constexpr int kCopies = 77;
inline constexpr WORD kPrivateSize = 24;
inline constexpr BYTE kPrivateByte = 0x5A;
inline constexpr const WCHAR* kEvent = W("LastEvent"); // of the driver's data

} // namespace spoolersample
