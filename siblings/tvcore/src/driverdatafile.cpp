#include "driverdatafile.h"

#include <windows.h>

#include <winspool.h>

#include <optional>
#include <tvutil/cxstring.h>
#include <tvutil/exceptions.h>
#include <tvutil/spoolerbuffer.h>
#include <tvutil/throwexception.h>

namespace
{

constexpr ThrowSite kSite{W("ProductData::ProductData"), W("siblings\\tvcore\\src\\driverdatafile")};

} // namespace

std::filesystem::path FindDriverDataFile(HANDLE printer)
{
    constexpr DWORD kLevel = 2;
    SpoolerBuffer answer;
    const DWORD error =
        answer.Fill([printer](LPBYTE room, DWORD size, LPDWORD needed)
                    { return ErrorOf(GetPrinterDriverW(printer, nullptr, kLevel, room, size, needed)); });
    if (error != ERROR_SUCCESS)
        ThrowException<ExceptionPrintDriverFailure>(
            kSite, W("GetPrinterDriverW failed for level %u, no driver is known: Win32 error %u"), {kLevel, error});
    const auto* const info = answer.Get<DRIVER_INFO_2W>();
    const std::optional<WStringView> file = info != nullptr ? answer.Text(info->pDataFile) : std::nullopt;
    if (!file || file->empty())
        ThrowException<ExceptionPrintDriverFailure>(kSite, W("the driver has no data file"));
    // From wide characters: these need no conversion on Windows, where the tool chain's ends the process when a
    // thread's first one finds no memory.
    return std::filesystem::path(WideString(*file));
}
