// VARIANT arguments and results.
#pragma once

#include <optional>

#include "wtypes.h"

namespace winport::dom
{

// The text of a value argument, as a BSTR that the caller owns: strings as they are, integers in decimal, booleans as
// the platform's VariantChangeType writes them, nothing as the empty text. Throws Failure(E_INVALIDARG) for other
// types.
BSTR NewTextOf(const VARIANT& value);

// A whole number, or a string that is one.
std::optional<LONG> NumberOf(const VARIANT& value);

// The string of a string argument, not copied; null for every other type.
BSTR const* StringOf(const VARIANT& value);

// Sets an out-parameter, whose old content is not looked at.
void SetEmpty(VARIANT& target, VARTYPE type);
void SetString(VARIANT& target, BSTR owned);

} // namespace winport::dom
