// SpoolerBuffer: the answer of a spooler call that fills the caller's buffer.
//
// Such calls are made twice: without room, to learn the size, and with it; again when the answer has grown in between.
#pragma once

#include <windows.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>
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

    // The structure at the head of the answer; null when the answer is too short for it. Its texts are read by Text and
    // Texts.
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

    // A text to which the answer points, empty for a null pointer; nothing when it does not lie in the answer from its
    // first character to its terminator. Valid as long as the answer.
    [[nodiscard]] std::optional<WStringView> Text(const WCHAR* text) const noexcept
    {
        if (text == nullptr)
            return WStringView();
        const std::optional<WStringView> rest = RestFrom(text);
        const std::size_t length = rest ? rest->find(WCHAR()) : WStringView::npos;
        return length != WStringView::npos ? std::optional(rest->substr(0, length)) : std::nullopt;
    }

    // A list of such texts, one behind the other, that ends with an empty one.
    [[nodiscard]] std::optional<std::vector<WStringView>> Texts(const WCHAR* list) const
    {
        std::vector<WStringView> texts;
        for (std::optional<WStringView> text = Text(list); text; text = Text(text->data() + text->size() + 1))
        {
            if (text->empty())
                return texts;
            texts.push_back(*text);
        }
        return std::nullopt;
    }

    [[nodiscard]] std::span<const std::byte> Bytes() const noexcept
    {
        return m_bytes;
    }

private:
    // As whole characters; nothing for a pointer to elsewhere or into the middle of one.
    [[nodiscard]] std::optional<WStringView> RestFrom(const WCHAR* text) const noexcept
    {
        const auto offset = reinterpret_cast<std::uintptr_t>(text) - reinterpret_cast<std::uintptr_t>(m_bytes.data());
        if (offset >= m_bytes.size() || offset % sizeof(WCHAR) != 0)
            return std::nullopt;
        return WStringView(text, (m_bytes.size() - offset) / sizeof(WCHAR));
    }

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
