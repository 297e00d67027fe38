// Application: the programs that print, as far as the driver treats one differently from another.
#pragma once

#include <tvutil/cxstring.h>

class TVUTIL_API Application
{
public:
    // By the file name of its executable, without a folder, whatever the case of its letters.
    [[nodiscard]] static bool IsApplicationFromAdobeAcrobatFamily(const CXString& executableName);

    // Whether print capabilities must not offer a custom size, because the program lists options by their names and
    // asks for no lengths: the program that this process runs, or one by the file name of its executable.
    [[nodiscard]] static bool DoesApplicationNeedCustomSizeRemovedFromPrintCapabilitiesXml();
    [[nodiscard]] static bool
    DoesApplicationNeedCustomSizeRemovedFromPrintCapabilitiesXml(const CXString& executableName);
};
