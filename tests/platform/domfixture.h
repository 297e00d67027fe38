// What the DOM's tests share: documents from text, nodes by query, and trees as comparable text.
#pragma once

#include <msxml2.h>

#include <string>

#include <gtest/gtest.h>

#include "tests/common/documentcomparer.h"
#include "utilitiesstaticlib/ccombstr.h"
#include "utilitiesstaticlib/comptr.h"
#include "utilitiesstaticlib/domiids.h"
#include "utilitiesstaticlib/wideliteral.h"

using DomDocument = ComPtr<IXMLDOMDocument2>;
using DomElement = ComPtr<IXMLDOMElement>;
using DomNode = ComPtr<IXMLDOMNode>;

inline constexpr const WCHAR* kInstanceUri = W("http://www.w3.org/2001/XMLSchema-instance");

// The owner of a VARIANT.
class Variant
{
public:
    Variant() noexcept = default;
    explicit Variant(LONG number) noexcept
    {
        m_value.vt = VT_I4;
        m_value.lVal = number;
    }
    explicit Variant(WStringView text)
    {
        m_value.bstrVal = CComBSTR(text).Detach();
        m_value.vt = VT_BSTR;
    }
    Variant(const Variant&) = delete;
    Variant& operator=(const Variant&) = delete;
    ~Variant()
    {
        VariantClear(&m_value);
    }

    VARIANT* Put() noexcept
    {
        VariantClear(&m_value);
        return &m_value;
    }
    const VARIANT& Get() const noexcept
    {
        return m_value;
    }
    std::string Text() const; // "-" for what is no text

private:
    VARIANT m_value{};
};

DomDocument NewDocument();
// The result of loadXML; a refused text leaves an empty document.
HRESULT LoadText(const DomDocument& document, WStringView text);
// Fails the running test when the text is refused.
DomDocument Loaded(WStringView text);
DomElement RootOf(const DomDocument& document);
DomNode Select(IXMLDOMNode* context, const WCHAR* query); // null when nothing is found
HRESULT SetProperty(const DomDocument& document, const WCHAR* name, WStringView value);

// createNode's node; fails the running test when it is refused.
DomNode Created(const DomDocument& document, DOMNodeType kind, const WCHAR* name, const WCHAR* uri = W(""));
HRESULT Append(IXMLDOMNode* parent, IXMLDOMNode* child);
HRESULT PutText(IXMLDOMNode* node, WStringView text);
ComPtr<IXMLDOMNamedNodeMap> MapOf(IXMLDOMNode* element);
// An attribute with a value, put on the element.
void AddAttribute(const DomDocument& document, IXMLDOMNode* element, const WCHAR* name, const WCHAR* uri,
                  const WCHAR* value);
HRESULT RemoveAttribute(IXMLDOMNode* element, const WCHAR* name);

// What a getter of texts answers: "-" for none, which must be S_FALSE.
using TextGetter = HRESULT (STDMETHODCALLTYPE IXMLDOMNode::*)(BSTR*);
std::string Ask(IXMLDOMNode* node, TextGetter getter);
std::string NameOf(IXMLDOMNode* node);
std::string TextOf(IXMLDOMNode* node);
std::string XmlOf(IXMLDOMNode* node);
std::string ReasonOf(const DomDocument& document); // of the last load

ULONG ReferencesOf(IUnknown* object);

// What the node's text says when it is read again.
std::string MeaningOfText(IXMLDOMNode* node);
