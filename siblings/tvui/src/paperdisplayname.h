// How a paper is called where people choose one.
#pragma once

#include <tvutil/cxstring.h>

#include "complugins/formsinforecord.h"

// The form's name with every "Envelope" shortened to "Env."; " inches" is put behind the name of a form in inches that
// is nothing but a size ("11x17", "8.5 x 13"), which would not tell its unit. At most 64 characters.
[[nodiscard]] CXString PaperDisplayName(const FormsInfoRecord& form);
