// OperatingSystem: which system this is, and where in the world its user is.
#pragma once

#include <windows.h>

#include <tvutil/cxstring.h>

class TVUTIL_API OperatingSystem
{
public:
    struct Version
    {
        DWORD major;
        DWORD minor;
        DWORD build;
    };

    // 0.0 when the system does not tell.
    [[nodiscard]] static Version GetVersion() noexcept;

    // Whether the user's locale measures in metres. Metric when the system does not tell.
    [[nodiscard]] static bool IsMetricCountry() noexcept;

    // Whether Letter and not A4 is the usual paper where the user is: North America and parts of Central and South
    // America, metric countries among them.
    [[nodiscard]] static bool UseEnglishPaperSizes() noexcept;
};
