#include <tvutil/cxstring.h>

#include <algorithm>
#include <charconv>
#include <iterator>
#include <stdexcept>
#include <utility>

#include "latincase.h"
#include "utf.h"

namespace
{

template <class Number>
WideString Decimal(Number value)
{
    char digits[24];
    const auto [end, error] = std::to_chars(std::begin(digits), std::end(digits), value);
    return WideString(std::begin(digits), end); // 24 digits hold any 64-bit number
}

// The argument that a directive takes, or a fault of the caller's format.
const CXString::Argument& Take(std::initializer_list<CXString::Argument> arguments, std::size_t index,
                               CXString::Argument::Kind kind)
{
    if (index >= arguments.size())
        throw std::invalid_argument("CXString::Format: more directives than arguments");
    const CXString::Argument& argument = arguments.begin()[index];
    if (argument.GetKind() != kind)
        throw std::invalid_argument("CXString::Format: argument and directive are of different kinds");
    return argument;
}

CXString::Argument::Kind KindOfDirective(WCHAR letter)
{
    switch (letter)
    {
    case W('s'):
        return CXString::Argument::Kind::Text;
    case W('i'):
        return CXString::Argument::Kind::Signed;
    case W('u'):
        return CXString::Argument::Kind::Unsigned;
    default:
        throw std::invalid_argument("CXString::Format: unknown directive");
    }
}

} // namespace

// The exporting library emits a constant of its class only where it is defined out of line.
constexpr std::size_t CXString::npos;

CXString::CXString() noexcept = default;

CXString::CXString(const WCHAR* text)
{
    if (text != nullptr)
        m_text = text;
}

CXString::CXString(WStringView text) : m_text(text)
{
}

CXString::CXString(const CComBSTR& text) : m_text(text.View())
{
}

CXString::CXString(const CXString& other) = default;
CXString::CXString(CXString&& other) noexcept = default;
CXString& CXString::operator=(const CXString& other) = default;
CXString& CXString::operator=(CXString&& other) noexcept = default;
CXString::~CXString() = default;

CXString CXString::FromUtf8(std::string_view text)
{
    CXString result;
    result.m_text = utf::ToUtf16(text);
    return result;
}

std::string CXString::ToUtf8() const
{
    return utf::ToUtf8(m_text);
}

CXString CXString::FromInteger(LONG value)
{
    return CXString(Decimal(value));
}

CXString CXString::FromUnsigned(ULONG value)
{
    return CXString(Decimal(value));
}

CXString CXString::Format(WStringView format, std::initializer_list<Argument> arguments)
{
    CXString result;
    std::size_t used = 0;
    for (std::size_t position = 0; position < format.size(); ++position)
    {
        if (format[position] != W('%'))
        {
            result.m_text.push_back(format[position]);
            continue;
        }
        if (++position == format.size())
            throw std::invalid_argument("CXString::Format: the format ends within a directive");
        if (format[position] == W('%'))
            result.m_text.push_back(W('%'));
        else
            result += Take(arguments, used++, KindOfDirective(format[position])).ToString();
    }
    if (used != arguments.size())
        throw std::invalid_argument("CXString::Format: more arguments than directives");
    return result;
}

const WCHAR* CXString::c_str() const noexcept
{
    return m_text.c_str();
}

WStringView CXString::View() const noexcept
{
    return m_text;
}

std::size_t CXString::Length() const noexcept
{
    return m_text.size();
}

bool CXString::IsEmpty() const noexcept
{
    return m_text.empty();
}

CXString::operator WStringView() const noexcept
{
    return m_text;
}

CXString& CXString::operator+=(WStringView text)
{
    m_text.append(text);
    return *this;
}

void CXString::Clear() noexcept
{
    m_text.clear();
}

int CXString::CompareNoCase(WStringView other) const noexcept
{
    return latincase::Compare(m_text, other);
}

CXString CXString::ToLower() const
{
    CXString result(*this);
    for (WCHAR& unit : result.m_text)
        unit = static_cast<WCHAR>(latincase::ToLower(static_cast<char16_t>(unit)));
    return result;
}

std::size_t CXString::Find(WStringView text, std::size_t from) const noexcept
{
    return m_text.find(text, from);
}

bool CXString::StartsWith(WStringView text) const noexcept
{
    return View().starts_with(text);
}

CXString CXString::Mid(std::size_t position, std::size_t length) const
{
    return CXString(View().substr(std::min(position, m_text.size()), length));
}

void CXString::ReplaceAll(WStringView from, WStringView to)
{
    if (from.empty())
        return;
    WideString result; // built aside, so that `from` and `to` may be parts of this string
    std::size_t position = 0;
    for (std::size_t found = m_text.find(from); found != npos; found = m_text.find(from, position))
    {
        result.append(m_text, position, found - position).append(to);
        position = found + from.size();
    }
    result.append(m_text, position);
    m_text = std::move(result);
}

CComBSTR CXString::ToBstr() const
{
    return CComBSTR(View());
}

CXString::Argument::Argument(WStringView text) noexcept : m_kind(Kind::Text), m_text(text)
{
}

CXString::Argument::Argument(const WCHAR* text) noexcept
    : m_kind(Kind::Text), m_text(text != nullptr ? WStringView(text) : WStringView())
{
}

CXString::Argument::Argument(const CXString& text) noexcept : m_kind(Kind::Text), m_text(text.View())
{
}

CXString::Argument::Argument(LONG value) noexcept : m_kind(Kind::Signed), m_number(value)
{
}

CXString::Argument::Argument(ULONG value) noexcept : m_kind(Kind::Unsigned), m_number(value)
{
}

CXString::Argument::Kind CXString::Argument::GetKind() const noexcept
{
    return m_kind;
}

CXString CXString::Argument::ToString() const
{
    switch (m_kind)
    {
    case Kind::Signed:
        return CXString(Decimal(m_number));
    case Kind::Unsigned:
        return CXString(Decimal(static_cast<ULONGLONG>(m_number)));
    default:
        return CXString(m_text);
    }
}

CXString operator+(const CXString& left, WStringView right)
{
    CXString result(left);
    result += right;
    return result;
}

bool operator==(const CXString& left, const CXString& right) noexcept
{
    return left.View() == right.View();
}

bool operator==(const CXString& left, WStringView right) noexcept
{
    return left.View() == right;
}

bool operator==(const CXString& left, const WCHAR* right) noexcept
{
    return left.View() == (right != nullptr ? WStringView(right) : WStringView());
}

bool operator<(const CXString& left, const CXString& right) noexcept
{
    return left.View() < right.View();
}
