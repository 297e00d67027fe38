// ParseErrorObject: the outcome of the last load of a document, as it was when it was asked for.
#pragma once

#include <utility>

#include "dom/counted.h"
#include "dom/loaderror.h"
#include "dom/strings.h"
#include "msxml2.h"

namespace winport::dom
{

// Without an error every answer is S_FALSE, with zeros and null strings.
class ParseErrorObject final : public Counted<IXMLDOMParseError, IID_IXMLDOMParseError>
{
public:
    explicit ParseErrorObject(LoadError error) noexcept : m_error(std::move(error))
    {
    }

    HRESULT STDMETHODCALLTYPE get_errorCode(LONG* errorCode) override
    {
        return Call([&] { return HandOutNumber(m_error.code, errorCode); });
    }

    HRESULT STDMETHODCALLTYPE get_url(BSTR* url) override
    {
        return Call([&] { return HandOutText({}, url); });
    }

    HRESULT STDMETHODCALLTYPE get_reason(BSTR* reason) override
    {
        return Call([&] { return HandOutText(m_error.reason, reason); });
    }

    HRESULT STDMETHODCALLTYPE get_srcText(BSTR* source) override
    {
        return Call([&] { return HandOutText(m_error.sourceLine, source); });
    }

    HRESULT STDMETHODCALLTYPE get_line(LONG* line) override
    {
        return Call([&] { return HandOutNumber(m_error.line, line); });
    }

    HRESULT STDMETHODCALLTYPE get_linepos(LONG* column) override
    {
        return Call([&] { return HandOutNumber(m_error.column, column); });
    }

    HRESULT STDMETHODCALLTYPE get_filepos(LONG* offset) override
    {
        return Call([&] { return HandOutNumber(m_error.offset, offset); });
    }

private:
    HRESULT HandOutNumber(LONG number, LONG* out) const
    {
        if (out == nullptr)
            return E_INVALIDARG;
        *out = number;
        return m_error.code != S_OK ? S_OK : S_FALSE;
    }

    static HRESULT HandOutText(std::string_view text, BSTR* out)
    {
        if (out == nullptr)
            return E_INVALIDARG;
        *out = text.empty() ? nullptr : NewBstr(text);
        return text.empty() ? S_FALSE : S_OK;
    }

    LoadError m_error;
};

} // namespace winport::dom
