// MediaHandler: which of a printer's papers a size means.
#pragma once

#include <cstdint>
#include <span>

#include <tvutil/cxstring.h>
#include <tvutil/dimension.h>

#include "complugins/formsinforecord.h"

class MediaHandler
{
public:
    // The forms that are of this size, each dimension to less than half a millimetre (a sheet turned by 90 degrees is
    // another one), and of several the one with this paper id, else the one with this name, as far as a devmode
    // holds names and whatever the case of its letters, else the first. Null when none has the size. The result is one
    // of `forms`.
    [[nodiscard]] static const FormsInfoRecord* GetBestMatchPageSize(std::span<const FormsInfoRecord> forms,
                                                                     const Dimension& width, const Dimension& length,
                                                                     std::uint16_t paperId, const CXString& name);
};
