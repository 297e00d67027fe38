#include "driverdatafile.h"

#include <windows.h>

#include <winspool.h>

#include <cstddef>
#include <string>
#include <vector>

#include <tvutil/cxstring.h>
#include <tvutil/exceptions.h>
#include <tvutil/throwexception.h>

namespace
{

constexpr ThrowSite kSite{W("ProductData::ProductData"), W("siblings\\tvcore\\src\\driverdatafile")};
constexpr DWORD kLevel = 2;
constexpr int kAttempts = 8; // somebody who changes the driver each time must not keep us here

// A DRIVER_INFO_2W with its texts behind it.
std::vector<std::byte> ReadDriverInfo(HANDLE printer)
{
    std::vector<std::byte> answer; // from the heap: aligned for every structure
    DWORD error = ERROR_SUCCESS;
    for (int attempt = 0; attempt < kAttempts; ++attempt)
    {
        DWORD needed = 0;
        auto* const room = answer.empty() ? nullptr : reinterpret_cast<LPBYTE>(answer.data());
        if (GetPrinterDriverW(printer, nullptr, kLevel, room, static_cast<DWORD>(answer.size()), &needed))
            return answer;
        error = GetLastError();
        if (error != ERROR_INSUFFICIENT_BUFFER || needed <= answer.size())
            break;
        answer.resize(needed);
    }
    ThrowException<ExceptionPrintDriverFailure>(
        kSite, W("GetPrinterDriverW failed for level %u, no driver is known: Win32 error %u"), {kLevel, error});
}

} // namespace

std::filesystem::path FindDriverDataFile(HANDLE printer)
{
    const std::vector<std::byte> answer = ReadDriverInfo(printer);
    const auto* const info =
        answer.size() >= sizeof(DRIVER_INFO_2W) ? reinterpret_cast<const DRIVER_INFO_2W*>(answer.data()) : nullptr;
    if (info == nullptr || info->pDataFile == nullptr || *info->pDataFile == WCHAR())
        ThrowException<ExceptionPrintDriverFailure>(kSite, W("the driver has no data file"));
    const std::string name = CXString(info->pDataFile).ToUtf8();
    return std::filesystem::path(std::u8string(name.begin(), name.end()));
}
