#include "complugins/msdriverkind.h"

#include <tvutil/printdriver.h>

MsDriverKind MsDriverKind::OfPrinter(HANDLE printer)
{
    const PrintDriver driver;
    const auto ask = [&driver, printer](std::uint32_t mask)
    {
        return static_cast<std::uint32_t>(driver.GetDriverCapability(printer, mask));
    };
    MsDriverKind answer;
    answer.kind = ask(kKindMask);
    answer.platform = ask(kPlatformMask);
    answer.coreFlags = ask(kCoreFlagsMask);
    return answer;
}
