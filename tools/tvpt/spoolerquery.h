// The spooler's "call twice" idiom: without room, to learn the size, then with it; again when the answer has grown.
#pragma once

#include <windows.h>

#include <vector>

// Call is `BOOL(LPBYTE room, DWORD size, LPDWORD needed)` and leaves its error in the last error. Returns the Win32
// error; the answer, a structure with its texts behind it, is in `room`, which the heap aligns for it.
template <class Call>
[[nodiscard]] DWORD QuerySpooler(std::vector<BYTE>& room, Call call)
{
    constexpr int kAttempts = 8; // somebody who keeps changing the answer must not keep us here
    DWORD error = ERROR_INSUFFICIENT_BUFFER;
    for (int attempt = 0; attempt < kAttempts && error == ERROR_INSUFFICIENT_BUFFER; ++attempt)
    {
        DWORD needed = 0;
        SetLastError(ERROR_SUCCESS);
        if (call(room.empty() ? nullptr : room.data(), static_cast<DWORD>(room.size()), &needed))
            return ERROR_SUCCESS;
        error = GetLastError();
        if (needed > room.size())
            room.resize(needed);
    }
    return error != ERROR_SUCCESS ? error : ERROR_GEN_FAILURE;
}
