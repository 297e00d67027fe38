#include <tvutil/operatingsystem.h>

namespace
{

// Values of LOCALE_IMEASURE and LOCALE_IPAPERSIZE.
constexpr DWORD kUnitedStatesMeasures = 1;
constexpr DWORD kLetter = 1;
constexpr DWORD kLegal = 5;

// `unknown` when the system does not tell.
DWORD LocaleNumber(LCTYPE type, DWORD unknown) noexcept
{
    DWORD value = 0;
    // With LOCALE_RETURN_NUMBER the answer is a DWORD in the place of the text; its room is counted in characters.
    const int written = GetLocaleInfoW(LOCALE_USER_DEFAULT, type | LOCALE_RETURN_NUMBER,
                                       reinterpret_cast<LPWSTR>(&value), sizeof(value) / sizeof(WCHAR));
    return written > 0 ? value : unknown;
}

} // namespace

OperatingSystem::Version OperatingSystem::GetVersion() noexcept
{
    OSVERSIONINFOW information{};
    information.dwOSVersionInfoSize = sizeof(information);
    if (!GetVersionExW(&information))
        return {};
    return {information.dwMajorVersion, information.dwMinorVersion, information.dwBuildNumber};
}

bool OperatingSystem::IsMetricCountry() noexcept
{
    return LocaleNumber(LOCALE_IMEASURE, 0) != kUnitedStatesMeasures;
}

bool OperatingSystem::UseEnglishPaperSizes() noexcept
{
    const DWORD paper = LocaleNumber(LOCALE_IPAPERSIZE, 0);
    return paper == kLetter || paper == kLegal;
}
