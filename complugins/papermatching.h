// The part of the paper reconciliation that needs nobody but the forms: which paper of a list a devmode means.
#pragma once

#include <windows.h>

#include <span>

#include "complugins/formsinforecord.h"

// Makes paper number, dimensions and form name agree with the first form that fits, and answers whether one did. The
// devmode then holds portrait dimensions. Without a match, and for custom papers (256, 10000 and above) in any case,
// the form name becomes the country's usual one. A custom paper that was claimed by its name is then claimed by its
// number or its size, so that doing it again changes nothing. An empty list matches nothing and leaves the dimensions.
//
// Numbers are compared unsigned, names ignoring case and as far as a devmode holds them. The public part must reach the
// end of dmDitherType.
bool MatchPaperWithForms(DEVMODEW& devmode, std::span<const FormsInfoRecord> forms);

// Whether the devmode's paper is a custom one, by its number: its form name is the country's usual one then.
[[nodiscard]] bool IsCustomPaper(const DEVMODEW& devmode) noexcept;
