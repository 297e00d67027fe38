// ElementObject: an element.
#pragma once

#include "dom/nodeobject.h"

namespace winport::dom
{

class ElementObject final : public NodeObject<IXMLDOMElement, IID_IXMLDOMElement>
{
public:
    using NodeObject::NodeObject;

    HRESULT STDMETHODCALLTYPE get_tagName(BSTR* tagName) override;
    HRESULT STDMETHODCALLTYPE getAttribute(BSTR name, VARIANT* value) override;
    HRESULT STDMETHODCALLTYPE setAttribute(BSTR name, VARIANT value) override;
    HRESULT STDMETHODCALLTYPE removeAttribute(BSTR name) override;
    HRESULT STDMETHODCALLTYPE getAttributeNode(BSTR name, IXMLDOMAttribute** attribute) override;
    HRESULT STDMETHODCALLTYPE setAttributeNode(IXMLDOMAttribute* attribute, IXMLDOMAttribute** replaced) override;
    HRESULT STDMETHODCALLTYPE removeAttributeNode(IXMLDOMAttribute* attribute, IXMLDOMAttribute** removed) override;
    HRESULT STDMETHODCALLTYPE getElementsByTagName(BSTR name, IXMLDOMNodeList** elements) override;
    // Joins neighbouring texts and takes out empty ones.
    HRESULT STDMETHODCALLTYPE normalize() override;
};

} // namespace winport::dom
