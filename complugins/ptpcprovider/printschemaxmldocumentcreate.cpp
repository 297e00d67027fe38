// Creating and appending elements.
#include <tvutil/tavlencomexception.h>

#include "complugins/ptpcprovider/domhelpers.h"
#include "complugins/ptpcprovider/printschemaxmldocument.h"

namespace
{

constexpr WCHAR kSourceFile[] = W("complugins\\ptpcprovider\\printschemaxmldocumentcreate");

constexpr FailureCheck Check(kSourceFile);

} // namespace

HRESULT PrintSchemaXmlDocument::AppendChildToRootNode(IXMLDOMNode* node, const ThrowSite* site) const
{
    constexpr const WCHAR* kMethod = W("PrintSchemaXmlDocument::AppendChildToRootNode");
    Require({kMethod, kSourceFile});
    return AppendChild(m_rootNode.Get(), node, site);
}

HRESULT PrintSchemaXmlDocument::AppendChild(IXMLDOMNode* parent, IXMLDOMNode* child, const ThrowSite* site) const
{
    constexpr ThrowSite kOwnSite{W("PrintSchemaXmlDocument::AppendChild"), kSourceFile};
    Require(kOwnSite, parent != nullptr && child != nullptr);
    ComPtr<IXMLDOMNode> appended;
    ThrowIfFailed(parent->appendChild(child, appended.Put()), site != nullptr ? *site : kOwnSite);
    return S_OK;
}

void PrintSchemaXmlDocument::CreateNode(DOMNodeType type, const CXString& name, const CXString& namespaceUri,
                                        IXMLDOMNode** node, const WCHAR* method) const
{
    VARIANT nodeType{};
    VariantInit(&nodeType);
    nodeType.vt = VT_I4;
    nodeType.lVal = type;
    const CComBSTR qualifiedName = MakeBstr(name, {method, kSourceFile});
    const CComBSTR uri = MakeBstr(namespaceUri, {method, kSourceFile});
    Check(m_document->createNode(nodeType, qualifiedName.Get(), uri.Get(), node), method);
}

HRESULT PrintSchemaXmlDocument::CreateXMLElement(const CXString& qualifiedName, IXMLDOMElement** element) const
{
    constexpr const WCHAR* kMethod = W("PrintSchemaXmlDocument::CreateXMLElement");
    Require({kMethod, kSourceFile}, element != nullptr, !qualifiedName.IsEmpty());
    ComPtr<IXMLDOMNode> node;
    CreateNode(NODE_ELEMENT, qualifiedName, PrintSchema::kFrameworkUri, node.Put(), kMethod);
    ComPtr<IXMLDOMElement> created;
    Check(node.As(created), kMethod);
    *element = created.Detach();
    return S_OK;
}

HRESULT PrintSchemaXmlDocument::AppendXMLAttribute(IXMLDOMElement* element, const CXString& qualifiedName,
                                                   const CXString& namespaceUri, const CXString& value) const
{
    constexpr const WCHAR* kMethod = W("PrintSchemaXmlDocument::AppendXMLAttribute");
    Require({kMethod, kSourceFile}, element != nullptr, !qualifiedName.IsEmpty() && !value.IsEmpty());
    ComPtr<IXMLDOMNode> node;
    CreateNode(NODE_ATTRIBUTE, qualifiedName, namespaceUri, node.Put(), kMethod);
    ComPtr<IXMLDOMAttribute> attribute;
    Check(node.As(attribute), kMethod);
    const CComBSTR text = MakeBstr(value, {kMethod, kSourceFile});
    Check(attribute->put_value(BorrowAsVariant(text)), kMethod);
    ComPtr<IXMLDOMAttribute> replaced;
    Check(element->setAttributeNode(attribute.Get(), replaced.Put()), kMethod);
    return S_OK;
}

ComPtr<IXMLDOMElement> PrintSchemaXmlDocument::CreateNamedElement(const CXString& elementName,
                                                                  const CXString& name) const
{
    ComPtr<IXMLDOMElement> element;
    CreateXMLElement(m_frameworkPrefix + elementName, element.Put());
    AppendXMLAttribute(element.Get(), PrintSchema::kNameAttribute, CXString(), name);
    return element;
}

// Where the document does not declare a namespace, its prefix is empty and the name is written without one.
void PrintSchemaXmlDocument::AppendTypedValue(IXMLDOMElement* parent, const CXString& typeName,
                                              const CXString& value) const
{
    constexpr const WCHAR* kMethod = W("PrintSchemaXmlDocument::AppendTypedValue");
    ComPtr<IXMLDOMElement> valueElement;
    CreateXMLElement(m_frameworkPrefix + PrintSchema::kValue, valueElement.Put());
    Check(valueElement->put_text(MakeBstr(value, {kMethod, kSourceFile}).Get()), kMethod);
    AppendXMLAttribute(valueElement.Get(), m_xmlSchemaInstancePrefix + PrintSchema::kTypeAttribute,
                       PrintSchema::kXmlSchemaInstanceUri, m_xmlSchemaPrefix + typeName);
    AppendChild(parent, valueElement.Get());
}

HRESULT PrintSchemaXmlDocument::CreateProperty(ULONG namespaceIndex, const CXString& localName,
                                               IXMLDOMElement** property) const
{
    constexpr const WCHAR* kMethod = W("PrintSchemaXmlDocument::CreateProperty");
    Require({kMethod, kSourceFile}, property != nullptr, !localName.IsEmpty());
    *property = CreateNamedElement(PrintSchema::kProperty, GetNsPrefix(namespaceIndex) + localName).Detach();
    return S_OK;
}

HRESULT PrintSchemaXmlDocument::CreateProperty(ULONG namespaceIndex, const CXString& localName,
                                               const CXString& typeName, const CXString& value,
                                               IXMLDOMElement** property) const
{
    constexpr const WCHAR* kMethod = W("PrintSchemaXmlDocument::CreateProperty");
    Require({kMethod, kSourceFile}, property != nullptr);
    ComPtr<IXMLDOMElement> created;
    CreateProperty(namespaceIndex, localName, created.Put());
    AppendTypedValue(created.Get(), typeName, value);
    *property = created.Detach();
    return S_OK;
}

HRESULT PrintSchemaXmlDocument::CreateScoredProperty(const CXString& fullName, IXMLDOMElement** scoredProperty) const
{
    constexpr const WCHAR* kMethod = W("PrintSchemaXmlDocument::CreateScoredProperty");
    Require({kMethod, kSourceFile}, scoredProperty != nullptr, !fullName.IsEmpty());
    *scoredProperty = CreateNamedElement(PrintSchema::kScoredProperty, fullName).Detach();
    return S_OK;
}

HRESULT PrintSchemaXmlDocument::CreateScoredProperty(const CXString& fullName, const CXString& typeName,
                                                     const CXString& value, IXMLDOMElement** scoredProperty) const
{
    constexpr const WCHAR* kMethod = W("PrintSchemaXmlDocument::CreateScoredProperty");
    Require({kMethod, kSourceFile}, scoredProperty != nullptr);
    ComPtr<IXMLDOMElement> created;
    CreateScoredProperty(fullName, created.Put());
    AppendTypedValue(created.Get(), typeName, value);
    *scoredProperty = created.Detach();
    return S_OK;
}

HRESULT PrintSchemaXmlDocument::CreateIntegerScoredProperty(const CXString& fullName, LONG value,
                                                            IXMLDOMElement** scoredProperty) const
{
    return CreateScoredProperty(fullName, PrintSchema::kIntegerType, CXString::FromInteger(value), scoredProperty);
}

HRESULT PrintSchemaXmlDocument::CreateParameterRef(const CXString& parameterName, IXMLDOMElement** parameterRef) const
{
    constexpr const WCHAR* kMethod = W("PrintSchemaXmlDocument::CreateParameterRef");
    Require({kMethod, kSourceFile}, parameterRef != nullptr, !parameterName.IsEmpty());
    *parameterRef = CreateNamedElement(PrintSchema::kParameterRef, parameterName).Detach();
    return S_OK;
}

HRESULT PrintSchemaXmlDocument::CreateParameterRefScoredProperty(const CXString& scoredPropertyName,
                                                                 const CXString& parameterName,
                                                                 IXMLDOMElement** scoredProperty) const
{
    constexpr const WCHAR* kMethod = W("PrintSchemaXmlDocument::CreateParameterRefScoredProperty");
    Require({kMethod, kSourceFile}, scoredProperty != nullptr);
    ComPtr<IXMLDOMElement> created;
    CreateScoredProperty(scoredPropertyName, created.Put());
    ComPtr<IXMLDOMElement> reference;
    CreateParameterRef(parameterName, reference.Put());
    AppendChild(created.Get(), reference.Get());
    *scoredProperty = created.Detach();
    return S_OK;
}

HRESULT PrintSchemaXmlDocument::AppendChildIntegerProperty(IXMLDOMNode* parent, ULONG /*namespaceIndex*/,
                                                           const CXString& localName, LONG value) const
{
    constexpr const WCHAR* kMethod = W("PrintSchemaXmlDocument::AppendChildIntegerProperty");
    Require({kMethod, kSourceFile}, parent != nullptr);
    ComPtr<IXMLDOMElement> property;
    CreateProperty(PrintSchema::Keywords, localName, PrintSchema::kIntegerType, CXString::FromInteger(value),
                   property.Put());
    return AppendChild(parent, property.Get());
}

HRESULT PrintSchemaXmlDocument::AppendChildIntegerScoredProperty(IXMLDOMNode* parent, const CXString& fullName,
                                                                 LONG value) const
{
    ComPtr<IXMLDOMElement> scoredProperty;
    CreateIntegerScoredProperty(fullName, value, scoredProperty.Put());
    return AppendChild(parent, scoredProperty.Get());
}

HRESULT PrintSchemaXmlDocument::AppendChildQNameScoredProperty(IXMLDOMNode* parent, const CXString& fullName,
                                                               const CXString& qualifiedValue) const
{
    constexpr const WCHAR* kMethod = W("PrintSchemaXmlDocument::AppendChildQNameScoredProperty");
    Require({kMethod, kSourceFile}, parent != nullptr);
    ComPtr<IXMLDOMElement> scoredProperty;
    CreateScoredProperty(fullName, PrintSchema::kQNameType, qualifiedValue, scoredProperty.Put());
    return AppendChild(parent, scoredProperty.Get());
}

HRESULT PrintSchemaXmlDocument::AppendChildParameterRefScoredProperty(IXMLDOMNode* parent,
                                                                      const CXString& scoredPropertyName,
                                                                      const CXString& parameterName,
                                                                      IXMLDOMElement** scoredProperty) const
{
    constexpr const WCHAR* kMethod = W("PrintSchemaXmlDocument::AppendChildParameterRefScoredProperty");
    Require({kMethod, kSourceFile}, parent != nullptr && scoredProperty != nullptr);
    ComPtr<IXMLDOMElement> created;
    CreateParameterRefScoredProperty(scoredPropertyName, parameterName, created.Put());
    AppendChild(parent, created.Get());
    *scoredProperty = created.Detach();
    return S_OK;
}
