// SpoolerBuffer: the answer of a spooler call that fills the caller's buffer.
//
// Such calls are made twice: without room, to learn the size, and with it; again when the answer has grown in between.
#pragma once

#include <windows.h>

#include <algorithm>
#include <cstddef>
#include <functional>
#include <span>
#include <vector>

#include "utilitiesstaticlib/wideliteral.h"

class SpoolerBuffer
{
public:
    // Call is `DWORD(LPBYTE room, DWORD size, LPDWORD needed)`, which returns a Win32 error. Returns the last one.
    template <class Call>
    [[nodiscard]] DWORD Fill(Call call)
    {
        constexpr int kAttempts = 8; // somebody who changes the answer each time must not keep us here
        DWORD error = ERROR_SUCCESS;
        for (int attempt = 0; attempt < kAttempts; ++attempt)
        {
            DWORD needed = 0;
            error = call(Room(), static_cast<DWORD>(m_bytes.size()), &needed);
            if (error == ERROR_SUCCESS)
                m_bytes.resize(needed < m_bytes.size() ? needed : m_bytes.size());
            const bool wantsRoom = error == ERROR_INSUFFICIENT_BUFFER || error == ERROR_MORE_DATA;
            if (!wantsRoom || (needed <= m_bytes.size() && !m_bytes.empty()))
                return error;
            m_bytes.resize(std::max(needed, DWORD{1})); // Wine wants some room even for an answer of no bytes
        }
        return error;
    }

    // The structure at the head of the answer; null when the answer is too short for it. Its texts lie in the buffer.
    template <class Info>
    [[nodiscard]] const Info* Get() const noexcept
    {
        return m_bytes.size() >= sizeof(Info) ? reinterpret_cast<const Info*>(m_bytes.data()) : nullptr;
    }

    // As many of the structures at the head of the answer as it claims and has room for.
    template <class Info>
    [[nodiscard]] std::span<const Info> List(std::size_t count) const noexcept
    {
        return {reinterpret_cast<const Info*>(m_bytes.data()), std::min(count, m_bytes.size() / sizeof(Info))};
    }

    // From a text of the answer to the answer's end; empty when it points elsewhere.
    [[nodiscard]] WStringView From(const WCHAR* text) const noexcept
    {
        const std::less<const void*> before;
        const std::byte* const end = m_bytes.data() + m_bytes.size();
        if (text == nullptr || before(text, m_bytes.data()) || !before(text, end))
            return {};
        return {text, static_cast<std::size_t>(end - reinterpret_cast<const std::byte*>(text)) / sizeof(WCHAR)};
    }

    // One text of the answer, without its terminator.
    [[nodiscard]] WStringView Text(const WCHAR* text) const noexcept
    {
        return From(text).substr(0, From(text).find(WCHAR()));
    }

    [[nodiscard]] std::span<const std::byte> Bytes() const noexcept
    {
        return m_bytes;
    }

private:
    LPBYTE Room() noexcept
    {
        return m_bytes.empty() ? nullptr : reinterpret_cast<LPBYTE>(m_bytes.data());
    }

    std::vector<std::byte> m_bytes; // from the heap: aligned for every structure
};

// The error of a BOOL function that has just returned.
[[nodiscard]] inline DWORD ErrorOf(BOOL succeeded) noexcept
{
    if (succeeded)
        return ERROR_SUCCESS;
    const DWORD error = GetLastError();
    return error != ERROR_SUCCESS ? error : ERROR_GEN_FAILURE;
}
