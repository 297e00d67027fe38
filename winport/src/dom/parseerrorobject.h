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

    HRESULT STDMETHODCALLTYPE get_errorCode(LONG*) override
    {
        return Call([] { return E_NOTIMPL; });
    }

    HRESULT STDMETHODCALLTYPE get_url(BSTR*) override
    {
        return Call([] { return E_NOTIMPL; });
    }

    HRESULT STDMETHODCALLTYPE get_reason(BSTR* reason) override
    {
        return Call(
            [&]
            {
                if (reason == nullptr)
                    return E_INVALIDARG;
                *reason = m_error.reason.empty() ? nullptr : NewBstr(m_error.reason);
                return m_error.reason.empty() ? S_FALSE : S_OK;
            });
    }

    HRESULT STDMETHODCALLTYPE get_srcText(BSTR*) override
    {
        return Call([] { return E_NOTIMPL; });
    }

    HRESULT STDMETHODCALLTYPE get_line(LONG* line) override
    {
        return Call(
            [&]
            {
                if (line == nullptr)
                    return E_INVALIDARG;
                *line = m_error.line;
                return m_error.code != S_OK ? S_OK : S_FALSE;
            });
    }

    HRESULT STDMETHODCALLTYPE get_linepos(LONG*) override
    {
        return Call([] { return E_NOTIMPL; });
    }

    HRESULT STDMETHODCALLTYPE get_filepos(LONG*) override
    {
        return Call([] { return E_NOTIMPL; });
    }

private:
    LoadError m_error;
};

} // namespace winport::dom
