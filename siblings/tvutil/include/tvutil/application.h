// Application: the programs that print, as far as the driver treats one differently from another.
#pragma once

#include <tvutil/cxstring.h>

class TVUTIL_API Application
{
public:
    // By the file name of its executable, without a folder, whatever the case of its letters.
    [[nodiscard]] static bool IsApplicationFromAdobeAcrobatFamily(const CXString& executableName);
};
