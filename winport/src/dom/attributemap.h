// AttributeMap: the attributes of one element, as they are at each moment. Namespace declarations are among them, by
// index, by nextNode and by name.
#pragma once

#include "dom/collection.h"

namespace winport::dom
{

class AttributeMap final : public Collection<IXMLDOMNamedNodeMap, IID_IXMLDOMNamedNodeMap>
{
public:
    explicit AttributeMap(NodeRef element) noexcept;

    HRESULT STDMETHODCALLTYPE getNamedItem(BSTR name, IXMLDOMNode** item) override;
    HRESULT STDMETHODCALLTYPE setNamedItem(IXMLDOMNode* newItem, IXMLDOMNode** item) override;
    HRESULT STDMETHODCALLTYPE removeNamedItem(BSTR name, IXMLDOMNode** item) override;
    HRESULT STDMETHODCALLTYPE getQualifiedItem(BSTR baseName, BSTR namespaceUri, IXMLDOMNode** item) override;
    HRESULT STDMETHODCALLTYPE removeQualifiedItem(BSTR baseName, BSTR namespaceUri, IXMLDOMNode** item) override;

private:
    NodeRef At(std::size_t index) override;
    std::size_t Count() override;

    HRESULT HandOutAttribute(xmlAttr* attribute, IXMLDOMNode** item);
    HRESULT Take(xmlAttr* attribute, IXMLDOMNode** item);

    NodeRef m_element;
    WalkedChain<xmlAttr> m_attributes;
};

} // namespace winport::dom
