// CXString: the system's UTF-16 string; every name, keyword and message.
//
// A value type. Characters are WCHARs, lengths are counted in WCHARs; zero characters inside the text are kept.
// Operations that allocate throw std::bad_alloc.
#pragma once

#include <concepts>
#include <initializer_list>
#include <string>
#include <string_view>

#include "utilitiesstaticlib/ccombstr.h"
#include "utilitiesstaticlib/wideliteral.h"

class TVUTIL_API CXString
{
public:
    CXString() noexcept;
    CXString(const WCHAR* text); // null is the empty string
    CXString(WStringView text);
    CXString(const CComBSTR& text);
    CXString(const CXString& other);
    CXString(CXString&& other) noexcept;
    CXString& operator=(const CXString& other);
    CXString& operator=(CXString&& other) noexcept;
    ~CXString();

    // Invalid sequences become U+FFFD, in both directions.
    static CXString FromUtf8(std::string_view text);
    [[nodiscard]] std::string ToUtf8() const;

    // Signed and unsigned decimal ("%i", "%u").
    static CXString FromInteger(LONG value);
    static CXString FromUnsigned(ULONG value);

    // Replaces each %s, %i and %u of the format by the next argument, %% by a percent sign. Throws
    // std::invalid_argument when arguments and directives do not match: the format is the caller's constant.
    class Argument;
    static CXString Format(WStringView format, std::initializer_list<Argument> arguments);

    [[nodiscard]] const WCHAR* c_str() const noexcept; // zero-terminated, valid until the next change
    [[nodiscard]] WStringView View() const noexcept;
    [[nodiscard]] std::size_t Length() const noexcept;
    [[nodiscard]] bool IsEmpty() const noexcept;
    operator WStringView() const noexcept;

    CXString& operator+=(WStringView text);
    void Clear() noexcept;

    // Latin letters and their accented forms, whatever the locale.
    [[nodiscard]] int CompareNoCase(WStringView other) const noexcept;
    [[nodiscard]] CXString ToLower() const;

    // Position of the first occurrence, or npos.
    static constexpr std::size_t npos = static_cast<std::size_t>(-1);
    [[nodiscard]] std::size_t Find(WStringView text, std::size_t from = 0) const noexcept;
    [[nodiscard]] bool StartsWith(WStringView text) const noexcept;
    // Part of the string; a position or length beyond the end is cut.
    [[nodiscard]] CXString Mid(std::size_t position, std::size_t length = npos) const;
    // Replaces every occurrence, left to right, replacements not searched again; an empty `from` changes nothing.
    void ReplaceAll(WStringView from, WStringView to);

    [[nodiscard]] CComBSTR ToBstr() const;

private:
    WideString m_text;
};

// Text for %s, a number for %i (signed) and %u (unsigned).
class TVUTIL_API CXString::Argument
{
public:
    Argument(WStringView text) noexcept;
    Argument(const WCHAR* text) noexcept; // null is the empty text
    Argument(const CXString& text) noexcept;
    Argument(LONG value) noexcept;
    Argument(ULONG value) noexcept;
    // The other integer types, so that a call never has to choose between the two.
    template <std::integral Integer>
    Argument(Integer value) noexcept
        : m_kind(std::signed_integral<Integer> ? Kind::Signed : Kind::Unsigned), m_number(static_cast<LONGLONG>(value))
    {
    }

    enum class Kind
    {
        Text,
        Signed,
        Unsigned,
    };

    [[nodiscard]] Kind GetKind() const noexcept;
    [[nodiscard]] CXString ToString() const;

private:
    Kind m_kind;
    WStringView m_text;
    LONGLONG m_number = 0;
};

TVUTIL_API CXString operator+(const CXString& left, WStringView right);
TVUTIL_API bool operator==(const CXString& left, const CXString& right) noexcept;
TVUTIL_API bool operator==(const CXString& left, WStringView right) noexcept;
TVUTIL_API bool operator==(const CXString& left, const WCHAR* right) noexcept; // null is the empty text
TVUTIL_API bool operator<(const CXString& left, const CXString& right) noexcept;
