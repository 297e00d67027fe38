// A DEVMODEW and its private part as the bytes that they are.
#pragma once

#include <span>

#include <winspool.h>

#include "spooler/statement.h"

namespace winport::spooler
{

// True when the sizes in the devmode's own fields are those of the bytes.
bool IsWholeDevMode(std::span<const BYTE> bytes) noexcept;

// A caller's devmode, dmSize + dmDriverExtra bytes of it; null gives no bytes. ERROR_INVALID_PARAMETER when dmSize ends
// before dmFields.
Blob DevModeBytes(const DEVMODEW* devMode);

} // namespace winport::spooler
