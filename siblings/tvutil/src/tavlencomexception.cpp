#include <tvutil/tavlencomexception.h>

#include <utility>

#include <tvutil/throwexception.h>

// The exporting library emits a constant of its class only where it is defined out of line.
constexpr const WCHAR* TavlenComException::kClassName;

TavlenComException::TavlenComException(HRESULT result, CXString message, ThrowSite site)
    : TavlenException(std::move(message), site), m_result(result)
{
}

TavlenComException::TavlenComException(const TavlenComException& other) noexcept = default;
TavlenComException& TavlenComException::operator=(const TavlenComException& other) noexcept = default;
TavlenComException::~TavlenComException() = default;

HRESULT TavlenComException::GetHresult() const noexcept
{
    return m_result;
}

const WCHAR* TavlenComException::GetClassName() const noexcept
{
    return kClassName;
}

TavlenComException GetTavlenComException(HRESULT result, CXString message, ThrowSite site)
{
    return TavlenComException(result, std::move(message), site);
}

void ThrowComException(HRESULT result, ThrowSite site)
{
    ThrowComException(result, site, WStringView());
}

void ThrowComException(HRESULT result, ThrowSite site, WStringView format,
                       std::initializer_list<CXString::Argument> arguments)
{
    const CXString message = ComposeExceptionMessage(format, arguments);
    AnnounceException(TavlenComException::kClassName, message, site);
    throw GetTavlenComException(result, message, site);
}
