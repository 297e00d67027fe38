// AttributeMap: the attributes of one element, as they are at each moment. Namespace declarations are among them, by
// index, by nextNode and by name.
#pragma once

#include "dom/counted.h"
#include "dom/nodecore.h"

namespace winport::dom
{

class AttributeMap final : public Counted<IXMLDOMNamedNodeMap, IID_IXMLDOMNamedNodeMap>
{
public:
    explicit AttributeMap(NodeRef element) noexcept;

    HRESULT STDMETHODCALLTYPE getNamedItem(BSTR name, IXMLDOMNode** item) override;
    HRESULT STDMETHODCALLTYPE setNamedItem(IXMLDOMNode* newItem, IXMLDOMNode** item) override;
    HRESULT STDMETHODCALLTYPE removeNamedItem(BSTR name, IXMLDOMNode** item) override;
    HRESULT STDMETHODCALLTYPE get_item(LONG index, IXMLDOMNode** item) override;
    HRESULT STDMETHODCALLTYPE get_length(LONG* length) override;
    HRESULT STDMETHODCALLTYPE getQualifiedItem(BSTR baseName, BSTR namespaceUri, IXMLDOMNode** item) override;
    HRESULT STDMETHODCALLTYPE removeQualifiedItem(BSTR baseName, BSTR namespaceUri, IXMLDOMNode** item) override;
    HRESULT STDMETHODCALLTYPE nextNode(IXMLDOMNode** next) override;
    HRESULT STDMETHODCALLTYPE reset() override;
    HRESULT STDMETHODCALLTYPE get__newEnum(IUnknown** enumerator) override;

private:
    HRESULT HandOutAt(LONG index, IXMLDOMNode** item);
    HRESULT HandOutAttribute(xmlAttr* attribute, IXMLDOMNode** item);
    HRESULT Take(xmlAttr* attribute, IXMLDOMNode** item);

    NodeRef m_element;
    xmlAttr* m_last = nullptr; // the place of the last item, so that walking is linear
    LONG m_lastIndex = 0;
    ChangeMark m_mark; // of m_last
    LONG m_next = 0;
};

} // namespace winport::dom
