#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <iterator>
#include <string_view>

#include "winbase.h"
#include "winerror.h"
#include "wingdi.h"
#include "winnls.h"

namespace
{

// The Unicode locale data's territories (supplemental data, measurementData and paperSize).
constexpr std::string_view kUnitedStatesMeasures[] = {"LR", "MM", "US"};
constexpr std::string_view kLetter[] = {"BZ", "CA", "CL", "CO", "CR", "GT", "MX",
                                        "NI", "PA", "PH", "PR", "SV", "US", "VE"};

constexpr int kNumberLength = sizeof(DWORD) / sizeof(WCHAR);

// "US" of "en_US.UTF-8@euro", of the first variable that is set and not empty.
std::string_view TerritoryOf(const char* category)
{
    for (const char* const variable : {"LC_ALL", category, "LANG"})
    {
        const char* const value = std::getenv(variable);
        if (value == nullptr || *value == '\0')
            continue;
        std::string_view name(value);
        name = name.substr(0, name.find_first_of(".@"));
        const std::size_t separator = name.find('_');
        return separator == std::string_view::npos ? std::string_view() : name.substr(separator + 1);
    }
    return {};
}

template <std::size_t Count>
bool Contains(const std::string_view (&territories)[Count], std::string_view territory)
{
    return std::find(std::begin(territories), std::end(territories), territory) != std::end(territories);
}

int Fail(DWORD error)
{
    SetLastError(error);
    return 0;
}

} // namespace

int WINAPI GetLocaleInfoW(LCID locale, LCTYPE type, LPWSTR data, int size)
{
    DWORD value = 0;
    if (locale == LOCALE_USER_DEFAULT && type == (LOCALE_IMEASURE | LOCALE_RETURN_NUMBER))
        value = Contains(kUnitedStatesMeasures, TerritoryOf("LC_MEASUREMENT")) ? 1 : 0;
    else if (locale == LOCALE_USER_DEFAULT && type == (LOCALE_IPAPERSIZE | LOCALE_RETURN_NUMBER))
        value = static_cast<DWORD>(Contains(kLetter, TerritoryOf("LC_PAPER")) ? DMPAPER_LETTER : DMPAPER_A4);
    else
        return Fail(ERROR_INVALID_PARAMETER);

    if (size == 0)
        return kNumberLength;
    if (data == nullptr)
        return Fail(ERROR_INVALID_PARAMETER);
    if (size < kNumberLength)
        return Fail(ERROR_INSUFFICIENT_BUFFER);
    std::memcpy(data, &value, sizeof(value));
    return kNumberLength;
}
