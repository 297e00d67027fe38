// CComBSTR: the owner of one BSTR.
//
// A null string and an empty one are told apart by Get() only; View() gives the empty view for both. Copying
// allocates; a failed allocation throws std::bad_alloc. The address of an empty owner is an out-parameter:
// `node->get_text(text.Put())`.
#pragma once

#include <windows.h>

#include <oleauto.h>

#include <limits>
#include <new>
#include <utility>

#include "utilitiesstaticlib/wideliteral.h"

class CComBSTR // NOLINT(cppcoreguidelines-special-member-functions): one assignment serves copies and moves
{
public:
    CComBSTR() noexcept = default;

    explicit CComBSTR(WStringView text) : m_string(Allocate(text))
    {
    }

    // A null text makes a null string.
    explicit CComBSTR(const WCHAR* text) : m_string(text != nullptr ? Allocate(text) : nullptr)
    {
    }

    CComBSTR(const CComBSTR& other) : m_string(other.m_string != nullptr ? Allocate(other.View()) : nullptr)
    {
    }

    CComBSTR(CComBSTR&& other) noexcept : m_string(other.Detach())
    {
    }

    // What was held stays when the copy cannot be made.
    CComBSTR& operator=(const CComBSTR& other)
    {
        CComBSTR copy(other);
        std::swap(m_string, copy.m_string);
        return *this;
    }

    CComBSTR& operator=(CComBSTR&& other) noexcept
    {
        Attach(other.Detach());
        return *this;
    }

    ~CComBSTR()
    {
        SysFreeString(m_string);
    }

    // Takes over a string that the caller owned.
    void Attach(BSTR string) noexcept
    {
        SysFreeString(m_string);
        m_string = string;
    }

    // Hands the string over to the caller, who frees it.
    [[nodiscard]] BSTR Detach() noexcept
    {
        return std::exchange(m_string, nullptr);
    }

    void Empty() noexcept
    {
        Attach(nullptr);
    }

    // The out-parameter: what was held is freed first.
    [[nodiscard]] BSTR* Put() noexcept
    {
        Empty();
        return &m_string;
    }

    [[nodiscard]] BSTR Get() const noexcept
    {
        return m_string;
    }

    // In characters, zeros within the text counted.
    [[nodiscard]] UINT Length() const noexcept
    {
        return SysStringLen(m_string);
    }

    [[nodiscard]] bool IsEmpty() const noexcept
    {
        return Length() == 0;
    }

    [[nodiscard]] WStringView View() const noexcept
    {
        return m_string != nullptr ? WStringView(m_string, Length()) : WStringView();
    }

private:
    static BSTR Allocate(WStringView text)
    {
        if (text.size() > (std::numeric_limits<UINT>::max)())
            throw std::bad_alloc();
        BSTR const string = SysAllocStringLen(text.data(), static_cast<UINT>(text.size()));
        if (string == nullptr)
            throw std::bad_alloc();
        return string;
    }

    BSTR m_string = nullptr;
};
