#include <windows.h>

#include <tvutil/application.h>

#include <algorithm>
#include <iterator>

namespace
{

// The editor (and the 64-bit reader), the 32-bit reader, the distiller.
constexpr WStringView kAdobeAcrobatFamily[] = {W("acrobat.exe"), W("acrord32.exe"), W("acrodist.exe")};

} // namespace

bool Application::IsApplicationFromAdobeAcrobatFamily(const CXString& executableName)
{
    return std::any_of(std::begin(kAdobeAcrobatFamily), std::end(kAdobeAcrobatFamily),
                       [&executableName](WStringView name) { return executableName.CompareNoCase(name) == 0; });
}
