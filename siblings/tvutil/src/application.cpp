#include <windows.h>

#include <tvutil/application.h>

#include <algorithm>
#include <span>

#include <tvutil/tavlenutilities.h>

namespace
{

// The editor (and the 64-bit reader), the 32-bit reader, the distiller.
constexpr WStringView kAdobeAcrobatFamily[] = {W("acrobat.exe"), W("acrord32.exe"), W("acrodist.exe")};

// The platform's modern print dialog, and the host of applications that bring their own over the same interface.
constexpr WStringView kDialogsWithoutLengths[] = {W("printdialog.exe"), W("wwahost.exe")};

bool IsOneOf(std::span<const WStringView> names, const CXString& executableName)
{
    return std::any_of(names.begin(), names.end(),
                       [&executableName](WStringView name) { return executableName.CompareNoCase(name) == 0; });
}

} // namespace

bool Application::IsApplicationFromAdobeAcrobatFamily(const CXString& executableName)
{
    return IsOneOf(kAdobeAcrobatFamily, executableName);
}

bool Application::DoesApplicationNeedCustomSizeRemovedFromPrintCapabilitiesXml()
{
    return DoesApplicationNeedCustomSizeRemovedFromPrintCapabilitiesXml(TavlenUtilities::GetExecutableName());
}

bool Application::DoesApplicationNeedCustomSizeRemovedFromPrintCapabilitiesXml(const CXString& executableName)
{
    return IsOneOf(kDialogsWithoutLengths, executableName);
}
